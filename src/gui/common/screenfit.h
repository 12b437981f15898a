#pragma once

#include <QScreen>
#include <QStyle>
#include <QWidget>

/// A size that a window, its frame included, can have on its screen.
inline QSize fittedToScreen(const QWidget &window, const QSize &size)
{
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return size.boundedTo(window.screen()->availableSize() - QSize(0, titleBar));
}
