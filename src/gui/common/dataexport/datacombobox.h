#pragma once

#include <QComboBox>
#include <QString>

/// A choice of one text of a setup under the names that people read.
class DataComboBox : public QComboBox {
public:
    using QComboBox::QComboBox;

    QString chosen() const { return currentData().toString(); }
    /// A text that isn't among the entries gets one of its own, so that it stays as it is. Control characters of it are
    /// shown as escapes.
    void choose(const QString &text);
};
