#include "gui/common/dataexport/electrometerfieldform.h"

#include "gui/common/dataexport/choicebutton.h"
#include "gui/common/dataexport/setupmap.h"

#include <QCheckBox>
#include <QFormLayout>

ElectrometerFieldForm::ElectrometerFieldForm(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent)
    : ExportFieldPage(parent), m_uiInfo(std::move(uiInfo)),
      m_electrometers(new ChoiceButton(tr("All electrometers"), tr("no electrometers"), this))
{
    auto *const rows = new QFormLayout(this);
    m_electrometers->setObjectName(QStringLiteral("electrometerChoice"));
    rows->addRow(tr("Electrometers:"), m_electrometers);
    m_values = {{"currents", true, new QCheckBox(tr("Currents"), this)},
                {"deviations", false, new QCheckBox(tr("Standard deviations of currents"), this)},
                {"raw_currents", false, new QCheckBox(tr("Raw currents"), this)},
                {"voltages", false, new QCheckBox(tr("Voltages"), this)}};
    for (const Value &value : m_values) {
        value.box->setObjectName(QLatin1String(value.key));
        rows->addRow(value.box);
        connect(value.box, &QCheckBox::toggled, this, &ElectrometerFieldForm::changed);
    }
    connect(m_electrometers, &ChoiceButton::chosenChanged, this, &ElectrometerFieldForm::changed);
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &ElectrometerFieldForm::listElectrometers);
    listElectrometers();
    setSettings({});
}

void ElectrometerFieldForm::listElectrometers()
{
    std::vector<ChoiceButton::Entry> entries;
    if (const auto metadata = m_uiInfo->metadata())
        for (const QString &name : metadata->electrometerNames)
            entries.push_back({name, name, name});
    m_electrometers->setEntries(entries);
}

QString ElectrometerFieldForm::treeItemText() const
{
    return tr("Electrometers");
}

QVariantMap ElectrometerFieldForm::settings() const
{
    QVariantMap map{{QStringLiteral("type"), QStringLiteral("electrometer")},
                    {QStringLiteral("electrometers"), listOf(m_electrometers->chosen())}};
    for (const Value &value : m_values)
        map[QLatin1String(value.key)] = value.box->isChecked();
    return map;
}

void ElectrometerFieldForm::setSettings(const QVariantMap &settings)
{
    m_electrometers->setChosen(valueOr(settings, "electrometers", QStringList()));
    for (const Value &value : m_values)
        value.box->setChecked(valueOr(settings, value.key, value.isOnAtFirst));
}
