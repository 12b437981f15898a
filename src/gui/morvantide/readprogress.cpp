#include "gui/morvantide/readprogress.h"

#include <algorithm>

QString progressText(const ReadProgress &progress)
{
    if (progress.message.isEmpty())
        return {};
    const int file = std::min(progress.filesDone + 1, progress.fileCount);
    const QString text = QStringLiteral("%1 (%2 of %3)")
                             .arg(progress.message, QString::number(file), QString::number(progress.fileCount));
    if (progress.bytesTotal <= 0)
        return text;
    const double part = double(progress.bytesDone) / double(progress.bytesTotal);
    return QStringLiteral("%1, %2 %").arg(text, QString::number(int(100 * std::clamp(part, 0.0, 1.0))));
}
