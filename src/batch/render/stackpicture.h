#pragma once

#include "batch/render/timespan.h"
#include "gui/common/pictures/picturefile.h"

#include <QImage>
#include <QVariant>

#include <memory>

class FileReader;
class UiInfo;

namespace Tsb {
class TimeSeriesBrowser;
}

namespace Batch {

/// The stack of views as a picture: the window's own browser, drawn without the controls that need a mouse.
class StackPicture {
public:
    static constexpr int defaultWidth = 1600;    ///< logical pixels, as all sizes
    static constexpr int defaultHeight = 900;    ///< of the default stack
    static constexpr int greatestHeight = 16000; ///< twice that is still within the reach of the rasterizer

    /// Lays out the views of the setup, or the default ones where it has none, for a picture of that size. Plots
    /// share its height in proportion to the heights that they would have. An empty size is the default width, and the
    /// height that the setup's views have. The reader has records.
    StackPicture(const FileReader &reader, const QVariant &setup, const TimeSpan &span, const QSize &size);
    ~StackPicture();

    /// Why it can't be drawn, or an empty text.
    const QString &fault() const { return m_fault; }
    QSize size() const { return m_frame.size(); }
    /// For a file of any kind.
    PictureFile::Drawing drawing() const;
    /// With the device pixel ratio that the application was made for.
    QImage draw() const;

    const Tsb::TimeSeriesBrowser &browser() const { return *m_browser; }
    /// The visible part of the browser.
    QRect frame() const { return m_frame; }

private:
    void settle();
    void shareHeight(int height);

    std::shared_ptr<UiInfo> m_uiInfo;
    std::unique_ptr<Tsb::TimeSeriesBrowser> m_browser;
    QRect m_frame; ///< in the browser; its margin may reach beyond
    QString m_fault;
};

} // namespace Batch
