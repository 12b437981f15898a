#include "fuzz.h"

#include "util/timeformat.h"
#include "util/timeparse.h"

#include <QHash>

/// The bytes are a time; what follows a first line feed is a format.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    const int end = bytes.indexOf('\n');
    const QByteArray text = end < 0 ? bytes : bytes.left(end);
    RecordTime time, sameTime;
    std::int64_t offset = -1, sameOffset = -1;
    parseTime(text.constData(), text.size(), &time, &offset);
    parseTime(QString::fromUtf8(text.constData(), text.size()), &sameTime, &sameOffset);
    require(time == sameTime && offset == sameOffset, "bytes and characters read alike");
    if (offset == -1)
        require(isMissing(time), "a failure is the time 0");

    QByteArray row;
    appendTimeText(row, time);
    require(QString::fromLatin1(row) == timeToString(time, "%Y-%m-%d %H:%M:%s"), "rows are written as the format says");
    if (ticksOf(time) > 0 && row.size() == 26) {
        RecordTime again;
        std::int64_t none = 0;
        parseTime(row.constData(), row.size(), &again, &none);
        require(ticksOf(again) == ticksOf(time) / 10 * 10 && none == 0, "a written time is read back to its digits");
    }
    if (end >= 0) {
        const QString format = QString::fromUtf8(bytes.mid(end + 1));
        const QString out = timeToString(time, offset, format);
        require(out.size() <= 20 * format.size() + 20, "a format doesn't swell");
        timeToString(recordTimeFromTicks(std::int64_t(qHash(bytes)) << 31), offset, format);
    }
    return 0;
}
