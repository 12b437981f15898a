#include "fuzz.h"

#include "windowsetup/windowstate.h"

/// The bytes are the state of a window's docks.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray state(reinterpret_cast<const char *>(data), int(size));
    const bool isSound = WindowSetup::isSoundWindowState(state, 2);
    if (WindowSetup::isSoundWindowState(state, 2, {QStringLiteral("one"), QStringLiteral("toolBar")}))
        require(isSound, "names only narrow what is sound");
    if (isSound)
        require(!WindowSetup::isSoundWindowState(state + '\0', 2), "nothing may follow");
    return 0;
}
