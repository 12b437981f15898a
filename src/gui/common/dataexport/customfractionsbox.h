#pragma once

#include <QGroupBox>
#include <QVariantMap>

class DataComboBox;
class QPlainTextEdit;

/// The group of a form that asks for fractions between limits of one's own; checked where they are.
class CustomFractionsBox : public QGroupBox {
    Q_OBJECT
public:
    explicit CustomFractionsBox(QWidget *parent = nullptr);

    void write(QVariantMap &settings) const;
    void read(const QVariantMap &settings);

Q_SIGNALS:
    void changed();

private:
    DataComboBox *m_scale;
    QPlainTextEdit *m_limits;
};
