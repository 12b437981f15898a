#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

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

struct ReinvertOptions {
    SaveOptions save;      ///< without records, unless they are asked for
    QStringList inverters; ///< paths as the window's file dialog takes them
    bool onlyNew = false;  ///< leaves out the spectra that were read
    int jobs = 1;          ///< threads that invert
};

struct CommandLine {
    enum Command { None, Summary, Save, Reinvert };
    Command command = None; ///< None: nothing is left to do but to end with `exitStatus`
    int exitStatus = 0;
    SummaryOptions summary;
    SaveOptions save;
    ReinvertOptions reinvert;
};

/// Prints help, the version, or what is wrong, where that is what the words ask for.
CommandLine parseCommandLine(int argc, const char *const *argv);

} // namespace Batch
