#include "gui/common/recordviews/electrometertext.h"

#include "util/timeformat.h"

#include <QTextStream>

#include <cmath>

namespace RecordViews {

namespace {

void writeTime(QTextStream &out, const char *key, RecordTime time, std::int64_t utcOffset)
{
    const RecordTime local = localTime(time, utcOffset);
    out << key << ',' << timeToString(local) << utcOffsetToString(utcOffset) << ','
        << timeToString(local, QStringLiteral("%d. %B %Y %H:%M:%S")) << '\n';
}

template<typename ValueOf>
void writeValues(QTextStream &out, const char *key, int count, const ValueOf &valueOf)
{
    out << key;
    for (int i = 0; i < count; ++i) {
        out << ',';
        if (const double value = valueOf(i); !std::isnan(value))
            out << value;
    }
    out << '\n';
}

} // namespace

double deviationOf(double variance)
{
    return variance >= 0 ? std::sqrt(variance) : noValue;
}

double valueAt(const RealVector &values, int index)
{
    return index >= 0 && std::size_t(index) < values.size() ? values[std::size_t(index)] : noValue;
}

QString electrometersText(const Spectrometer::FullRecord &record, const Spectrometer::RecordMetadata &metadata)
{
    QString text;
    QTextStream out(&text);
    out << "opmode," << metadata.opmodeName(record.opmode) << '\n';
    writeTime(out, "begin_time", record.beginTime, record.beginUtcOffset);
    if (!isMissing(record.endTime))
        writeTime(out, "end_time", record.endTime, record.endUtcOffset);
    const int count = metadata.totalElectrometers;
    out << "electrometer";
    for (int i = 0; i < count; ++i)
        out << ',' << metadata.electrometerNames.value(i);
    out << '\n';
    writeValues(out, "current", count, [&](int i) { return valueAt(record.currents, i); });
    writeValues(out, "error", count, [&](int i) { return deviationOf(valueAt(record.currentVariances, i)); });
    writeValues(out, "voltage", count, [&](int i) { return valueAt(record.voltages, i); });
    writeValues(out, "raw_current", count, [&](int i) { return valueAt(record.rawCurrents, i); });
    out.flush();
    return text;
}

} // namespace RecordViews
