#include "gui/common/dataexport/spectrumfieldform.h"

#include "gui/common/dataexport/datacombobox.h"
#include "gui/common/dataexport/quantityrows.h"
#include "gui/common/dataexport/setupmap.h"
#include "gui/common/dataexport/spectrachoice.h"

#include <QCheckBox>
#include <QFormLayout>

SpectrumFieldForm::SpectrumFieldForm(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent)
    : ExportFieldPage(parent), m_spectra(new SpectraChoice(uiInfo, this)), m_distribution(new DataComboBox(this)),
      m_scale(new DataComboBox(this))
{
    m_distribution->setObjectName(QStringLiteral("distribution"));
    m_distribution->addItem(tr("Density at each point"), QStringLiteral("density"));
    m_distribution->addItem(tr("Fractions between points"), QStringLiteral("fraction"));
    m_scale->setObjectName(QStringLiteral("scale"));
    m_scale->addItem(tr("Diameter (nm)"), QStringLiteral("diameter"));
    m_scale->addItem(tr("Mobility (cm²/V/s)"), QStringLiteral("mobility"));
    auto *const rows = new QFormLayout(this);
    rows->addRow(tr("Spectra:"), m_spectra);
    m_quantity = new QuantityRows(rows, this);
    rows->addRow(tr("Values:"), m_distribution);
    rows->addRow(tr("Scale:"), m_scale);
    m_uncertainties = new QCheckBox(tr("Uncertainty behind each value"), this);
    m_uncertainties->setObjectName(QStringLiteral("uncertainties"));
    rows->addRow(m_uncertainties);

    connect(m_spectra, &SpectraChoice::chosenChanged, this, &SpectrumFieldForm::treeItemTextChanged);
    connect(m_spectra, &SpectraChoice::chosenChanged, this, &SpectrumFieldForm::changed);
    connect(m_quantity, &QuantityRows::changed, this, &SpectrumFieldForm::changed);
    for (const DataComboBox *box : {m_distribution, m_scale})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &SpectrumFieldForm::changed);
    connect(m_uncertainties, &QCheckBox::toggled, this, &SpectrumFieldForm::changed);
    setSettings({});
}

QString SpectrumFieldForm::treeItemText() const
{
    const QString names = m_spectra->chosenNames().join(QStringLiteral(", "));
    return names.isEmpty() ? tr("Spectra") : tr("Spectra: %1").arg(names);
}

QVariantMap SpectrumFieldForm::settings() const
{
    QVariantMap map{{QStringLiteral("type"), QStringLiteral("spectrum")},
                    {QStringLiteral("spectra"), listOf(m_spectra->chosen())},
                    {QStringLiteral("distribution"), m_distribution->chosen()},
                    {QStringLiteral("scale"), m_scale->chosen()},
                    {QStringLiteral("uncertainties"), m_uncertainties->isChecked()}};
    m_quantity->write(map);
    return map;
}

void SpectrumFieldForm::setSettings(const QVariantMap &settings)
{
    m_spectra->setChosen(valueOr(settings, "spectra", QStringList()));
    m_distribution->choose(textOr(settings, "distribution", "density"));
    m_scale->choose(textOr(settings, "scale", "diameter"));
    m_uncertainties->setChecked(valueOr(settings, "uncertainties", false));
    m_quantity->read(settings);
}
