#include "app/commandline.h"
#include "app/crashreporter.h"
#include "app/quitsignals.h"
#include "app/recoveryfile.h"
#include "app/translations.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "gui/morvantide/settingsfile.h"
#include "log/consoleoutput.h"
#include "log/logger.h"
#include "records/record.h"
#include "records/recordmetadata.h"
#include "resources/resources.h"
#include "spectra/spectrum.h"
#include "util/buildinfo.h"
#include "util/programlocale.h"
#include "windowsetup/settingsformat.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QIcon>
#include <QLocale>
#include <QSettings>

#include <cstdio>

// How the process comes up and goes down. The order matters:
//
//   help, version      before all else: they need no display
//   message handler    first of the rest, so that Qt's messages while starting are logged like any other
//   application
//   locale             after the application object, which takes over the user's, and before the first file name
//   scaling attributes after the application object, a settled detail: Qt warns, and leaves scaling to the environment
//   quit signals       early; one that comes now waits for the event loop
//   recovery file name before the crash reporter, which names it when it starts the program again
//   crash reporter     before anything that may crash
//   recovery start     before resources and logger: a bad recovery file ends the process without a trace
//   resources, types   before the first window and the first queued call
//   translations       after the resources that hold them, and before the first text of a window
//   recovery file      once the program is sure to start
//   window             after its icon and all types
//   messages           after the window, whose log shows them

namespace {

constexpr int badRecovery = -1;

QString versionText()
{
    return QStringLiteral("vers %1 rev %2 arch %3")
        .arg(BuildInfo::version(), BuildInfo::revision(), QSysInfo::buildAbi());
}

bool installCrashReporter(const QString &recoveryFile)
{
    CrashReporter::Settings settings;
    settings.applicationName = QStringLiteral("Quilvane");
    settings.applicationVersion = versionText();
    settings.reportFolder = QStringLiteral("crash_reports");
    settings.restartArguments = QStringList{QStringLiteral("--recover"), recoveryFile};
    settings.restartTimeoutSeconds = 60;
    settings.lastWords = Log::writeCountAtCrash;
    return CrashReporter::install(settings);
}

void registerMetaTypes()
{
    qRegisterMetaType<Log::Entry>("Log::Entry");
    qRegisterMetaType<Spectrometer::RecordHeadPointer>("Spectrometer::RecordHeadPointer");
    qRegisterMetaType<Spectrometer::FullRecordPointer>("Spectrometer::FullRecordPointer");
    qRegisterMetaType<SpectMath::SpectrumPointerList>("SpectMath::SpectrumPointerList");
    qRegisterMetaType<SpectMath::SpectrumRecordPointer>("SpectMath::SpectrumRecordPointer");
    qRegisterMetaType<std::shared_ptr<Record>>("std::shared_ptr<Record>");
    qRegisterMetaType<std::shared_ptr<Spectrometer::RecordMetadata>>("std::shared_ptr<Spectrometer::RecordMetadata>");
}

QIcon windowIcon()
{
    QIcon icon;
    for (const char *size : {"16", "22", "32", "48", "100"})
        icon.addFile(QStringLiteral(":morvantide-%1.png").arg(QLatin1String(size)));
    return icon;
}

/// The user's choice, or what the system tells.
QStringList languages()
{
    const QSettings settings(applicationSettingsFile(), WindowSetup::settingsFormat());
    const QString chosen = settings.value(QStringLiteral("language")).toString();
    return chosen.isEmpty() ? QLocale::system().uiLanguages() : QStringList{chosen};
}

QString recoveredText()
{
    return QStringLiteral("The program recovered from a crash!\n"
                          "The crash report files were stored in the \"crash_reports\" subfolder.\n"
                          "Please send these files to %1 to help fix the problem.\n"
                          "You can delete the files afterwards.\n")
        .arg(QStringLiteral(MORVANTIDE_SUPPORT_ADDRESS));
}

void runWindow(const QStringList &positionalArguments, QuitSignals &quitSignals, bool hasCrashReporter,
               bool isRecovered)
{
    const Log::Logger log(QStringLiteral("main"));
    MorvantideMainWindow window;
    window.setPositionalArguments(positionalArguments);
    window.show();
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &window, &MorvantideMainWindow::terminateSignal);

    if (!hasCrashReporter)
        log.log(Log::Warning, QStringLiteral("Crash handler failed to initialize: %1").arg(CrashReporter::lastError()));
    if (isRecovered)
        log.log(Log::Warning, recoveredText());
    QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const QString answer = CommandLine::answerTo(QStringList(argv, argv + argc));
    if (!answer.isNull()) {
        std::fputs(answer.toLocal8Bit().constData(), stdout);
        return 0;
    }
    Log::installQtMessageHandler();
    ignoreWriteSignals();
    const QApplication application(argc, argv);
    setProgramLocale();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QuitSignals quitSignals;
    QStringList arguments = QApplication::arguments();
    const QString recoveryFile =
        RecoveryFile::name(QApplication::applicationPid(), QDateTime::currentMSecsSinceEpoch());
    const bool hasCrashReporter = installCrashReporter(recoveryFile);

    const CommandLine::RecoverOption recover = CommandLine::recoverOption(arguments);
    if (recover.isGiven) {
        const auto recovered = recover.file.isNull() ? std::nullopt : RecoveryFile::take(recover.file);
        if (!recovered)
            return badRecovery;
        arguments = *recovered;
    }

    registerResources();
    registerMetaTypes();
    Translations::install(languages());
    const Log::Logger log(QStringLiteral("main"));
    log.log(Log::Notice, QStringLiteral("Program started"));
    RecoveryFile::write(recoveryFile);
    QApplication::setWindowIcon(windowIcon());
    QGuiApplication::setDesktopFileName(QStringLiteral("morvantide")); // desktops without icons of windows take its
    runWindow(CommandLine::positionalArguments(arguments), quitSignals, hasCrashReporter, recover.isGiven);

    log.log(Log::Notice, QStringLiteral("Program finished"));
    CrashReporter::uninstall();
    QFile::remove(recoveryFile);
    return 0;
}
