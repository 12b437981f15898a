#pragma once

#include <QGroupBox>
#include <QVariantMap>

class DataComboBox;
class ExpSpinBox;
class QSpinBox;

/// The group of a form that asks for fractions of decades; checked where they are.
class DecadeFractionsBox : public QGroupBox {
    Q_OBJECT
public:
    explicit DecadeFractionsBox(QWidget *parent = nullptr);

    void write(QVariantMap &settings) const;
    void read(const QVariantMap &settings);

Q_SIGNALS:
    void changed();

private:
    void enableRange();

    QSpinBox *m_perDecade;
    DataComboBox *m_scale;
    ExpSpinBox *m_from;
    ExpSpinBox *m_to;
};
