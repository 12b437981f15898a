#pragma once

#include <QFrame>

namespace Tsb {

/// The piece beside a colour bar that tells how values of 0 and below are marked.
class ZeroSwatch : public QFrame {
    Q_OBJECT
public:
    explicit ZeroSwatch(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace Tsb
