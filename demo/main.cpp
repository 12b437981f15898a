#include "demo/commandline.h"
#include "demo/demowriter.h"
#include "demo/gridlayout.h"
#include "demo/legacyfiles.h"

#include "log/logger.h"
#include "terminal/progressline.h"
#include "util/programlocale.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <iostream>

namespace {

void showProgress(double done)
{
    ProgressLine::show(QStringLiteral("Writing %1 %").arg(int(done * 100)), done);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    setProgramLocale();
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed write like any other

    int exitStatus = 0;
    const auto options = Demo::CommandLineParser().parse(argc, argv, &exitStatus);
    if (!options)
        return exitStatus;

    const QString path = QString::fromLocal8Bit(options->folder.c_str());
    if (!QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot) &&
        QDir(path).exists()) {
        std::cerr << "The folder \"" << options->folder << "\" isn't empty.\n";
        return 2;
    }
    if (QFileInfo::exists(path) && !QFileInfo(path).isDir()) {
        std::cerr << "\"" << options->folder << "\" isn't a folder.\n";
        return 2;
    }
    if (!QDir().mkpath(path)) {
        std::cerr << "The folder \"" << options->folder << "\" can't be made.\n";
        return 1;
    }
    Log::RootLogger::instance().setFilter([](const Log::Entry &entry) { return entry.level <= Log::Warning; });
    const Demo::Campaign campaign(options->settings);
    if (options->isLegacy)
        return Demo::writeLegacyFiles(campaign, path) ? 0 : 1;
    const auto counts = Demo::writeCampaign(campaign, path, showProgress);
    ProgressLine::clear();
    const bool comments = Demo::writeComments(campaign, path);
    const bool layouts = Demo::writeGridLayouts(path);
    const QDir folder(path);
    const bool inverters =
        Demo::writeInverterFiles(campaign.inverterFiles(), folder.filePath(QStringLiteral("inverters"))) &&
        Demo::writeSmoothPack(campaign.instrument(), folder.filePath(QStringLiteral("smooth.sinp")));
    std::cout << counts.written << " rows in \"" << options->folder << "\"\n";
    if (counts.lost > 0)
        std::cerr << counts.lost << " rows could not be written.\n";
    return counts.lost > 0 || !comments || !layouts || !inverters ? 1 : 0;
}
