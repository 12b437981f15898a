#include "gui/browser/controls/expspinbox.h"
#include "axis/valuescale.h"

#include <QDoubleValidator>
#include <QEvent>
#include <QLineEdit>
#include <QStyleOptionSpinBox>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

QString textOf(double value, char format, int digits)
{
    return std::isinf(value) && value > 0 ? QStringLiteral("∞") : QString::number(value, format, digits);
}

} // namespace

ExpSpinBox::ExpSpinBox(QWidget *parent)
    : QAbstractSpinBox(parent), m_shownValue(std::numeric_limits<double>::quiet_NaN()),
      m_validator(new QDoubleValidator(this))
{
    m_validator->setLocale(QLocale::c());
    connect(lineEdit(), &QLineEdit::textChanged, this, &ExpSpinBox::textEdited);
    showText(m_value);
}

bool ExpSpinBox::isBeingEdited() const
{
    return lineEdit()->isModified();
}

void ExpSpinBox::setRange(double bottom, double top)
{
    m_validator->setBottom(bottom);
    m_validator->setTop(top);
    clampValue();
}

void ExpSpinBox::clampValue()
{
    if (m_value < m_validator->bottom())
        setValue(m_validator->bottom());
    else if (m_value > m_validator->top())
        setValue(m_validator->top());
}

void ExpSpinBox::setDecimals(int digits)
{
    m_decimals = digits;
    showText(m_value);
}

void ExpSpinBox::setStepsPerDecade(int steps)
{
    m_stepsPerDecade = std::max(1, steps);
    changeBase();
}

void ExpSpinBox::setStepZero(double zero)
{
    m_stepZero = zero;
    changeBase();
}

void ExpSpinBox::setValue(double value, bool resetBase)
{
    if (!Tsb::sameValue(value, m_value)) {
        m_value = value;
        if (resetBase)
            changeBase();
        Q_EMIT valueChanged(value);
    }
    if (!Tsb::sameValue(m_value, m_shownValue))
        showText(m_value);
}

void ExpSpinBox::showText(double value)
{
    m_shownValue = value;
    m_settingText = true;
    lineEdit()->setText(textOf(value, m_format, m_decimals));
    m_settingText = false;
}

void ExpSpinBox::changeBase()
{
    m_stepBase = m_value;
    m_stepCount = 0;
}

void ExpSpinBox::textEdited(const QString &value)
{
    // The text that fixup() puts in place of a broken one stands for the value itself, not for its six digits.
    if (m_settingText || value == textOf(m_value, m_format, 6))
        return;
    QString text = value;
    int pos = 0;
    bool ok = false;
    const double parsed = text.toDouble(&ok);
    if (!ok || m_validator->validate(text, pos) != QValidator::Acceptable)
        return;
    m_shownValue = parsed; // what the user writes stays as written
    setValue(parsed, true);
}

void ExpSpinBox::stepBy(int steps)
{
    const int count = m_stepCount + steps;
    const double perDecade = m_stepZero > m_stepBase ? -m_stepsPerDecade : m_stepsPerDecade;
    const double v = std::pow(10.0, count / perDecade) * (m_stepBase - m_stepZero) + m_stepZero;
    if (!std::isfinite(v) || v < m_validator->bottom() || v > m_validator->top())
        return;
    if (v == m_stepZero && m_stepBase != m_stepZero)
        return; // too small to step away from again
    if (count % m_stepsPerDecade == 0) {
        setValue(v, true);
        changeBase();
    } else {
        m_stepCount = count;
        setValue(v, false);
    }
}

QAbstractSpinBox::StepEnabled ExpSpinBox::stepEnabled() const
{
    return isReadOnly() ? StepEnabled(StepNone) : StepUpEnabled | StepDownEnabled;
}

QValidator::State ExpSpinBox::validate(QString &input, int &pos) const
{
    if (std::isinf(m_value) && input == textOf(m_value, m_format, m_decimals))
        return QValidator::Acceptable;
    return m_validator->validate(input, pos);
}

void ExpSpinBox::fixup(QString &input) const
{
    input = input.isEmpty() ? QStringLiteral("1.0") : textOf(m_value, m_format, 6);
}

QSize ExpSpinBox::sizeHint() const
{
    ensurePolished();
    if (m_sizeWidth == 0)
        m_sizeWidth = fontMetrics().horizontalAdvance(QStringLiteral("1.000e00"));
    constexpr int textCursorWidth = 2;
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize contents(m_sizeWidth + textCursorWidth, lineEdit()->sizeHint().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, contents, this);
}

void ExpSpinBox::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        m_sizeWidth = 0;
    QAbstractSpinBox::changeEvent(event);
}
