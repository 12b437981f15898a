#include "gui/common/dataexport/decadefractionsbox.h"

#include "gui/browser/controls/expspinbox.h"
#include "gui/common/dataexport/datacombobox.h"
#include "gui/common/dataexport/setupmap.h"

#include <QFormLayout>
#include <QSpinBox>

#include <limits>

namespace {

constexpr int mostPerDecade = 100;
constexpr int limitDigits = 6;
constexpr double firstFrom = 1;
constexpr double firstTo = 1000;

ExpSpinBox *makeLimit(const char *name, QWidget *parent)
{
    auto *const box = new ExpSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(0, std::numeric_limits<double>::max());
    box->setDecimals(limitDigits);
    return box;
}

} // namespace

DecadeFractionsBox::DecadeFractionsBox(QWidget *parent)
    : QGroupBox(tr("Fractions per decade"), parent), m_perDecade(new QSpinBox(this)), m_scale(new DataComboBox(this)),
      m_from(makeLimit("decadeFrom", this)), m_to(makeLimit("decadeTo", this))
{
    setObjectName(QStringLiteral("decadeFractions"));
    setCheckable(true);
    m_perDecade->setObjectName(QStringLiteral("fractionsPerDecade"));
    m_perDecade->setLocale(QLocale::c());
    m_perDecade->setRange(1, mostPerDecade);
    m_scale->setObjectName(QStringLiteral("decadeScale"));
    m_scale->addItem(tr("Diameter scale (nm)"), QStringLiteral("diameter"));
    m_scale->addItem(tr("Mobility scale (cm²/V/s)"), QStringLiteral("mobility"));
    m_scale->addItem(tr("Diameter scale (nm), custom range"), QStringLiteral("diameter_custom"));
    m_scale->addItem(tr("Mobility scale (cm²/V/s), custom range"), QStringLiteral("mobility_custom"));
    auto *const layout = new QFormLayout(this);
    layout->addRow(tr("Fraction per decade:"), m_perDecade);
    layout->addRow(tr("Fraction scale:"), m_scale);
    layout->addRow(tr("From:"), m_from);
    layout->addRow(tr("To:"), m_to);

    connect(this, &QGroupBox::toggled, this, &DecadeFractionsBox::changed);
    connect(this, &QGroupBox::toggled, this, &DecadeFractionsBox::enableRange); // the group enables all that it holds
    connect(m_perDecade, qOverload<int>(&QSpinBox::valueChanged), this, &DecadeFractionsBox::changed);
    connect(m_scale, qOverload<int>(&QComboBox::currentIndexChanged), this, &DecadeFractionsBox::enableRange);
    connect(m_scale, qOverload<int>(&QComboBox::currentIndexChanged), this, &DecadeFractionsBox::changed);
    for (const ExpSpinBox *limit : {m_from, m_to})
        connect(limit, &ExpSpinBox::valueChanged, this, &DecadeFractionsBox::changed);
    enableRange();
}

void DecadeFractionsBox::enableRange()
{
    const bool hasRange = m_scale->chosen().endsWith(QLatin1String("_custom"));
    m_from->setEnabled(isChecked() && hasRange);
    m_to->setEnabled(isChecked() && hasRange);
}

void DecadeFractionsBox::write(QVariantMap &settings) const
{
    settings[QStringLiteral("decade_fractions_enabled")] = isChecked();
    settings[QStringLiteral("decade_fractions_scale")] = m_scale->chosen();
    settings[QStringLiteral("decade_fractions_number")] = m_perDecade->value();
    settings[QStringLiteral("decade_fractions_from")] = m_from->value();
    settings[QStringLiteral("decade_fractions_to")] = m_to->value();
}

void DecadeFractionsBox::read(const QVariantMap &settings)
{
    setChecked(valueOr(settings, "decade_fractions_enabled", false));
    m_scale->choose(textOr(settings, "decade_fractions_scale", "diameter"));
    m_perDecade->setValue(valueOr(settings, "decade_fractions_number", 1));
    m_from->setValue(valueOr(settings, "decade_fractions_from", firstFrom));
    m_to->setValue(valueOr(settings, "decade_fractions_to", firstTo));
}
