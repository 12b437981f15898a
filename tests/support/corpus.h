#pragma once

#include "support/files.h"

#include <functional>

/// Holds every file of the corpus NAME against the file expected/NAME/FILE.expected: `outcomeOf` tells in lines of text
/// what the file of that path comes to. Where MORVANTIDE_WRITE_EXPECTED is set the expected files are written instead,
/// to be looked through before they are committed.
inline void expectCorpus(const QString &name, const std::function<QString(const QString &path)> &outcomeOf)
{
    const QString corpus = FUZZ_DIRECTORY "/corpus/" + name, expected = FUZZ_DIRECTORY "/expected/" + name;
    for (const QString &file : filesIn(corpus)) {
        const QByteArray outcome = outcomeOf(corpus + '/' + file).toUtf8();
        const QString path = expected + '/' + file + ".expected";
        if (qEnvironmentVariableIsSet("MORVANTIDE_WRITE_EXPECTED"))
            writeFile(path, outcome);
        EXPECT_EQ(outcome.toStdString(), contentOf(path).toStdString()) << qPrintable(file);
    }
    EXPECT_EQ(filesIn(expected).size(), filesIn(corpus).size()) << "something is expected of a file that isn't there";
}
