#include "gui/common/inversionstatistics.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace InversionStatistics {
namespace {

constexpr std::size_t fewestValues = 11;

std::vector<double> errorsOf(const Datastore::Series &series)
{
    std::vector<double> errors;
    for (const SpectrumRecord &entry : series)
        if (!std::isnan(entry.spectrum->currentRmsError))
            errors.push_back(entry.spectrum->currentRmsError);
    return errors;
}

QStringList row(const SpectMath::SpectrumInfo &info, std::vector<double> &&errors)
{
    const auto count = errors.size();
    const Quantiles found = quantiles(std::move(errors));
    QStringList cells{info.name, info.inverterName.isEmpty() ? info.comment : info.inverterName};
    for (double value : {found.q10, found.q50, found.q90})
        cells.append(QString::number(value, 'g', 6));
    cells.append(QString::number(count));
    return cells;
}

/// Each row begins a new line.
QString table(const QList<QStringList> &rows)
{
    std::vector<int> widths(std::size_t(rows.first().size()), 0);
    for (const QStringList &cells : rows)
        for (int i = 0; i < cells.size(); ++i)
            widths[std::size_t(i)] = std::max(widths[std::size_t(i)], cells[i].size());
    QString text;
    text.reserve(8000);
    for (QStringList cells : rows) {
        for (int i = 0; i < cells.size(); ++i)
            cells[i] = cells[i].leftJustified(widths[std::size_t(i)]);
        text += QLatin1Char('\n') + cells.join(QStringLiteral(" | "));
    }
    return text;
}

} // namespace

Quantiles quantiles(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const auto at = [&values](double part) { return values[std::size_t(double(values.size()) * part)]; };
    return {at(0.1), at(0.5), at(0.9)};
}

QString report(const Datastore &store)
{
    QList<Datastore::SeriesKey> keys = store.spectrumSeries().keys();
    std::sort(keys.begin(), keys.end(), [](Datastore::SeriesKey a, Datastore::SeriesKey b) { return *a < *b; });
    QList<QStringList> rows;
    rows.append({QStringLiteral("dist_name"), QStringLiteral("file_name"), QStringLiteral("rms_q10"),
                 QStringLiteral("rms_q50"), QStringLiteral("rms_q90"), QStringLiteral("count")});
    for (Datastore::SeriesKey key : qAsConst(keys)) {
        std::vector<double> errors = errorsOf(*store.series(key));
        if (errors.size() >= fewestValues)
            rows.append(row(*key, std::move(errors)));
    }
    return QStringLiteral("Inversion statistics report:") + table(rows);
}

} // namespace InversionStatistics
