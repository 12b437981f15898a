#pragma once

#include "support/files.h"

#include <functional>

/// Holds a text against the file of what is expected. Where MORVANTIDE_WRITE_EXPECTED is set the file is written
/// instead, to be looked through before it is committed.
inline void expectText(const QByteArray &text, const QString &expectedFile)
{
    if (qEnvironmentVariableIsSet("MORVANTIDE_WRITE_EXPECTED"))
        writeFile(expectedFile, text);
    EXPECT_EQ(text.toStdString(), contentOf(expectedFile).toStdString()) << qPrintable(expectedFile);
}

#ifdef FUZZ_DIRECTORY
/// Holds every file of the corpus NAME against the file expected/NAME/FILE.expected: `outcomeOf` tells in lines of text
/// what the file of that path comes to.
inline void expectCorpus(const QString &name, const std::function<QString(const QString &path)> &outcomeOf)
{
    const QString corpus = FUZZ_DIRECTORY "/corpus/" + name, expected = FUZZ_DIRECTORY "/expected/" + name;
    for (const QString &file : filesIn(corpus))
        expectText(outcomeOf(corpus + '/' + file).toUtf8(), expected + '/' + file + ".expected");
    EXPECT_EQ(filesIn(expected).size(), filesIn(corpus).size()) << "something is expected of a file that isn't there";
}
#endif
