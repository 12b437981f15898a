#include "gui/common/dataexport/customfractionsbox.h"

#include "gui/common/dataexport/datacombobox.h"
#include "gui/common/dataexport/setupmap.h"

#include <QFormLayout>
#include <QLabel>
#include <QPlainTextEdit>

namespace {

constexpr int leastLines = 3;
constexpr int mostLines = 6; // without scrolling

} // namespace

CustomFractionsBox::CustomFractionsBox(QWidget *parent)
    : QGroupBox(tr("Custom fractions"), parent), m_scale(new DataComboBox(this)), m_limits(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("customFractions"));
    setCheckable(true);
    m_scale->setObjectName(QStringLiteral("customScale"));
    m_scale->addItem(tr("Diameter (nm)"), QStringLiteral("diameter"));
    m_scale->addItem(tr("Mobility (cm²/V/s)"), QStringLiteral("mobility"));
    m_limits->setObjectName(QStringLiteral("customLimits"));
    m_limits->setAccessibleName(tr("Fraction limits"));
    m_limits->setTabChangesFocus(true);
    m_limits->setMinimumHeight(m_limits->fontMetrics().lineSpacing() * leastLines);
    m_limits->setMaximumHeight(m_limits->fontMetrics().lineSpacing() * mostLines);
    auto *const help = new QLabel(tr("Give any number of fraction limits on one or more lines.\n"
                                     "Limits should be separated by spaces: e.g. \"1 3 10\""),
                                  this);
    help->setWordWrap(true);
    auto *const layout = new QFormLayout(this);
    layout->addRow(tr("Scale:"), m_scale);
    layout->addRow(m_limits);
    layout->addRow(help);

    connect(this, &QGroupBox::toggled, this, &CustomFractionsBox::changed);
    connect(m_scale, qOverload<int>(&QComboBox::currentIndexChanged), this, &CustomFractionsBox::changed);
    connect(m_limits, &QPlainTextEdit::textChanged, this, &CustomFractionsBox::changed);
}

void CustomFractionsBox::write(QVariantMap &settings) const
{
    settings[QStringLiteral("custom_fractions_enabled")] = isChecked();
    settings[QStringLiteral("custom_fractions_data")] = m_limits->toPlainText();
    settings[QStringLiteral("custom_fractions_scale")] = m_scale->chosen();
}

void CustomFractionsBox::read(const QVariantMap &settings)
{
    setChecked(valueOr(settings, "custom_fractions_enabled", false));
    m_limits->setPlainText(textOr(settings, "custom_fractions_data", ""));
    m_scale->choose(textOr(settings, "custom_fractions_scale", "diameter"));
}
