#include "fuzzfile.h"

#include "windowsetup/sealedstate.h"
#include "windowsetup/setupfile.h"
#include "windowsetup/windowstate.h"

using namespace WindowSetup;

/// The bytes are a window setup.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzzFile(data, size);
    const SetupFile file = readSetupFile(path);
    require(file.complaint.isEmpty() == (file.condition == SetupFile::Sound), "what isn't sound has words");
    if (file.condition != SetupFile::Sound)
        return 0;
    isTooOld(file.setup);
    QVariantMap window = file.setup.value(QStringLiteral("mainwindow")).toMap();
    const QString key = QStringLiteral("state");
    const State state = unseal(window, key);
    require(state.bytes.isEmpty() || state.complaint.isEmpty(), "bytes that are complained of aren't taken");
    isSoundWindowState(state.bytes, 2);
    seal(window, key, state.bytes);
    require(unseal(window, key).bytes == state.bytes, "what is sealed is read back");
    return 0;
}
