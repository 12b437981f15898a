#include "house/sourcetext.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

QStringList filesBelow(const QString &folder, const QStringList &wildcards)
{
    const QDir root(QStringLiteral(SOURCE_FOLDER));
    QStringList files;
    QDirIterator it(root.filePath(folder), wildcards, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << root.relativeFilePath(it.next());
    files.sort();
    return files;
}

QString textOf(const QString &relativePath)
{
    QFile file(QDir(QStringLiteral(SOURCE_FOLDER)).filePath(relativePath));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList includesOf(const QString &text)
{
    static const QRegularExpression include("^\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"]",
                                            QRegularExpression::MultilineOption);
    QStringList includes;
    for (auto it = include.globalMatch(text); it.hasNext();)
        includes << it.next().captured(1);
    return includes;
}

QString withoutCommentsAndTexts(const QString &text)
{
    static const QRegularExpression token(
        QStringLiteral("R\"(\\w*)\\(.*?\\)\\1\"|//[^\\n]*|/\\*.*?\\*/|"
                       "\"(?:\\\\.|[^\"\\\\\\n])*\"|(?<![0-9a-fA-F])'(?:\\\\.|[^'\\\\\\n])+'"),
        QRegularExpression::DotMatchesEverythingOption);
    QString result = text;
    for (auto it = token.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        for (int i = match.capturedStart(); i < match.capturedEnd(); ++i) {
            if (result[i] != '\n')
                result[i] = ' ';
        }
    }
    return result;
}

QList<int> chainedArgLines(const QString &text)
{
    static const QRegularExpression call("\\.arg\\s*\\(");
    static const QRegularExpression next("\\G\\s*\\.arg\\s*\\(");
    const QString code = withoutCommentsAndTexts(text);
    QList<int> lines;
    for (auto it = call.globalMatch(code); it.hasNext();) {
        int at = it.next().capturedEnd();
        for (int depth = 1; at < code.size() && depth > 0; ++at) {
            if (code[at] == '(')
                ++depth;
            else if (code[at] == ')')
                --depth;
        }
        if (next.match(code, at).hasMatch())
            lines << 1 + code.left(at).count('\n');
    }
    return lines;
}
