#pragma once

#include <QToolButton>

namespace Tsb {

/// A small auto-raised button for a view's title strip, at most as large as a small icon.
class TitleButton : public QToolButton {
    Q_OBJECT
public:
    explicit TitleButton(QWidget *parent = nullptr);
};

} // namespace Tsb
