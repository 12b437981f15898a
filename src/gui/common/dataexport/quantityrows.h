#pragma once

#include <QObject>
#include <QVariantMap>

class DataComboBox;
class ExpSpinBox;
class QFormLayout;

/// The rows of a form that choose the quantity of concentrations: its type, and of a mass the density and the unit.
class QuantityRows : public QObject {
    Q_OBJECT
public:
    /// Adds them to the layout, of that widget.
    QuantityRows(QFormLayout *layout, QWidget *parent);

    void write(QVariantMap &settings) const;
    void read(const QVariantMap &settings);

Q_SIGNALS:
    void changed();

private:
    void enableMass();

    DataComboBox *m_type;
    ExpSpinBox *m_density;
    DataComboBox *m_massUnit;
};
