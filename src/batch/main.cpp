#include "batch/commandline.h"
#include "batch/interrupt.h"
#include "batch/reinvertcommand.h"
#include "batch/savecommand.h"
#include "batch/summarycommand.h"
#include "log/logger.h"
#include "util/programlocale.h"

#include <QCoreApplication>

#include <csignal>

int main(int argc, char **argv)
{
    Log::installQtMessageHandler();
    QCoreApplication app(argc, argv);
    setProgramLocale();
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed write like any other

    const Batch::CommandLine line = Batch::parseCommandLine(argc, argv);
    Batch::Interrupt::install();
    switch (line.command) {
    case Batch::CommandLine::Summary:
        return Batch::runSummary(line.summary);
    case Batch::CommandLine::Save:
        return Batch::runSave(line.save);
    case Batch::CommandLine::Reinvert:
        return Batch::runReinvert(line.reinvert);
    case Batch::CommandLine::None:
        break;
    }
    return line.exitStatus;
}
