#include "gui/morvantide/readprogress.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(ReadProgress)
};

/// The reader's words go into the log, too, and are English.
QString shown(const QString &message)
{
    const QLatin1String reading("Reading ");
    return message.startsWith(reading) ? Words::tr("Reading %1").arg(message.mid(reading.size())) : message;
}

} // namespace

QString progressText(const ReadProgress &progress)
{
    if (progress.message.isEmpty())
        return {};
    const int file = std::min(progress.filesDone + 1, progress.fileCount);
    const QString text = Words::tr("%1 (%2 of %3)")
                             .arg(shown(progress.message), QString::number(file), QString::number(progress.fileCount));
    if (progress.bytesTotal <= 0)
        return text;
    const double part = double(progress.bytesDone) / double(progress.bytesTotal);
    return QStringLiteral("%1, %2 %").arg(text, QString::number(int(100 * std::clamp(part, 0.0, 1.0))));
}
