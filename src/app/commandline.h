#pragma once

#include <QStringList>

#include <string>

/// The contents of the program's command line. Options begin with "-"; unknown ones are ignored.
namespace CommandLine {

struct RecoverOption {
    bool isGiven = false;
    QString file; ///< the word behind the option; null if there is none
};

/// The first "--recover" anywhere on the line.
RecoverOption recoverOption(const QStringList &arguments);

/// The words that are no options, in order; the program's own name at index 0 is none of them.
QStringList positionalArguments(const QStringList &arguments);

/// What a line that holds nothing but "--help", "-h" or "--version" asks to print, with its line's end; null for any
/// other line.
QString answerTo(const QStringList &arguments);

/// The manual page of the program, in roff.
std::string manualPage();
std::string bashCompletion();

} // namespace CommandLine
