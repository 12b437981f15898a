#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/morvantide/reviewwindow.h"
#include "support/commands.h"
#include "support/gestures.h"
#include "windowsetup/setupfile.h"

#include <QMenu>
#include <QProcess>

#include <random>

// A saved layout is damaged and restored, again and again, in processes of their own: none may crash or hang. The
// number of mutations is MORVANTIDE_MUTATIONS, or 500, and that of the first one MORVANTIDE_FIRST_MUTATION, or 0.

namespace {

constexpr int mutationsOfProcess = 100;
constexpr int patience = 60'000; // ms for one
const QString firstVariable = QStringLiteral("MORVANTIDE_FIRST_MUTATION");
const QString countVariable = QStringLiteral("MORVANTIDE_MUTATIONS");

int numberIn(const QString &variable, int fallback)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable.toLatin1().constData(), &isNumber);
    return isNumber ? number : fallback;
}

/// Damages of a layout's text, the same for the same number.
class Mutation {
public:
    Mutation(int number, QByteArray text, QVariantMap setup)
        : m_random(unsigned(number)), m_text(std::move(text)), m_setup(std::move(setup))
    {
    }
    /// The layout as it stands in the file then.
    void writeTo(const QString &path)
    {
        if (upTo(3) == 0) {
            damageUnsealed();
            ASSERT_EQ(WindowSetup::writeSetupFile(path, m_setup), QString());
            return;
        }
        for (int i = 0; i <= upTo(4); ++i)
            damageText();
        writeFile(path, m_text);
    }

private:
    int upTo(int count) { return int(m_random() % unsigned(std::max(1, count))); }
    int place() { return upTo(m_text.size()); }

    /// Bytes of the toolkit without their checksum, which alone could tell.
    void damageUnsealed()
    {
        const std::pair<const char *, const char *> states[] = {{"mainwindow", "state"},
                                                                {"mainwindow", "geometry"},
                                                                {"diagnosticview", "headerstate"},
                                                                {"electrometersview", "headerstate"}};
        const auto &[part, key] = states[upTo(4) == 0 ? 1 + upTo(3) : 0];
        QVariantMap map = m_setup[part].toMap();
        QByteArray bytes = QByteArray::fromHex(map[key].toString().toLatin1());
        for (int i = 0; i <= upTo(4); ++i) {
            const int at = upTo(bytes.size());
            if (const int kind = upTo(8); kind == 0)
                bytes.truncate(at);
            else if (kind == 1)
                bytes.insert(at, bytes.mid(upTo(bytes.size()), upTo(40)));
            else
                bytes[at] = char(kind < 4 ? upTo(4) : m_random());
        }
        map[key] = QString::fromLatin1(bytes.toHex());
        map.remove(QString(key) + "checksum");
        m_setup[part] = map;
    }
    void damageText()
    {
        static const QByteArray values[] = {"0",  "-1", "1e308", ".nan",   "2147483648", "-99999999999999", "''",  "[]",
                                            "{}", "~",  "true",  "opmode", "[1, [2]]",   "scatterplot",     "4096"};
        const int at = place();
        switch (upTo(5)) {
        case 0:
            m_text[at] = char(m_random());
            break;
        case 1:
            m_text.remove(at, upTo(200));
            break;
        case 2:
            m_text.insert(at, m_text.mid(place(), upTo(400)));
            break;
        default: { // another value behind a key
            const int begin = m_text.indexOf(": ", at) + 2;
            m_text.replace(begin, m_text.indexOf('\n', begin) - begin, values[upTo(int(std::size(values)))]);
        }
        }
        if (m_text.isEmpty())
            m_text = "version: 2\n";
    }

    std::mt19937 m_random;
    QByteArray m_text;
    QVariantMap m_setup;
};

/// The window in the process that restores.
class MutatedLayouts : public ReviewWindow {
protected:
    MutatedLayouts() : ReviewWindow(7200) {}

    /// Through the menu of the layouts beside the data.
    void restore(const QString &name)
    {
        QMenu *const menu = action("Layouts of the data")->menu();
        Q_EMIT menu->aboutToShow();
        if (QAction *const layout = commandOf(menu->actions(), name))
            layout->trigger();
    }
};

} // namespace

TEST_F(MutatedLayouts, DISABLED_InThisProcess)
{
    Log::RootLogger::instance().disconnect(); // thousands of warnings
    window->resize(1000, 700);
    window->show();
    open();
    settle();
    action("Save layout")->trigger();
    const QByteArray text = contentOf("demo/default.windowsetup");
    const QVariantMap setup = WindowSetup::readSetupFile(path("demo/default.windowsetup")).setup;
    ASSERT_FALSE(setup.isEmpty());
    const int first = numberIn(firstVariable, 0), count = numberIn(countVariable, 1);
    for (int number = first; number < first + count; ++number) {
        std::printf("\nmutation %d\n", number);
        std::fflush(stdout);
        Mutation(number, text, setup).writeTo(path("demo/mutated.windowsetup"));
        restore("mutated.windowsetup");
        settle();
    }
    restore("default.windowsetup");
    settle();
    EXPECT_TRUE(window->browser()->hasViews()) << "a sound one still does its work";
}

TEST(LayoutMutations, BringNoProcessDown)
{
    const int begin = numberIn(firstVariable, 0), end = begin + numberIn(countVariable, 500);
    for (int first = begin; first < end; first += mutationsOfProcess) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(firstVariable, QString::number(first));
        environment.insert(countVariable, QString::number(std::min(mutationsOfProcess, end - first)));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QApplication::applicationFilePath(),
                      {"--gtest_also_run_disabled_tests", "--gtest_filter=*InThisProcess"});
        QByteArray output;
        while (process.waitForReadyRead(patience)) // a line for each mutation
            output = (output + process.readAll()).right(3000);
        const bool isFinished = process.state() == QProcess::NotRunning || process.waitForFinished(patience);
        EXPECT_TRUE(isFinished) << "it hangs";
        if (!isFinished) {
            process.kill();
            process.waitForFinished();
        }
        EXPECT_TRUE(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
            << (output + process.readAll()).toStdString();
    }
}
