#pragma once

#include "axis/measuringcursors.h"
#include "columns/measurement.h"

#include <QAbstractTableModel>
#include <QVector>

/// The table of measuring: a row for the times of both cursors, and one for each curve. Numbers are written in the C
/// locale, times at the data's offset from UTC.
class MeasuringModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Curve, Unit, AtFirst, AtSecond, Difference, Least, Greatest, Mean, Count, ColumnCount };

    explicit MeasuringModel(QObject *parent = nullptr);

    /// Without a cursor the table is empty.
    void setFigures(const Tsb::MeasuringCursors::Times &cursors, const QVector<Tsb::CurveFigures> &curves,
                    std::int64_t utcOffset);
    /// These rows below the titles, with tabs between the columns; numbers have more digits than on the screen.
    QString textOf(const QList<int> &rows) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString cellText(int row, int column, int digits) const;
    QString timeCell(int column) const;
    QString curveCell(const Tsb::CurveFigures &curve, int column, int digits) const;
    QString timeText(RecordTime time) const;

    Tsb::MeasuringCursors::Times m_cursors;
    QVector<Tsb::CurveFigures> m_curves;
    std::int64_t m_utcOffset = 0;
};

/// "1:02:03", with days and a fraction of a second where there are any.
QString durationText(std::int64_t ticks);
