#include "dayswork/screen.h"
#include "support/files.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

#include <unistd.h>

namespace {

const QString pictures = PLACE "/pictures";
const QString mainTitle = "data - Morvantide";
const QString comment = "growth begins at 2 nm";

/// The program as it is, upon a display, with settings of its own, and a folder of data.
class DaysWork : public ::testing::Test {
public:
    DaysWork()
    {
        QDir(pictures).removeRecursively();
        QDir().mkpath(pictures);
    }
    void SetUp() override
    {
        ASSERT_EQ(QGuiApplication::platformName(), "xcb") << "run it by underdisplay";
        ASSERT_EQ(::link(PROGRAM, qPrintable(path("morvantide"))), 0) << "beside which it keeps its settings";
        ASSERT_EQ(QProcess::execute(DEMO, {path("data"), "--days", "2"}), 0);
    }
    void TearDown() override
    {
        if (HasFailure()) {
            keepPicture("failure");
            writeFile(pictures + "/console.txt", m_console + m_process.readAll());
        }
        m_process.kill();
        m_process.waitForFinished();
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// For a person to look at.
    void keepPicture(const QString &name)
    {
        (void)Screen::waitForRest();
        const QString file = QString("%1/%2-%3.png").arg(pictures).arg(++m_pictures, 2, 10, QChar('0')).arg(name);
        EXPECT_TRUE(Screen::picture().save(file));
    }

    // ---- what is waited for

    /// That text from the program's console, behind all that was waited for before.
    void waitForWords(const QByteArray &words)
    {
        ASSERT_TRUE(Screen::waitUntil([&] {
            m_console += m_process.readAll();
            const int at = m_console.indexOf(words, m_told);
            if (at >= 0)
                m_told = at + words.size();
            return at >= 0;
        })) << words.constData();
    }
    /// The window that gets the keys.
    static void waitForWindow(const QString &title)
    {
        ASSERT_TRUE(Screen::waitUntil([&] { return Screen::activeTitle() == title; }))
            << title.toStdString() << " hasn't the keys, but " << Screen::activeTitle().toStdString();
    }
    static void expectText(const QString &text)
    {
        EXPECT_FALSE(Screen::waitForText(text).empty()) << text.toStdString();
    }

    // ---- gestures

    static void clickText(const QString &text, std::size_t which = 0, QPoint beside = {})
    {
        const auto places = Screen::waitForText(text, which + 1);
        ASSERT_GT(places.size(), which) << text.toStdString();
        Screen::click(places[which].center() + beside);
    }
    /// The menu gives each entry a letter that is underlined, whichever is free.
    static std::vector<QRect> placesOfEntry(const QString &command)
    {
        std::vector<QRect> places = Screen::placesOf(command);
        for (int letter = 0; letter < command.size() && !command.contains('&'); ++letter) {
            if (command[letter].isLetter())
                for (const QRect &place : Screen::placesOf(QString(command).insert(letter, '&')))
                    places.push_back(place);
        }
        return places;
    }
    /// What else has the text of the command stands there before.
    static void choose(const QString &menu, const QString &command)
    {
        const auto before = Screen::placesOf(command);
        ASSERT_NO_FATAL_FAILURE(clickText(menu));
        std::vector<QRect> entries;
        ASSERT_TRUE(Screen::waitUntil([&] {
            entries = placesOfEntry(command);
            const auto wasThere = [&](const QRect &place) {
                return std::find(before.begin(), before.end(), place) != before.end();
            };
            entries.erase(std::remove_if(entries.begin(), entries.end(), wasThere), entries.end());
            return !entries.empty();
        })) << menu.toStdString()
            << ": " << command.toStdString();
        Screen::click(entries.front().center());
    }
    /// Answers a dialog that asks for text, with the focus in its line.
    static void answer(const QString &title, const QString &text)
    {
        ASSERT_NO_FATAL_FAILURE(waitForWindow(title));
        Screen::press("ctrl+a");
        Screen::type(text);
        Screen::press("Return");
    }

    // ---- the day

    void start(const QString &folder, const QString &variant)
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.setWorkingDirectory(m_folder.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LANGUAGE", "C"); // the texts by which it finds its way
        m_process.setProcessEnvironment(environment);
        m_process.start(path("morvantide"), {path(folder), variant});
        ASSERT_NO_FATAL_FAILURE(waitForWindow("Choose data - Morvantide"));
        keepPicture("choice");
        Screen::press("Return");
        ASSERT_NO_FATAL_FAILURE(waitForWords("Finished reading data"));
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
        keepPicture("first-look");
    }
    void quit()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&File", "&Quit"));
        ASSERT_TRUE(m_process.waitForFinished());
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(m_process.exitCode(), 0);
        EXPECT_EQ(filesIn(m_folder.path()).filter("recovery"), QStringList());
    }
    /// The wheel over the event of the first day gives its hours room.
    void zoomToEvent()
    {
        const auto hours = Screen::waitForText("14:00");
        ASSERT_EQ(hours.size(), 2U) << "the days";
        m_event = hours[0].center() + QPoint(0, 350);
        Screen::click(m_event, 4, 20);
        keepPicture("zoomed");
        expectText("13:00");
    }
    /// From a click on the event to its comment and to the record behind it.
    void stepToEvent()
    {
        Screen::click(m_event);
        expectText("2019-05-14 (UTC+2)");
        Screen::press("shift+F3");
        expectText("12:02:30.000");
        Screen::press("Right");
        expectText("12:05:00.000");
    }
    void addComment()
    {
        ASSERT_NO_FATAL_FAILURE(clickText("Add comment", 0, {120, 0}));
        Screen::type(comment);
        Screen::press("Return");
        ASSERT_TRUE(Screen::waitUntil([this] {
            return contentOf(path("data/20190514-block.comments")).endsWith('\t' + comment.toUtf8() + '\n');
        }));
        keepPicture("comment");
    }
    void reinvert()
    {
        QStringList files;
        for (const char *name : {"particles-neg", "particles-pos"}) {
            QByteArray text = contentOf(path(QString("data/inverters/%1.inverter").arg(name)));
            files << path(QString("%1.inverter").arg(name));
            writeFile(files.last(), text.replace("inverter_name: demo", "inverter_name: fresh"));
        }
        ASSERT_NO_FATAL_FAILURE(choose("&Spectra", "Reinvert..."));
        ASSERT_NO_FATAL_FAILURE(answer("Open inverters", '"' + files.join("\" \"") + '"'));
        ASSERT_NO_FATAL_FAILURE(waitForWords("Reinversion finished!"));
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
        keepPicture("reinverted");
    }
    void discardOne()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&Spectra", "Spectra info"));
        ASSERT_NO_FATAL_FAILURE(waitForWindow("Spectrum information"));
        ASSERT_NO_FATAL_FAILURE(clickText("fresh", 1));
        ASSERT_NO_FATAL_FAILURE(clickText("Discard"));
        ASSERT_NO_FATAL_FAILURE(waitForWords("Removing spectrum 'particles pos' from memory."));
        keepPicture("discarded");
        ASSERT_NO_FATAL_FAILURE(clickText("Close"));
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
    }
    void savePicture(const QString &name)
    {
        ASSERT_NO_FATAL_FAILURE(choose("&Timeseries", "Save picture..."));
        const QString file = pictureOf(name);
        ASSERT_NO_FATAL_FAILURE(answer("Save picture", file));
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
        ASSERT_TRUE(Screen::waitUntil([&] { return QFile::exists(file); }));
        EXPECT_GT(QImage(file).width(), 400);
    }
    /// The total concentrations that a plot shows, as a table.
    void exportTable()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&File", "Export data..."));
        ASSERT_NO_FATAL_FAILURE(waitForWindow("Export settings"));
        ASSERT_NO_FATAL_FAILURE(clickText("Output file:", 0, {150, 0}));
        Screen::press("ctrl+a");
        Screen::type(path("totals.txt"));
        ASSERT_NO_FATAL_FAILURE(choose("Add fields", "Add fields from timeseries plots"));
        keepPicture("export");
        ASSERT_NO_FATAL_FAILURE(clickText("Export"));
        ASSERT_NO_FATAL_FAILURE(waitForWords("rows written to"));
        keepPicture("exported");
        int records = 0;
        for (const char *day : {"20190514", "20190515"})
            records += contentOf(path(QString("data/%1-block.records").arg(day))).count("\n2019-");
        const QByteArrayList lines = contentOf(path("totals.txt")).split('\n');
        EXPECT_EQ(lines.size(), 1 + records + 1);
        EXPECT_EQ(lines.first().count("total number (1/cm^3)"), 2);
        Screen::press("Escape");
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
    }
    QString pictureOf(const QString &name) const { return QString("%1/browser-%2.png").arg(pictures, name); }
    /// Other plots than those that the data are shown with at first, and a dock less.
    void arrange()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&Timeseries", "Close all plots"));
        for (const char *plot : {"Variable", "Operating mode", "Electrometer current"})
            ASSERT_NO_FATAL_FAILURE(choose("&Timeseries", plot));
        ASSERT_NO_FATAL_FAILURE(choose("&View", "Log"));
        ASSERT_NO_FATAL_FAILURE(clickText("Fit timescale"));
        ASSERT_NO_FATAL_FAILURE(clickText("14:00", 1, {0, 70})); // into the first plot, where Esc chooses no record
        expectText("2019-05-15 (UTC+2)");
        Screen::press("Escape");
        ASSERT_TRUE(Screen::waitUntil([] { return Screen::placesOf("2019-05-15 (UTC+2)").empty(); }));
        keepPicture("arranged");
    }
    void saveLayout()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&Window", "Save layout"));
        ASSERT_TRUE(Screen::waitUntil([this] { return QFile::exists(path("data/default.windowsetup")); }));
        keepPicture("layout-saved");
    }
    void saveDayFiles()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&File", "Save data..."));
        ASSERT_NO_FATAL_FAILURE(answer("Save data - Morvantide", path("saved/data")));
        ASSERT_NO_FATAL_FAILURE(waitForWords("rows written to"));
        keepPicture("saved");
        Screen::press("Escape");
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
        EXPECT_EQ(QDir(path("saved/data")).entryList({"*-block-reinv-*.spectra"}).size(), 4);
    }
    void findLayout()
    {
        ASSERT_NO_FATAL_FAILURE(savePicture("morning"));
        EXPECT_TRUE(QImage(pictureOf("morning")) == QImage(pictureOf("evening")));
        expectText("Inversion report");
        EXPECT_EQ(Screen::placesOf("Log").size(), 0U) << "its dock was closed";
    }
    void findComment()
    {
        for (int i = 0; i < 4; ++i)
            Screen::press("F3");
        expectText(comment);
        expectText("12:05:00.000");
        keepPicture("comment-found");
    }
    void findReinvertedSpectra()
    {
        ASSERT_NO_FATAL_FAILURE(choose("&Spectra", "Spectra info"));
        ASSERT_NO_FATAL_FAILURE(waitForWindow("Spectrum information"));
        EXPECT_EQ(Screen::waitForText("fresh").size(), 1U);
        keepPicture("spectra-of-the-saved-variant");
        ASSERT_NO_FATAL_FAILURE(clickText("Close"));
        ASSERT_NO_FATAL_FAILURE(waitForWindow(mainTitle));
    }

private:
    QTemporaryDir m_folder{PLACE "/work-XXXXXX"};
    QProcess m_process;
    QByteArray m_console;
    int m_told = 0;
    int m_pictures = 0;
    QPoint m_event;
};

} // namespace

TEST_F(DaysWork, IsFoundAgainTheNextMorning)
{
    ASSERT_NO_FATAL_FAILURE(start("data", "block"));
    ASSERT_NO_FATAL_FAILURE(zoomToEvent());
    ASSERT_NO_FATAL_FAILURE(stepToEvent());
    ASSERT_NO_FATAL_FAILURE(addComment());
    ASSERT_NO_FATAL_FAILURE(reinvert());
    ASSERT_NO_FATAL_FAILURE(discardOne());
    ASSERT_NO_FATAL_FAILURE(exportTable());
    ASSERT_NO_FATAL_FAILURE(savePicture("of-the-event"));
    ASSERT_NO_FATAL_FAILURE(saveDayFiles());
    ASSERT_NO_FATAL_FAILURE(arrange());
    ASSERT_NO_FATAL_FAILURE(savePicture("evening"));
    ASSERT_NO_FATAL_FAILURE(saveLayout());
    ASSERT_NO_FATAL_FAILURE(quit());

    ASSERT_NO_FATAL_FAILURE(start("data", "block"));
    ASSERT_NO_FATAL_FAILURE(findLayout());
    ASSERT_NO_FATAL_FAILURE(findComment());
    ASSERT_NO_FATAL_FAILURE(quit());

    ASSERT_NO_FATAL_FAILURE(start("saved/data", "block-reinv"));
    ASSERT_NO_FATAL_FAILURE(findReinvertedSpectra());
    ASSERT_NO_FATAL_FAILURE(quit());
}
