#pragma once

#include "spectra/inverter.h"

#include <QString>

/// A small inverter file's text: a square instrument of n currents and classes, coupled to their neighbours. What
/// stands in `extra` is put at the end of the map.
inline QByteArray inverterText(int n = 4, const QByteArray &name = "ions pos", const QByteArray &extra = QByteArray())
{
    QByteArray rows, points;
    for (int i = 0; i < n; ++i) {
        QByteArray row;
        for (int j = 0; j < n; ++j)
            row += (j ? ", " : "") + QByteArray(i == j ? "10" : std::abs(i - j) == 1 ? "2" : "0");
        rows += "  - [" + row + "]\n";
        points += (i ? ", " : "") + QByteArray::number(1 << i);
    }
    return "format: 1\nposttransform:\ninstrument_matrix:\n  rows: " + QByteArray::number(n) +
           "\n  cols: " + QByteArray::number(n) + "\n  mult: 10\n  data:\n" + rows.replace("  - ", "    - ") +
           "name: " + name + "\nyunit: 1/cm^3\nxpoints:\n  type: radius\n  unit: nm\n  points: [" + points + "]\n" +
           extra;
}
