#include "gui/common/dataexport/concentrationfieldform.h"

#include "gui/common/dataexport/customfractionsbox.h"
#include "gui/common/dataexport/decadefractionsbox.h"
#include "gui/common/dataexport/quantityrows.h"
#include "gui/common/dataexport/setupmap.h"
#include "gui/common/dataexport/spectrachoice.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QVBoxLayout>

ConcentrationFieldForm::ConcentrationFieldForm(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent)
    : ExportFieldPage(parent), m_spectra(new SpectraChoice(uiInfo, this))
{
    auto *const layout = new QVBoxLayout(this);
    auto *const rows = new QFormLayout;
    rows->addRow(tr("Spectra:"), m_spectra);
    m_quantity = new QuantityRows(rows, this);
    m_total = new QCheckBox(tr("Total concentration"), this);
    m_total->setObjectName(QStringLiteral("totalConcentration"));
    rows->addRow(m_total);
    layout->addLayout(rows);
    m_decades = new DecadeFractionsBox(this);
    m_custom = new CustomFractionsBox(this);
    auto *const fractions = new QHBoxLayout;
    fractions->addWidget(m_decades, 0, Qt::AlignTop);
    fractions->addWidget(m_custom, 1, Qt::AlignTop);
    layout->addLayout(fractions, 1);

    connect(m_spectra, &SpectraChoice::chosenChanged, this, &ConcentrationFieldForm::treeItemTextChanged);
    connect(m_spectra, &SpectraChoice::chosenChanged, this, &ConcentrationFieldForm::changed);
    connect(m_quantity, &QuantityRows::changed, this, &ConcentrationFieldForm::changed);
    connect(m_total, &QCheckBox::toggled, this, &ConcentrationFieldForm::changed);
    connect(m_decades, &DecadeFractionsBox::changed, this, &ConcentrationFieldForm::changed);
    connect(m_custom, &CustomFractionsBox::changed, this, &ConcentrationFieldForm::changed);
    setSettings({});
}

QString ConcentrationFieldForm::treeItemText() const
{
    const QString names = m_spectra->chosenNames().join(QStringLiteral(", "));
    return names.isEmpty() ? tr("Concentrations") : tr("Concentrations: %1").arg(names);
}

QVariantMap ConcentrationFieldForm::settings() const
{
    QVariantMap map{{QStringLiteral("type"), QStringLiteral("concentration")},
                    {QStringLiteral("spectra"), listOf(m_spectra->chosen())},
                    {QStringLiteral("total_concentration_enabled"), m_total->isChecked()}};
    m_quantity->write(map);
    m_decades->write(map);
    m_custom->write(map);
    return map;
}

void ConcentrationFieldForm::setSettings(const QVariantMap &settings)
{
    m_spectra->setChosen(valueOr(settings, "spectra", QStringList()));
    m_total->setChecked(valueOr(settings, "total_concentration_enabled", true));
    m_quantity->read(settings);
    m_decades->read(settings);
    m_custom->read(settings);
}
