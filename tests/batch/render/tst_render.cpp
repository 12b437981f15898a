#include "batch/dayfolder.h"
#include "batch/failingruns.h"

#include "batch/folderread.h"
#include "batch/messagecollector.h"
#include "batch/render/rendercommand.h"
#include "batch/render/stackpicture.h"
#include "demo/demowriter.h"
#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/header.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/plots/scatterplot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/common/uiinfo.h"
#include "llama/qyaml.h"
#include "support/imagedifference.h"
#include "util/timeformat.h"

#include <QApplication>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSplitter>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <algorithm>

#include <sys/stat.h>

namespace {

using Batch::StackPicture;

/// A demonstration day, and what the program draws of it.
class Render : public DayFolder {
protected:
    static void SetUpTestSuite()
    {
        // As the program does, whatever the test's surroundings give.
        QApplication::setStyle("Fusion");
        QApplication::setFont(QFont("Sans Serif", 9));
    }

    Render()
    {
        Demo::Campaign::Settings settings;
        settings.interval = 600;
        Demo::writeCampaign(Demo::Campaign(settings), path("demo"));
        qunsetenv("DISPLAY");
    }

    Ended render(const QString &name, const QStringList &more = {})
    {
        return run(QStringList{"render", "{}/demo", "--variant", "block", "--output", "{}/" + name} + more);
    }
    QImage picture(const QString &name) const { return QImage(path(name)).convertToFormat(QImage::Format_RGB32); }
    /// The same picture made in this process, for where things stand in it.
    std::unique_ptr<StackPicture> samePicture(const QVariant &setup, const QSize &size = {})
    {
        Batch::RenderOptions options;
        options.read.folder = path("demo");
        options.read.variant = "block";
        if (!m_read.reader)
            m_read = Batch::readFolder(options.read, Batch::matchingFiles(options.read), options.read.variant);
        const Batch::TimeSpan span = Batch::spanToShow(options, *m_read.reader->datastore());
        return std::make_unique<StackPicture>(*m_read.reader, setup, span, size);
    }
    const FileReader &reader() const { return *m_read.reader; }

    /// Nothing that a run made to work in is left.
    bool isTidy() const
    {
        return QDir(path()).entryList({"*.png?*", "*.svg?*", "*.pdf?*"}, QDir::AllEntries | QDir::Hidden).isEmpty();
    }

    /// Two strips, currents with their properties, and one spectrogram, each of another height.
    QVariantMap variedSetup()
    {
        const auto ids = samePicture({})->browser().setup().toList().last().toMap()["settings"].toMap();
        QVariantMap spectra = ids;
        spectra["height"] = 173;
        spectra["colormap"] = "viridis";
        const QVariantMap current{{"type", 0},        {"electrometerNumber", 3}, {"height", 91},
                                  {"scaleMin", -5.0}, {"scaleMax", 30.0},        {"propertiesVisible", true}};
        return {
            {"version", 2},
            {"timeseries", QVariantList{QVariantMap{{"type", "opmode"}, {"settings", QVariantMap{{"type", "opmode"}}}},
                                        QVariantMap{{"type", "scatterplot"}, {"settings", current}},
                                        QVariantMap{{"type", "no such view"}},
                                        QVariantMap{{"type", "spectrogram"}, {"settings", spectra}}}}};
    }

private:
    Batch::FolderRead m_read;
};

/// Where in the browser the data stand: the contents of axis, scales, plots and colour bars, in order of display.
std::vector<QRect> contents(const Tsb::TimeSeriesBrowser &browser)
{
    std::vector<QRect> places;
    const auto add = [&](const QFrame *frame) {
        places.emplace_back(frame->mapTo(&browser, frame->contentsRect().topLeft()), frame->contentsRect().size());
    };
    add(browser.timeView());
    for (const Tsb::View *view : browser.views()) {
        for (const auto *frame : view->findChildren<QFrame *>()) {
            if (frame->isVisible() &&
                (qobject_cast<const Tsb::Plot *>(frame) || qobject_cast<const Colorbar *>(frame) ||
                 qobject_cast<const Tsb::VerticalScaleWidget *>(frame)))
                add(frame);
        }
    }
    return places;
}

/// A browser as the window has it, with the same data, widths, and heights of views as the picture's, drawn by itself.
struct Window {
    Window(const FileReader &reader, const Tsb::TimeSeriesBrowser &model, const QVariant &setup)
        : uiInfo(std::make_shared<UiInfo>())
    {
        uiInfo->setData(reader.metadata(), reader.spectrumInfos().toList());
        uiInfo->publish();
        browser = std::make_unique<Tsb::TimeSeriesBrowser>(uiInfo);
        browser->resize(model.size());
        browser->show();
        browser->findChild<Tsb::Header *>()->splitter()->setSizes(
            model.findChild<Tsb::Header *>()->splitter()->sizes());
        QCoreApplication::processEvents();
        const Datastore &store = *reader.datastore();
        browser->setDatastore(reader.datastore().get());
        browser->timeView()->setTimeOffset(store.at(0)->beginUtcOffset);
        browser->fitTimescale(store.at(0)->beginTime, store.records().back()->endTime);
        browser->setSetup(setup);
        const bool byDefault = !browser->hasViews();
        if (byDefault)
            browser->addDefaultStack();
        for (int i = 0; i < model.views().size(); ++i)
            browser->views()[i]->setFixedHeight(model.views()[i]->height());
        QCoreApplication::processEvents();
        if (byDefault)
            browser->allFitScale();
        for (auto *plot : browser->findChildren<Tsb::ScatterPlot *>())
            plot->countOffScaleNow(); // which would take it a moment
    }

    std::shared_ptr<UiInfo> uiInfo;
    std::unique_ptr<Tsb::TimeSeriesBrowser> browser;
};

/// How many of these parts of the window's image differ in the picture, whose frame that is.
int differingParts(const QImage &picture, const QRect &frame, const QImage &window, const std::vector<QRect> &parts)
{
    return int(std::count_if(parts.begin(), parts.end(), [&](const QRect &part) {
        return picture.copy(part.translated(-frame.topLeft())) != window.copy(part);
    }));
}

/// The text elements of an SVG file.
QStringList textsOf(const QByteArray &svg)
{
    QStringList texts;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("text"))
            texts << reader.readElementText().trimmed();
    }
    EXPECT_FALSE(reader.hasError());
    return texts;
}

/// Whether every pixel of `fine` within that part of it is the one of `coarse`, twice as large.
bool isDoubled(const QImage &fine, const QImage &coarse, const QRect &part)
{
    for (int y = 2 * part.top(); y <= 2 * part.bottom() + 1; ++y) {
        for (int x = 2 * part.left(); x <= 2 * part.right() + 1; ++x) {
            if (fine.pixel(x, y) != coarse.pixel(x / 2, y / 2))
                return false;
        }
    }
    return true;
}

} // namespace

TEST_F(Render, EqualsTheWindowsPictureAndIsFinerAtTwice)
{
    const QVariantMap varied = variedSetup();
    write("varied.windowsetup", Llama::yamlDump(varied));
    const struct {
        const char *name;
        QStringList arguments;
        QVariant setup;
        QSize size;
    } cases[] = {
        {"default", {}, {}, {}},
        {"sized", {"--size", "900x640"}, {}, {900, 640}},
        {"varied", {"--setup", "{}/varied.windowsetup"}, varied["timeseries"], {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString one = QLatin1String(c.name) + ".png", two = "2-" + one;
        const Ended ended = render(one, c.arguments);
        ASSERT_EQ(ended.code, 0) << ended.errors.constData();
        const QImage drawn = picture(one);
        const auto same = samePicture(c.setup, c.size);
        ASSERT_EQ(drawn.size(), same->size());
        EXPECT_EQ(drawn.size(), c.size.isEmpty() ? same->size() : c.size);

        const Window window(reader(), same->browser(), c.setup);
        const std::vector<QRect> parts = contents(*window.browser);
        EXPECT_EQ(parts, contents(same->browser()));
        ASSERT_GE(parts.size(), 6u);
        const QImage grabbed = window.browser->grab().toImage().convertToFormat(QImage::Format_RGB32);
        EXPECT_EQ(differingParts(same->draw().convertToFormat(QImage::Format_RGB32), same->frame(), grabbed, parts), 0);
        // The outlines of a process' first texts aren't smoothed as those of later ones, by a few levels of 255.
        for (const QRect &part : parts) {
            const QRect place = part.translated(-same->frame().topLeft());
            EXPECT_LE(greatestDifference(drawn.copy(place), grabbed.copy(part)), 8);
        }

        ASSERT_EQ(render(two, c.arguments + QStringList{"--scale", "2"}).code, 0);
        const QImage fine = picture(two);
        ASSERT_EQ(fine.size(), 2 * drawn.size());
        for (const QRect &part : parts) {
            EXPECT_TRUE(drawn.rect().contains(part.translated(-same->frame().topLeft())));
            const QWidget *const shown = window.browser->childAt(part.center());
            const QRect place = part.translated(-same->frame().topLeft());
            EXPECT_EQ(isDoubled(fine, drawn, place), qobject_cast<const Tsb::Plot *>(shown) != nullptr);
            if (qobject_cast<const Colorbar *>(shown)) { // above its texts there are the colours alone
                EXPECT_FALSE(isDoubled(fine, drawn, QRect(place.topLeft(), QSize(place.width(), 1))));
            }
        }
    }
}

TEST_F(Render, FitsTheScalesThatASetupDoesNotTell)
{
    const QVariantList fitted = samePicture({})->browser().setup().toList();
    QVariantList untold{QVariantMap{{"type", "no such view"}}};
    for (const QVariant &entry : fitted) {
        QVariantMap map = entry.toMap(), settings = map["settings"].toMap();
        EXPECT_EQ(settings.remove("scaleMin") + settings.remove("colorLower"), map["type"] == "opmode" ? 0 : 1);
        settings.remove("scaleMax");
        settings["colorUpper"] = "no number";
        map["settings"] = settings;
        untold << map;
    }
    EXPECT_EQ(samePicture(untold)->browser().setup().toList(), fitted);
}

TEST_F(Render, TellsWhatIsOffAScale)
{
    const QVariantMap current{
        {"type", "electrometer"}, {"electrometerNumber", 3}, {"scaleMin", 1e7}, {"scaleMax", 2e7}};
    const auto one = samePicture(QVariantList{QVariantMap{{"type", "scatterplot"}, {"settings", current}}});
    one->draw();
    const auto *const scale = one->browser().findChild<Tsb::VerticalScaleWidget *>();
    EXPECT_TRUE(scale->toolTip().contains("off scale: ")) << scale->toolTip().toStdString();
}

TEST_F(Render, ShowsTheSpanThatIsAskedFor)
{
    const char day[] = "2019-05-14";
    ASSERT_EQ(render("day.png", {"--from", day, "--to", day}).code, 0);
    ASSERT_EQ(render("hours.png", {"--from", "2019-05-14 00:00:00", "--to", "2019-05-15 00:00"}).code, 0);
    EXPECT_EQ(contentOf("day.png"), contentOf("hours.png"));
    // The demonstration's clock is two hours ahead; a zone in the text stands above that.
    ASSERT_EQ(render("zone.png", {"--from", "2019-05-13 22:00:00.000000+00:00", "--to", "2019-05-15 01:00+03:00"}).code,
              0);
    EXPECT_EQ(contentOf("zone.png"), contentOf("day.png"));
    ASSERT_EQ(render("half.png", {"--from", "2019-05-14 12:00"}).code, 0);
    EXPECT_NE(contentOf("half.png"), contentOf("day.png"));

    const struct {
        QStringList arguments;
        const char *words;
    } empty[] = {
        {{"--to", "2019-05-13"}, "before 2019-05-14 00:00:00"},
        {{"--from", "2031-01-01"}, "from 2031-01-01 00:00:00 on"},
        {{"--from", day, "--to", "2019-05-13"}, "from 2019-05-14 00:00:00 to 2019-05-14 00:00:00"},
        {{"--from", "2019-05-15 12:30", "--to", day}, "from 2019-05-15 12:30:00 to 2019-05-15 00:00:00"},
    };
    for (const auto &c : empty) {
        const Ended ended = render("empty.png", c.arguments);
        EXPECT_EQ(ended.code, 1) << c.words;
        EXPECT_EQ(ended.errors, QByteArray("No records ") + c.words + "\n");
    }
    EXPECT_FALSE(QFile::exists(path("empty.png")));
}

TEST_F(Render, LocalTimesHaveTheOffsetOfTheFirstRecordThatIsShown)
{
    const auto writeRecord = [this](const QByteArray &date, const QByteArray &zone) {
        const QByteArray begin = date + " 12:00:00.000000" + zone, end = date + " 12:05:00.000000" + zone;
        write("change/" + QString(date).remove('-') + "-block.records",
              recordsHeader() + begin + '\t' + end + "\tions\t1\t2\t0.1\t0.2\t3\t4\t5\t6\t20.5\t\n");
    };
    writeRecord("2019-02-01", "+01:00");
    writeRecord("2019-02-03", "+01:00");
    writeRecord("2019-08-05", "+02:00");
    Batch::RenderOptions options;
    options.read.folder = path("change");
    options.read.variant = "block";
    const Batch::FolderRead read =
        Batch::readFolder(options.read, Batch::matchingFiles(options.read), options.read.variant);
    const Datastore &store = *read.reader->datastore();
    ASSERT_EQ(store.size(), 3);
    const struct {
        const char *from, *to, *begin;
        int offset;
    } cases[] = {
        {"", "", "2019-02-01 11:00:00", 3600},
        {"2019-02-03", "2019-02-03", "2019-02-02 23:00:00", 3600},
        {"2019-08-05", "2019-08-05", "2019-08-04 22:00:00", 7200},
        {"2019-08-05 12:00", "2019-08-05 12:05", "2019-08-05 10:00:00", 7200}, // an hour later there is nothing
    };
    for (const auto &c : cases) {
        options.from = c.from;
        options.to = c.to;
        const Batch::TimeSpan span = Batch::spanToShow(options, store);
        EXPECT_EQ(timeToString(span.begin, "%Y-%m-%d %H:%M:%S"), c.begin);
        EXPECT_TRUE(Batch::hasRecordsIn(span, store)) << c.begin;
        const StackPicture one(*read.reader, QVariantList{QVariantMap{{"type", "opmode"}}}, span, {});
        EXPECT_EQ(one.browser().timeView()->timeOffset(), c.offset) << c.begin;
    }
    options.from = "2019-08-06";
    options.to.clear();
    EXPECT_EQ(Batch::textOf(Batch::spanToShow(options, store), options), "from 2019-08-06 00:00:00 on");
}

TEST_F(Render, RefusesWithWords)
{
    write("here.png", "a picture of somebody's");
    ASSERT_TRUE(QDir(path()).mkdir("folder.svg"));
    write("list.windowsetup", "- 1\n");
    write("other.windowsetup", "version: 2\n");
    write("wrong.windowsetup", "timeseries: {type: opmode}\n");
    write("broken.windowsetup", "timeseries: [\n");
    write("short.windowsetup", "timeseries: [{type: opmode}]\n");
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe.windowsetup")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path("demo/20190514-block.records"), path("link.png")));
    expectEndings("render.txt");
    EXPECT_FALSE(QFile::exists(path("new.png")));
    EXPECT_EQ(contentOf("here.png"), "a picture of somebody's");
    EXPECT_TRUE(isTidy());
}

TEST_F(Render, ADocumentHasThePlaceOfEverythingAndTextsAsTexts)
{
    for (const char *name : {"a.png", "a.SVG", "a.pdf"})
        ASSERT_EQ(render(name).code, 0) << name;
    const QImage pixels = picture("a.png");

    QSvgRenderer svg(path("a.SVG"));
    ASSERT_TRUE(svg.isValid());
    ASSERT_EQ(svg.viewBox(), pixels.rect());
    QImage drawn(pixels.size(), QImage::Format_RGB32);
    QPainter painter(&drawn);
    svg.render(&painter);
    painter.end();
    const auto same = samePicture({});
    int plots = 0;
    for (const auto *plot : same->browser().findChildren<Tsb::Plot *>()) {
        const QPoint corner = plot->mapTo(&same->browser(), plot->contentsRect().topLeft()) - same->frame().topLeft();
        const QRect place(corner, plot->contentsRect().size());
        EXPECT_EQ(greatestDifference(drawn.copy(place), pixels.copy(place)), 0) << plots;
        ++plots;
    }
    EXPECT_GT(plots, 0);
    const QStringList texts = textsOf(contentOf("a.SVG"));
    // Of the time axis, a title, the numbers of a scale and of a colour bar.
    for (const char *text : {"2019-05-14", "Total concentration", "1400", "10000"})
        EXPECT_TRUE(texts.contains(text)) << text;

    const QByteArray pdf = contentOf("a.pdf");
    EXPECT_TRUE(pdf.startsWith("%PDF") && pdf.endsWith("%%EOF\n"));
    EXPECT_TRUE(pdf.contains("/Font"));
    const auto box = QRegularExpression("MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)")
                         .match(QString::fromLatin1(pdf.constData(), pdf.size()));
    EXPECT_NEAR(box.captured(1).toDouble() / box.captured(2).toDouble(), double(pixels.width()) / pixels.height(),
                1e-4);
}

TEST_F(Render, APictureThatADiskCutsOffIsNoneWhetherItIsFullAtTheBeginOrAtTheEnd)
{
    for (const QString suffix : {"png", "svg", "pdf"}) {
        ASSERT_EQ(render("whole." + suffix).code, 0);
        ASSERT_TRUE(QFile::rename(path("whole." + suffix), path("whole" + suffix))); // nothing else has such a name
        for (qint64 blocks : {qint64(8), (QFileInfo(path("whole" + suffix)).size() - 1) / 512}) {
            const QString name = path("full." + suffix);
            const Ended full = runInShell(QString("ulimit -f %1; exec \"$@\"").arg(blocks),
                                          {"render", path("demo"), "--variant", "block", "--output", name});
            EXPECT_EQ(full.code, 1) << blocks;
            EXPECT_TRUE(full.errors.contains("could not be written")) << full.errors.constData();
            EXPECT_FALSE(QFile::exists(name)) << blocks;
            EXPECT_TRUE(isTidy());
        }
    }
}

TEST_F(Render, AFileCallThatFailsIsToldWithItsStatus)
{
    Batch::RenderOptions options;
    options.read.folder = path("demo");
    options.read.variant = "block";
    options.outputFile = path("new/a.png");
    options.size = {400, 600};
    for (const bool overwrite : {false, true}) {
        options.overwrite = overwrite;
        const auto run = [&] {
            QDir(path("new")).removeRecursively();
            if (overwrite)
                write("new/a.png", "old");
            const Batch::MessageCollector messages(true, Batch::MessageCollector::AllButToolkit);
            return Batch::render(options, messages).exitStatus();
        };
        const auto check = [&](int status, const QByteArray &words) {
            EXPECT_EQ(words.contains("pixels written"), status == 0);
            const bool isMissing = status != 0 && !words.contains("might be lost in a power failure");
            EXPECT_EQ(picture("new/a.png").isNull(), isMissing);
            EXPECT_EQ(contentOf("new/a.png") == "old", isMissing && overwrite);
        };
        QStringList ends{"close 0",  "close 1", "fsync 1", "open 1", overwrite ? "rename 1" : "renameToFree 1",
                         "unlink 0", "write 1"};
        if (overwrite)
            ends.insert(2, "fchmod 1");
        EXPECT_EQ(endsOfFailingRuns(run, check), ends);
    }
}

TEST_F(Render, NeedsNoDisplayNorTheUsersDesktopButAFont)
{
    ASSERT_EQ(render("plain.png").code, 0);
    const QStringList arguments{"render", path("demo"), "--variant", "block", "--output"};
    const Ended styled = runInShell("env QT_QPA_PLATFORM=xcb DISPLAY=:77 QT_SCALE_FACTOR=3 QT_STYLE_OVERRIDE=Windows "
                                    "QT_FONT_DPI=200 QT_QPA_PLATFORMTHEME=gtk3 \"$@\"",
                                    arguments + QStringList{path("styled.png")});
    EXPECT_EQ(styled.code, 0) << styled.errors.constData();
    EXPECT_EQ(contentOf("styled.png"), contentOf("plain.png"));

    write("fonts.conf", "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig></fontconfig>\n");
    const Ended without = runInShell(QString("env FONTCONFIG_FILE='%1' \"$@\"").arg(path("fonts.conf")),
                                     arguments + QStringList{path("without.png")});
    EXPECT_EQ(without.code, 1);
    EXPECT_TRUE(without.errors.contains("No font is installed")) << without.errors.constData();
    EXPECT_FALSE(QFile::exists(path("without.png")));
}

TEST_F(Render, ComplaintsOfReadingShowInTheStatus)
{
    QFile records(path("demo/20190514-block.records"));
    ASSERT_TRUE(records.open(QIODevice::Append));
    records.write("2019-05-14 12:00:00\tshort\n");
    records.close();
    const Ended ended = render("bad.png");
    EXPECT_EQ(ended.code, 3);
    EXPECT_TRUE(ended.errors.contains("fields found")) << ended.errors.constData();
    EXPECT_FALSE(picture("bad.png").isNull());
}
