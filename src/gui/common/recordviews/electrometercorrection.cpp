#include "gui/common/recordviews/electrometercorrection.h"

#include <QRegExp>

namespace RecordViews {

bool correctElectrometers(ElectrometerValues &values, const std::vector<double> &coefficients)
{
    RealVector *const vectors[] = {&values.currents, &values.rawCurrents, &values.variances};
    for (const RealVector *vector : vectors) {
        if (vector->size() != coefficients.size())
            return false;
    }
    for (RealVector *vector : vectors) {
        for (std::size_t i = 0; i < coefficients.size(); ++i)
            (*vector)[i] *= coefficients[i];
    }
    return true;
}

Coefficients parseCoefficients(const QString &text)
{
    Coefficients coefficients;
    const QStringList parts = text.split(QRegExp(QStringLiteral("[\\s,]+")), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        bool isNumber = false;
        coefficients.values.push_back(part.toDouble(&isNumber));
        if (!isNumber)
            return {{}, part};
    }
    return coefficients;
}

QStringList coefficientTexts(const std::vector<double> &coefficients)
{
    QStringList texts;
    for (const double coefficient : coefficients)
        texts << QString::number(coefficient, 'g', 6);
    return texts;
}

} // namespace RecordViews
