#pragma once

#include <QColor>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// One cell: a text, or a format of the values of variables.
struct VarGridCell {
    QString text;
    QStringList variables; ///< names; empty for a plain text
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    int fontWeight = -1; ///< of QFont; -1 for the font's own
    QColor color;        ///< invalid for the palette's
};

struct VarGridColumn {
    QString id;
    QString title;
    QString widthString; ///< a sample text whose width the column has
    int width = 0;       ///< pixels; 0 for none
};

/// A table of cells that shows the variables of a record.
struct VarGridLayout {
    /// By the id of the column.
    using Row = std::shared_ptr<const QMap<QString, VarGridCell>>;

    QString name;
    std::vector<Row> rows;
    std::vector<VarGridColumn> columns;
    bool firstColumnIsHeader = false;

    /// Null where the row has no cell in that column.
    const VarGridCell *cell(std::size_t row, std::size_t column) const
    {
        const auto found = rows[row]->constFind(columns[column].id);
        return found == rows[row]->constEnd() ? nullptr : &*found;
    }
};
