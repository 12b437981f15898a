#pragma once

#include <QDate>
#include <QSize>
#include <QString>
#include <QStringList>

/// The choices that the command line of morvantide-batch makes.
namespace Batch {

/// The choice of data. The variant is a pattern of file names, as in the window's data dialog.
struct ReadOptions {
    QString folder;
    QString variant; ///< empty: files without a variant in their names
    QDate from;      ///< invalid: no limit
    QDate to;
    bool legacy = false;   ///< old-style files, which name no variant
    QString assumedOpmode; ///< of old-style records whose files tell none; empty: unknown
    int jobs = 1;          ///< threads; what comes out is the same for any number
};

struct SummaryOptions {
    ReadOptions read;
    bool json = false;
    bool quick = false; ///< of names and headers alone
};

struct SaveOptions {
    ReadOptions read;
    QString outputFolder;
    QString outputVariant;
    bool records = true;
    bool inversionVars = false;
    bool append = false;    ///< continues files that exist
    bool overwrite = false; ///< replaces them; not with `append`
};

struct ReinvertOptions {
    SaveOptions save;      ///< without records, unless they are asked for
    QStringList inverters; ///< paths as the window's file dialog takes them
    bool onlyNew = false;  ///< leaves out the spectra that were read
};

struct ExportOptions {
    ReadOptions read;
    QString setupFile;
    QString outputFile;     ///< empty: the one that the setup names
    bool overwrite = false; ///< replaces files that exist
};

struct RenderOptions {
    ReadOptions read; ///< without dates: days outside the span are read too, as the window does
    QString outputFile;
    QSize size;             ///< logical pixels; empty: the default width, and the height that the stack asks for
    QString from;           ///< a day or a moment, local at the first record shown; empty: from the first record on
    QString to;             ///< likewise; a day is shown to its end
    QString setupFile;      ///< empty: the default stack
    int scale = 1;          ///< pixels of the file for each logical pixel along an edge
    bool overwrite = false; ///< replaces a file that exists
};

} // namespace Batch
