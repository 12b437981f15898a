#include "batch/commandline.h"
#include "batch/interrupt.h"
#include "batch/reinvertcommand.h"
#include "batch/savecommand.h"
#include "batch/summarycommand.h"
#include "log/logger.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextCodec>

#include <clocale>
#include <csignal>
#include <cstring>

#include <langinfo.h>

int main(int argc, char **argv)
{
    Log::installQtMessageHandler();
    QCoreApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale(QLocale::C, QLocale::AnyCountry));
    // Scripts run under the plain C locale, whose characters end at 127; file names don't.
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
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
