#include "gui/common/complainttext.h"

#include "util/textescape.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QVector>

namespace {

const char *const patterns[] = {
    // an export's setup and targets
    QT_TRANSLATE_NOOP("Complaint", "%1 more invalid custom limits."),
    QT_TRANSLATE_NOOP("Complaint", "'%1' must be %2, but was %3"),
    QT_TRANSLATE_NOOP("Complaint", "A field was left out: a table has no more than %1 columns."),
    QT_TRANSLATE_NOOP("Complaint", "Failed to create directory '%1'"),
    QT_TRANSLATE_NOOP("Complaint", "Invalid concentration type '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid custom fraction scale '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid custom limit '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid decade fraction scale '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid distribution '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid field separator '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid mass unit '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid material density %1."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid number of fractions per decade: %1."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid range of decade fractions: %1 to %2."),
    QT_TRANSLATE_NOOP("Complaint", "Invalid scale '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "It has no list \"fields\""),
    QT_TRANSLATE_NOOP("Complaint", "It has no map \"general\""),
    QT_TRANSLATE_NOOP("Complaint", "It is of version %1, which is too new"),
    QT_TRANSLATE_NOOP("Complaint", "It isn't a map"),
    QT_TRANSLATE_NOOP("Complaint", "No output file is named."),
    QT_TRANSLATE_NOOP("Complaint", "The fraction of plot %1 isn't bounded by two limits above 0: no field was added."),
    QT_TRANSLATE_NOOP("Complaint", "The grid of \"%1\" has no decades."),
    QT_TRANSLATE_NOOP("Complaint", "The output file's name can't be one."),
    QT_TRANSLATE_NOOP("Complaint", "The time format is too long."),
    QT_TRANSLATE_NOOP("Complaint", "Unable to open file '%1'"),
    QT_TRANSLATE_NOOP("Complaint", "Unable to write file '%1': %2"),
    QT_TRANSLATE_NOOP("Complaint", "Unknown electrometer '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Unknown field type '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Unknown spectrum '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "Unknown variable '%1'."),
    QT_TRANSLATE_NOOP("Complaint", "\"%1\" has no points in %2."),
    QT_TRANSLATE_NOOP("Complaint", "\"%1\" is named as a file of data or settings."),
    QT_TRANSLATE_NOOP("Complaint", "\"%1\" is one of the files to read."),
    // files
    QT_TRANSLATE_NOOP("Complaint", "It is a device"),
    QT_TRANSLATE_NOOP("Complaint", "It is a folder"),
    QT_TRANSLATE_NOOP("Complaint", "It is a pipe"),
    QT_TRANSLATE_NOOP("Complaint", "It is a socket"),
    QT_TRANSLATE_NOOP("Complaint", "Not a regular file"),
    QT_TRANSLATE_NOOP("Complaint", "it stands, but might be lost in a power failure: %1"),
};
/// The system's, for the commoner faults.
const char *const systemWords[] = {
    QT_TRANSLATE_NOOP("Complaint", "File name too long"),
    QT_TRANSLATE_NOOP("Complaint", "File too large"),
    QT_TRANSLATE_NOOP("Complaint", "Input/output error"),
    QT_TRANSLATE_NOOP("Complaint", "Is a directory"),
    QT_TRANSLATE_NOOP("Complaint", "No space left on device"),
    QT_TRANSLATE_NOOP("Complaint", "No such file or directory"),
    QT_TRANSLATE_NOOP("Complaint", "Not a directory"),
    QT_TRANSLATE_NOOP("Complaint", "Permission denied"),
    QT_TRANSLATE_NOOP("Complaint", "Read-only file system"),
};

struct Complaint {
    const char *pattern;
    QRegularExpression expression;
};

Complaint complaintOf(const char *pattern)
{
    static const QRegularExpression marker(QStringLiteral("\\\\%[1-9]"));
    const QString escaped = QRegularExpression::escape(QString::fromUtf8(pattern));
    return {pattern, QRegularExpression(
                         QRegularExpression::anchoredPattern(QString(escaped).replace(marker, QStringLiteral("(.*)"))),
                         QRegularExpression::DotMatchesEverythingOption)};
}

const QVector<Complaint> &complaints()
{
    static const QVector<Complaint> all = [] {
        QVector<Complaint> made;
        for (const char *pattern : patterns)
            made << complaintOf(pattern);
        for (const char *words : systemWords)
            made << complaintOf(words);
        return made;
    }();
    return all;
}

} // namespace

QString complaintText(const QString &english)
{
    for (const Complaint &one : complaints()) {
        const QRegularExpressionMatch match = one.expression.match(english);
        if (!match.hasMatch())
            continue;
        QStringList values = match.capturedTexts().mid(1);
        if (!values.isEmpty())
            values.last() = complaintText(values.last()); // often the reason
        return fillMarkers(QCoreApplication::translate("Complaint", one.pattern), values);
    }
    return english;
}
