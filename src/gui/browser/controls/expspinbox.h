#pragma once

#include <QAbstractSpinBox>

class QDoubleValidator;

/// A spin box for values that span decades: a step multiplies, and ten steps make a decade exactly, since steps are
/// counted from a base value that moves only at whole decades. Infinity can be set, and shows as "∞".
class ExpSpinBox : public QAbstractSpinBox {
    Q_OBJECT
public:
    explicit ExpSpinBox(QWidget *parent = nullptr);

    double value() const { return m_value; }
    /// The text is one that the user wrote.
    bool isBeingEdited() const;
    /// Clamps the present value at once. Unlimited at the start.
    void setRange(double bottom, double top);
    void setDecimals(int digits);      ///< significant digits of the text; 2 at the start
    void setStepsPerDecade(int steps); ///< 10 at the start
    void setStepZero(double zero);     ///< the value that steps lead away from; 0 at the start

    void stepBy(int steps) override;
    QValidator::State validate(QString &input, int &pos) const override;
    /// "1.0" for an empty text, the present value for any other.
    void fixup(QString &input) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

public Q_SLOTS:
    /// With resetBase steps count from this value on.
    void setValue(double value, bool resetBase = true);
    void changeBase();
    void textEdited(const QString &value);

Q_SIGNALS:
    void valueChanged(double value);

protected:
    StepEnabled stepEnabled() const override;
    void changeEvent(QEvent *event) override;

private:
    void showText(double value);
    void clampValue();

    double m_value = 1.0;
    double m_shownValue;
    double m_stepBase = 1.0;
    int m_stepCount = 0;
    bool m_settingText = false;
    QDoubleValidator *m_validator; ///< child of this
    double m_stepZero = 0;
    int m_stepsPerDecade = 10;
    int m_decimals = 2;
    mutable int m_sizeWidth = 0; ///< of the sample text; 0 before it was measured
    char m_format = 'g';
};
