#pragma once

#include <QDate>
#include <QString>

/// The command line of morvantide-batch.
namespace Batch {

/// What to read. The variant is a pattern of file names, as in the window's data dialog.
struct ReadOptions {
    QString folder;
    QString variant; ///< empty: files without a variant in their names
    QDate from;      ///< invalid: no limit
    QDate to;
};

struct SummaryOptions {
    ReadOptions read;
    bool json = false;
};

struct SaveOptions {
    ReadOptions read;
    QString outputFolder;
    QString outputVariant;
    bool records = true;
    bool inversionVars = false;
    bool append = false;
};

struct CommandLine {
    enum Command { None, Summary, Save };
    Command command = None; ///< None: nothing is left to do but to end with `exitStatus`
    int exitStatus = 0;
    SummaryOptions summary;
    SaveOptions save;
};

/// Prints help, the version, or what is wrong, where that is what the words ask for.
CommandLine parseCommandLine(int argc, const char *const *argv);

} // namespace Batch
