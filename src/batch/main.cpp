#include "batch/commandline.h"
#include "batch/exportcommand.h"
#include "batch/interrupt.h"
#include "batch/outcome.h"
#include "batch/reinvertcommand.h"
#ifdef MORVANTIDE_BATCH_RENDER
#include "batch/render/rendercommand.h"
#endif
#include "batch/savecommand.h"
#include "batch/summarycommand.h"
#include "log/logger.h"
#include "util/programlocale.h"

#include <QCoreApplication>

#include <clocale>
#include <csignal>

namespace {

#ifdef MORVANTIDE_BATCH_RENDER
constexpr auto pictures = Batch::Pictures::Present;
#else
constexpr auto pictures = Batch::Pictures::Absent;
#endif

/// What needs no window.
int run(const Batch::CommandLine &line, int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    setProgramLocale();
    return Batch::runCommand([&line] {
        switch (line.command) {
        case Batch::CommandLine::Summary:
            return Batch::runSummary(line.summary);
        case Batch::CommandLine::Save:
            return Batch::runSave(line.save);
        case Batch::CommandLine::Reinvert:
            return Batch::runReinvert(line.reinvert);
        case Batch::CommandLine::Export:
            return Batch::runExport(line.exported);
        default:
            return line.exitStatus;
        }
    });
}

} // namespace

int main(int argc, char **argv)
{
    Log::installQtMessageHandler();
    std::setlocale(LC_ALL, "");
    setProgramLocale();            // once more behind the application object, which takes over the user's locale anew
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed write like any other,
    std::signal(SIGPIPE, SIG_IGN); // and so are words that nobody reads, which must not end the work

    // Read before there is an application object: which kind it is depends on the command.
    const Batch::CommandLine line = Batch::CommandLineParser(pictures).parse(argc, argv);
    Batch::Interrupt::install();
#ifdef MORVANTIDE_BATCH_RENDER
    if (line.command == Batch::CommandLine::Render)
        return Batch::runCommand([&line] { return Batch::runRender(line.render); });
#endif
    return run(line, argc, argv);
}
