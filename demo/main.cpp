#include "demo/demowriter.h"
#include "demo/gridlayout.h"
#include "demo/legacyfiles.h"

#include "log/logger.h"
#include "util/buildinfo.h"
#include "util/programlocale.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    setProgramLocale();
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed write like any other

    CLI::App app("Writes a data folder of a made-up mobility spectrometer, and its inverters, to try Morvantide with.",
                 "morvantide-demo");
    std::string folder;
    Demo::Campaign::Settings settings;
    app.add_option("OUT", folder, "The folder to write; made if it doesn't exist, refused if it isn't empty")
        ->required();
    app.add_option("--days", settings.days, "How many days")->capture_default_str()->check(CLI::Range(1, 3650));
    app.add_option("--interval", settings.interval, "Seconds from one record to the next")
        ->capture_default_str()
        ->check(CLI::Range(1, 3600));
    app.add_option("--seed", settings.seed, "Another seed, another campaign")->capture_default_str();
    bool isLegacy = false;
    app.add_flag("--legacy", isLegacy,
                 "Write the files of old instruments, .sig, .log and .nds, in place of the others");
    app.set_version_flag("--version", BuildInfo::version().toStdString());
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : 2;
    }

    const QString path = QString::fromLocal8Bit(folder.c_str());
    if (!QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot) &&
        QDir(path).exists()) {
        std::cerr << "The folder \"" << folder << "\" isn't empty.\n";
        return 2;
    }
    if (QFileInfo::exists(path) && !QFileInfo(path).isDir()) {
        std::cerr << "\"" << folder << "\" isn't a folder.\n";
        return 2;
    }
    if (!QDir().mkpath(path)) {
        std::cerr << "The folder \"" << folder << "\" can't be made.\n";
        return 1;
    }
    Log::RootLogger::instance().setFilter([](const Log::Entry &entry) { return entry.level <= Log::Warning; });
    const Demo::Campaign campaign(settings);
    if (isLegacy)
        return Demo::writeLegacyFiles(campaign, path) ? 0 : 1;
    const auto counts = Demo::writeCampaign(campaign, path);
    const bool comments = Demo::writeComments(campaign, path);
    const bool layouts = Demo::writeGridLayouts(path);
    const bool inverters =
        Demo::writeInverterFiles(campaign.inverterFiles(), QDir(path).filePath(QStringLiteral("inverters")));
    std::cout << counts.written << " rows in \"" << folder << "\"\n";
    if (counts.lost > 0)
        std::cerr << counts.lost << " rows could not be written.\n";
    return counts.lost > 0 || !comments || !layouts || !inverters ? 1 : 0;
}
