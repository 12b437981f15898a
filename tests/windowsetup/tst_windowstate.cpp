#include "windowsetup/windowstate.h"

#include "support/files.h"
#include "support/seeds.h"

using namespace WindowSetup;

namespace {

constexpr int version = 2;
const QStringList names{"one", "two", "three", "four", "five", "six", "toolBar"};

/// As the toolkit wrote it, of a window with docks in three areas, tabs in a list in a list, and a toolbar.
QByteArray soundState()
{
    return contentOf(QStringLiteral(FUZZ_DIRECTORY "/corpus/windowstate/three-areas.state"));
}

QByteArray text(const char *name)
{
    QByteArray utf16;
    for (; *name; ++name)
        utf16 += QByteArray(1, '\0') + *name;
    return utf16;
}

} // namespace

TEST(WindowState, SoundOnesAreTaken)
{
    const auto folder = QStringLiteral(FUZZ_DIRECTORY "/corpus/windowstate/");
    for (const char *name : {"three-areas.state", "dock-floats.state", "toolbar-floats.state"}) {
        const QByteArray state = contentOf(folder + name);
        ASSERT_FALSE(state.isEmpty());
        EXPECT_TRUE(isSoundWindowState(state, version, names)) << name;
        EXPECT_TRUE(isSoundWindowState(state, version)) << name;
    }
}

TEST(WindowState, UnsoundOnesAreRefused)
{
    const QByteArray sound = soundState();
    const auto with = [&](const QByteArray &from, const QByteArray &to) {
        EXPECT_EQ(from.size(), to.size());
        EXPECT_TRUE(sound.contains(from));
        return QByteArray(sound).replace(sound.indexOf(from), from.size(), to);
    };
    const auto hex = [](const char *digits) { return QByteArray::fromHex(digits); };
    const struct {
        const char *name;
        QByteArray state;
    } cases[] = {
        {"empty", {}},
        {"more behind it", sound + '\0'},
        {"another version", with(hex("00000002fd"), hex("00000003fd"))},
        {"five areas", with(hex("fd00000003"), hex("fd00000005"))},
        {"an area twice", with(hex("000000010000003e"), hex("000000000000003e"))},
        {"a list without docks", with(hex("fc0200000002fc"), hex("fc0200000000fc"))},
        {"a billion docks", with(hex("fc0200000002fc"), hex("fc023b9aca00fc"))},
        {"a tab that isn't there", with(hex("fa0000000102"), hex("fa0000000202"))},
        {"no orientation", with(hex("fa0000000102"), hex("fa0000000103"))},
        {"a dock twice", with(text("one"), text("two"))},
        {"a length beyond any screen", with(hex("00000202fc02"), hex("7fffffeffc02"))},
        {"a corner of no area", with(hex("0000000400000004"), hex("0000000500000004"))},
        {"a toolbar named as a dock",
         with(hex("0000000e") + text("toolBar"), hex("00000006") + text("one00000").left(14))},
    };
    for (const auto &each : cases)
        EXPECT_FALSE(isSoundWindowState(each.state, version)) << each.name;
    for (int length = 0; length < sound.size(); ++length)
        EXPECT_FALSE(isSoundWindowState(sound.left(length), version)) << length;
}

TEST(WindowState, ForeignNamesNeedSomethingThatVouchesForThem)
{
    const QByteArray foreign = soundState().replace(text("six"), text("xis"));
    EXPECT_FALSE(isSoundWindowState(foreign, version, names));
    EXPECT_TRUE(isSoundWindowState(foreign, version));
}
