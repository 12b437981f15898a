#include "gui/common/dataexport/quantityrows.h"

#include "gui/browser/controls/expspinbox.h"
#include "gui/common/dataexport/datacombobox.h"
#include "gui/common/dataexport/setupmap.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>

#include <limits>

namespace {

constexpr double firstDensity = 1.0;
constexpr int densityDigits = 6;
const QString massType = QStringLiteral("mass");
const QString firstMassUnit = QStringLiteral("mg/cm^3");

} // namespace

QuantityRows::QuantityRows(QFormLayout *layout, QWidget *parent)
    : QObject(parent), m_type(new DataComboBox(parent)), m_density(new ExpSpinBox(parent)),
      m_massUnit(new DataComboBox(parent))
{
    m_type->setObjectName(QStringLiteral("concentrationType"));
    m_type->addItem(tr("Number concentration"), QStringLiteral("number"));
    m_type->addItem(tr("Diameter concentration"), QStringLiteral("diameter"));
    m_type->addItem(tr("Surface concentration"), QStringLiteral("surface"));
    m_type->addItem(tr("Volume concentration"), QStringLiteral("volume"));
    m_type->addItem(tr("Mass concentration"), massType);
    layout->addRow(tr("Concentration type:"), m_type);

    m_density->setObjectName(QStringLiteral("materialDensity"));
    m_density->setRange(0, std::numeric_limits<double>::max());
    m_density->setDecimals(densityDigits);
    m_massUnit->setObjectName(QStringLiteral("massUnit"));
    m_massUnit->setAccessibleName(tr("Unit of mass concentrations"));
    m_massUnit->addItem(tr("result in mg/cm³"), firstMassUnit);
    m_massUnit->addItem(tr("result in µg/m³"), QStringLiteral(u"\u00b5g/m^3"));
    auto *const row = new QHBoxLayout;
    row->addWidget(m_density);
    row->addWidget(new QLabel(tr("g/cm³"), parent));
    row->addWidget(m_massUnit);
    row->addStretch();
    auto *const label = new QLabel(tr("Material density:"), parent);
    label->setBuddy(m_density);
    layout->addRow(label, row);

    connect(m_type, qOverload<int>(&QComboBox::currentIndexChanged), this, &QuantityRows::enableMass);
    connect(m_type, qOverload<int>(&QComboBox::currentIndexChanged), this, &QuantityRows::changed);
    connect(m_density, &ExpSpinBox::valueChanged, this, &QuantityRows::changed);
    connect(m_massUnit, qOverload<int>(&QComboBox::currentIndexChanged), this, &QuantityRows::changed);
    enableMass();
}

void QuantityRows::enableMass()
{
    m_density->setEnabled(m_type->chosen() == massType);
    m_massUnit->setEnabled(m_density->isEnabled());
}

void QuantityRows::write(QVariantMap &settings) const
{
    settings[QStringLiteral("concentration_type")] = m_type->chosen();
    settings[QStringLiteral("material_density")] = m_density->value();
    if (m_massUnit->chosen() != firstMassUnit)
        settings[QStringLiteral("mass_unit")] = m_massUnit->chosen();
}

void QuantityRows::read(const QVariantMap &settings)
{
    m_type->choose(textOr(settings, "concentration_type", "number"));
    m_density->setValue(valueOr(settings, "material_density", firstDensity));
    m_massUnit->choose(valueOr(settings, "mass_unit", firstMassUnit));
}
