#include "spectra/inversionreport.h"

#include <QTextStream>

#include <algorithm>
#include <numeric>

namespace SpectMath {

namespace {

double total(const std::vector<double> &weights, const std::vector<double> &classes)
{
    const auto common = std::ptrdiff_t(std::min(weights.size(), classes.size()));
    return std::inner_product(weights.begin(), weights.begin() + common, classes.begin(), 0.0);
}

void writeCells(QTextStream &out, const std::vector<double> &values)
{
    for (const double value : values)
        out << "<td>" << value << "</td>";
}

void writeStart(QTextStream &out, const InversionSteps &steps, const std::vector<double> &totals)
{
    out << "<h4>Negative concentration removal</h4><table cellpadding='1'>"
        << "<tr><th>vpar</th>"
        << "<td></td>";
    writeCells(out, steps.regularisation);
    out << "</tr><tr><th>i</th>"
        << "<td><b>" << total(totals, steps.firstClasses) << "</b></td>";
    writeCells(out, steps.firstClasses);
    out << "</tr>";
}

void writeRemoval(QTextStream &out, std::size_t iteration, const InversionSteps::Removal &removal,
                  const std::vector<double> &totals)
{
    out << "<tr><th>" << iteration << "</th>"
        << "<td><b>" << total(totals, removal.classes) << "</b></td>";
    for (std::size_t j = 0; j < removal.classes.size(); ++j) {
        if (j == removal.column)
            out << "<td><font color='red'>" << removal.classes[j] << "</font></td>";
        else
            out << "<td>" << removal.classes[j] << "</td>";
    }
    out << "</tr>";
}

void writeEnd(QTextStream &out, const std::vector<double> &signal, const std::vector<double> &calculated)
{
    out << "</table>"
        << "<br><h4>Reverse calculation</h4><table cellpadding='1'>"
        << "<tr><th>elm.</th><th>measured</th><th>calculated</th></tr>";
    for (std::size_t i = 0; i < signal.size(); ++i)
        out << "<tr><td>" << i << "</td><td>" << signal[i] << "</td><td>" << calculated[i] << "</td></tr>";
    out << "<tr><th>sum</th><td>" << std::accumulate(signal.begin(), signal.end(), 0.0) << "</td><td>"
        << std::accumulate(calculated.begin(), calculated.end(), 0.0) << "</td></tr>"
        << "</table>";
}

} // namespace

QString inversionReport(const InversionSteps &steps, const std::vector<double> &totals,
                        const std::vector<double> &signal, const std::vector<double> &calculated)
{
    QString text;
    if (!steps.solved)
        return text;
    QTextStream out(&text);
    writeStart(out, steps, totals);
    for (std::size_t i = 0; i < steps.removals.size(); ++i)
        writeRemoval(out, i + 1, steps.removals[i], totals);
    if (steps.status == 0)
        writeEnd(out, signal, calculated);
    out.flush();
    return text;
}

} // namespace SpectMath
