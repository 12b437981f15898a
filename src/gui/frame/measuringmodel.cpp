#include "gui/frame/measuringmodel.h"

#include "util/timeformat.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int shownDigits = 6, copiedDigits = 10;

QString numberText(double value, int digits)
{
    return std::isnan(value) ? QString() : QString::number(value, 'g', digits);
}

bool haveSameNames(const QVector<Tsb::CurveFigures> &a, const QVector<Tsb::CurveFigures> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto &one, const auto &other) {
        return one.name == other.name && one.unit == other.unit;
    });
}

} // namespace

QString durationText(std::int64_t ticks)
{
    const QString sign = ticks < 0 ? QStringLiteral("-") : QString();
    const std::uint64_t length = ticks < 0 ? 0 - std::uint64_t(ticks) : std::uint64_t(ticks);
    const std::uint64_t seconds = length / ticksPerSecond, fraction = length % ticksPerSecond;
    const auto padded = [](std::uint64_t number, int width) {
        return QString::number(number).rightJustified(width, QLatin1Char('0'));
    };
    QString text = QString::number(seconds / 3600 % 24) + QLatin1Char(':') + padded(seconds / 60 % 60, 2) +
                   QLatin1Char(':') + padded(seconds % 60, 2);
    if (fraction != 0)
        text += QLatin1Char('.') + padded(fraction / ticksPerMillisecond, 3);
    if (seconds >= 86400)
        text = MeasuringModel::tr("%1 d %2").arg(QString::number(seconds / 86400), text);
    return sign + text;
}

MeasuringModel::MeasuringModel(QObject *parent) : QAbstractTableModel(parent) {}

void MeasuringModel::setFigures(const Tsb::MeasuringCursors::Times &cursors, const QVector<Tsb::CurveFigures> &curves,
                                std::int64_t utcOffset)
{
    const bool hasSameRows =
        (cursors[0] || cursors[1]) == (m_cursors[0] || m_cursors[1]) && haveSameNames(curves, m_curves);
    if (!hasSameRows)
        beginResetModel();
    m_cursors = cursors;
    m_curves = curves;
    m_utcOffset = utcOffset;
    if (!hasSameRows)
        endResetModel();
    else if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

int MeasuringModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !(m_cursors[0] || m_cursors[1]) ? 0 : 1 + m_curves.size();
}

int MeasuringModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

// ---- texts

QVariant MeasuringModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (Column(section)) {
    case Curve:
        return tr("Curve");
    case Unit:
        return tr("Unit");
    case AtFirst:
    case AtSecond:
        return tr("Cursor %1").arg(section - AtFirst + 1);
    case Difference:
        return tr("Difference");
    case Least:
        return tr("Least");
    case Greatest:
        return tr("Greatest");
    case Mean:
        return tr("Mean");
    case Count:
        return tr("Count");
    case ColumnCount:
        break;
    }
    return {};
}

QVariant MeasuringModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DisplayRole)
        return cellText(index.row(), index.column(), shownDigits);
    if (role == Qt::TextAlignmentRole)
        return int((index.column() < AtFirst ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    const int which = index.column() - AtFirst;
    if (role == Qt::ToolTipRole && index.row() > 0 && (which == 0 || which == 1)) {
        const Tsb::ValueAt &at = m_curves[index.row() - 1].at[std::size_t(which)];
        return std::isnan(at.value) ? QString() : tr("The value of the record around %1").arg(timeText(at.middle));
    }
    return {};
}

QString MeasuringModel::timeText(RecordTime time) const
{
    return timeToString(localTime(time, m_utcOffset), QStringLiteral("%Y-%m-%d %H:%M:%S"));
}

QString MeasuringModel::cellText(int row, int column, int digits) const
{
    return row == 0 ? timeCell(column) : curveCell(m_curves[row - 1], column, digits);
}

QString MeasuringModel::timeCell(int column) const
{
    switch (Column(column)) {
    case Curve:
        return tr("Time");
    case Unit:
        return QStringLiteral("UTC") + utcOffsetToString(m_utcOffset);
    case AtFirst:
    case AtSecond: {
        const std::optional<RecordTime> &time = m_cursors[std::size_t(column - AtFirst)];
        return time ? timeText(*time) : QString();
    }
    case Difference:
        return m_cursors[0] && m_cursors[1]
                   ? durationText(saturatedSubtract(ticksOf(*m_cursors[1]), ticksOf(*m_cursors[0])))
                   : QString();
    default:
        return {};
    }
}

QString MeasuringModel::curveCell(const Tsb::CurveFigures &curve, int column, int digits) const
{
    switch (Column(column)) {
    case Curve:
        return curve.name;
    case Unit:
        return curve.unit;
    case AtFirst:
    case AtSecond:
        return numberText(curve.at[std::size_t(column - AtFirst)].value, digits);
    case Difference:
        return numberText(curve.at[1].value - curve.at[0].value, digits);
    case Least:
        return numberText(curve.between.least, digits);
    case Greatest:
        return numberText(curve.between.greatest, digits);
    case Mean:
        return numberText(curve.between.mean, digits);
    case Count:
        return m_cursors[0] && m_cursors[1] ? QString::number(curve.between.count) : QString();
    case ColumnCount:
        break;
    }
    return {};
}

QString MeasuringModel::textOf(const QList<int> &rows) const
{
    const auto lineOf = [](auto cell) {
        QStringList cells;
        for (int column = 0; column < ColumnCount; ++column)
            cells << QString(cell(column)).simplified(); // a name may hold a tab
        return cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    };
    QString text = lineOf([this](int column) { return headerData(column, Qt::Horizontal).toString(); });
    for (const int row : rows)
        text += lineOf([&](int column) { return cellText(row, column, copiedDigits); });
    return text;
}
