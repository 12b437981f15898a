#pragma once

#include <QToolButton>

/// A flat button that opens its menu on a press.
class MenuButton : public QToolButton {
    Q_OBJECT
public:
    explicit MenuButton(QWidget *parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent *event) override;
};
