#include "gui/common/uiinfo.h"
#include "support/instrument.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

using ::testing::ElementsAre;

namespace {

QList<QRgb> colorsOf(const SpectrumColors::ByHash &colors, const QList<SpectMath::SpectrumInfoPointer> &infos)
{
    QList<QRgb> list;
    for (const auto &one : infos)
        list.append(colors.value(one->hash).rgb());
    return list;
}

constexpr QRgb scarletDark = qRgb(164, 0, 0), scarletMiddle = qRgb(204, 0, 0), scarletLight = qRgb(239, 41, 41);
constexpr QRgb skyDark = qRgb(32, 74, 135), skyMiddle = qRgb(52, 101, 164), skyLight = qRgb(114, 159, 207);
constexpr QRgb orangeDark = qRgb(206, 92, 0), orangeMiddle = qRgb(245, 121, 0), orangeLight = qRgb(252, 175, 62);
constexpr QRgb plumDark = qRgb(92, 53, 102), chocolateDark = qRgb(143, 89, 2);

} // namespace

TEST(SpectrumColors, OpmodesTakeTheirOwnOrTheNextColour)
{
    QVector<Opmode> modes;
    const QStringList names{"offset", "ions", "Ions", "particles pos", "alterch", "particles"};
    for (const QString &name : names)
        modes.append(Opmode(modes.size(), name));
    for (int i = 0; i < 16; ++i)
        modes.append(Opmode(modes.size(), QString("mode %1").arg(i)));
    const std::vector<QColor> colors = SpectrumColors::opmodeColors(modes);
    EXPECT_EQ(colors[0].rgb(), qRgb(196, 160, 0));
    EXPECT_EQ(colors[1].rgb(), scarletDark);
    EXPECT_EQ(colors[2].rgb(), plumDark) << "names are compared exactly";
    EXPECT_EQ(colors[3].rgb(), chocolateDark);
    EXPECT_EQ(colors[4].rgb(), qRgb(78, 154, 6));
    EXPECT_EQ(colors[5].rgb(), skyDark);
    EXPECT_EQ(colors[6].rgb(), orangeDark) << "only unknown names move the counter on";
    EXPECT_EQ(colors[20].rgb(), orangeLight) << "the last of 17";
    EXPECT_EQ(colors[21].rgb(), plumDark) << "and around";
}

TEST(SpectrumColors, SpectraTakeNamedThenLeastUsedColours)
{
    QList<SpectMath::SpectrumInfoPointer> infos;
    for (int i = 0; i < 7; ++i)
        infos.append(namedSpectrum("particles pos", QString("pos%1").arg(i)));
    EXPECT_THAT(
        colorsOf(SpectrumColors::updated({}, infos), infos),
        ElementsAre(scarletDark, orangeDark, scarletMiddle, orangeMiddle, scarletLight, orangeLight, orangeDark));

    // Both names want the same dark blue: the second one is in the copy still, yet the colour is in use.
    const QList<SpectMath::SpectrumInfoPointer> blues{
        namedSpectrum("particles", "1"), namedSpectrum("particles neg", "2"), namedSpectrum("ions neg", "3"),
        namedSpectrum("x neg", "4"), namedSpectrum("x", "5")};
    EXPECT_THAT(colorsOf(SpectrumColors::updated({}, blues), blues),
                ElementsAre(skyDark, plumDark, skyLight, skyMiddle, chocolateDark));
}

TEST(SpectrumColors, AColourStaysWithItsSpectrum)
{
    const auto first = namedSpectrum("x", "1"), second = namedSpectrum("x", "2"), third = namedSpectrum("x", "3");
    const auto before = SpectrumColors::updated({}, {first, second});
    const auto after = SpectrumColors::updated(before, {third, namedSpectrum("renamed", "2")});
    EXPECT_EQ(after.value("2"), before.value("2"));
    EXPECT_FALSE(after.contains("1"));
    EXPECT_EQ(after.value("3").rgb(), plumDark) << "the colour of the one that left is free again";
}

TEST(UiInfo, PublishesTheDataOnce)
{
    UiInfo ui;
    QSignalSpy updates(&ui, &UiInfo::configUpdated);
    const auto metadata = testMetadata({"ions"});
    const auto a = namedSpectrum("p", "aaaa", "one"), b = namedSpectrum("p", "bbbb", "two");
    ui.setData(metadata, {a});
    ui.addSpectrum(b, "reinv-1");
    ui.addSpectrum(namedSpectrum("again", "bbbb"), "reinv-2");
    EXPECT_EQ(updates.size(), 0);
    ui.publish();
    EXPECT_EQ(updates.size(), 1);

    EXPECT_EQ(ui.spectrumInfos(), (QList<SpectMath::SpectrumInfoPointer>{a, b})) << "a known hash is refused";
    EXPECT_EQ(ui.spectrumById("bbbb"), b);
    EXPECT_EQ(ui.spectrumById("none"), nullptr);
    EXPECT_EQ(ui.spectrumName(a.get()), "p (one)");
    EXPECT_EQ(ui.spectrumName(b.get()), "p (two) reinv-1");
    EXPECT_EQ(ui.spectrumName(namedSpectrum("stranger", "cccc").get()), "stranger");
    EXPECT_FALSE(ui.spectrumColor(namedSpectrum("stranger", "cccc").get()).isValid());
    EXPECT_EQ(ui.opmodeColor(0).rgb(), scarletDark);
    EXPECT_FALSE(ui.opmodeColor(1).isValid());
    EXPECT_FALSE(ui.opmodeColor(-1).isValid());

    const QColor colorOfB = ui.spectrumColor(b.get());
    ui.removeSpectrum(a.get());
    ui.publish();
    EXPECT_EQ(ui.spectrumName(b.get()), "p reinv-1");
    EXPECT_EQ(ui.spectrumColor(b.get()), colorOfB);

    ui.clear();
    ui.publish();
    EXPECT_TRUE(ui.spectrumInfos().isEmpty());
    EXPECT_EQ(ui.metadata(), nullptr);
    const auto again = namedSpectrum("p", "bbbb", "two");
    ui.setData(metadata, {again});
    ui.publish();
    EXPECT_EQ(ui.spectrumColor(again.get()), colorOfB) << "the same data opened again look the same";
    EXPECT_EQ(ui.spectrumName(again.get()), "p");
}

TEST(UiInfo, TheUsersColoursAndCommentsStandBeforeTheOwn)
{
    UiInfo ui;
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    const auto a = namedSpectrum("p", "aaaa", "", "first"), b = namedSpectrum("p", "bbbb", "", "second"),
               c = namedSpectrum("q", "cccc");
    ui.setData(metadata, {a, b, c});
    ui.publish();
    EXPECT_EQ(ui.spectrumComment(a.get()), "first");
    EXPECT_EQ(ui.commented(a), a) << "nothing to copy";

    ui.setSpectrumComment(a.get(), "own");
    ui.setSpectrumColor(a.get(), Qt::green);
    ui.setSpectrumColor(b.get(), QColor());
    ui.setSpectrumComment(namedSpectrum("stranger", "dddd").get(), "lost");
    const QColor colorOfB = ui.spectrumColor(b.get());
    ui.publish();
    EXPECT_EQ(ui.spectrumName(a.get()), "p (own)");
    EXPECT_EQ(ui.spectrumName(b.get()), "p (second)");
    EXPECT_EQ(ui.spectrumColor(a.get()), QColor(Qt::green));
    EXPECT_EQ(ui.spectrumColor(b.get()), colorOfB);
    EXPECT_EQ(ui.userColors(), (SpectrumColors::ByHash{{"aaaa", Qt::green}})) << "automatic ones aren't the user's";
    ui.setUserColors({{"bbbb", Qt::red}, {"eeee", Qt::blue}});
    ui.publish();
    EXPECT_NE(ui.spectrumColor(a.get()), QColor(Qt::green));
    EXPECT_EQ(ui.spectrumColor(b.get()), QColor(Qt::red));
    const auto later = namedSpectrum("later", "eeee");
    ui.addSpectrum(later, "");
    ui.publish();
    EXPECT_EQ(ui.spectrumColor(later.get()), QColor(Qt::blue)) << "the colour waited for its spectrum";
    EXPECT_EQ(ui.spectrumComment(nullptr), "");
    const auto copy = ui.commented(a);
    EXPECT_EQ(copy->comment, "own");
    EXPECT_EQ(*copy, *a) << "a record's spectrum is found under it";
    EXPECT_EQ(a->comment, "first") << "what was published stays";

    ui.setSpectrumColor(a.get(), Qt::cyan);
    ui.removeSpectrum(a.get());
    ui.addSpectrum(a, "reinv-1");
    EXPECT_EQ(ui.spectrumComment(a.get()), "first") << "the comment went with the spectrum";
    EXPECT_EQ(ui.userColors().value("aaaa"), QColor(Qt::cyan)) << "the colour stays with the hash";
    ui.setSpectrumComment(b.get(), "own");
    ui.setData(metadata, {a, b, c});
    EXPECT_EQ(ui.spectrumComment(b.get()), "second") << "other data may have the same hash";
}

TEST(UiInfo, HighlightsAndValuesTellOfChangesOnly)
{
    UiInfo ui;
    QSignalSpy highlights(&ui, &UiInfo::highlightsChanged);
    QSignalSpy values(&ui, &UiInfo::variableChanged);
    ui.setHighlights({"flow"}, {3});
    ui.setHighlights({"flow"}, {3});
    ui.setHighlights({}, {4});
    EXPECT_EQ(highlights.size(), 2);
    EXPECT_TRUE(ui.highlightedVariables().isEmpty());
    EXPECT_EQ(ui.highlightedElectrometers(), QList<int>{4});
    ui.clear();
    EXPECT_EQ(highlights.size(), 3);

    ui.setValue("row", 3);
    ui.setValue("row", 3);
    ui.setValue("row", 4);
    EXPECT_EQ(values.size(), 2);
    EXPECT_EQ(values.last().first().toString(), "row");
    EXPECT_EQ(ui.value("row").toInt(), 4);
}
