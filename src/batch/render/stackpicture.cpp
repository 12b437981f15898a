#include "batch/render/stackpicture.h"

#include "datafiles/reading/filereader.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/common/uiinfo.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Batch {

using Tsb::View;

namespace {

constexpr int viewGap = 4;          ///< between the views, at most
constexpr int leftColumn = 140;     ///< room for the names of scales, which nobody can widen any more
constexpr int leastPlotHeight = 48; ///< of a view that shares a given height
constexpr int leastAxisWidth = 60;  ///< one label of the time axis
constexpr int spareHeight = 400;    ///< of the browser below the last view, for what else stands there

/// A strip is as high as its text; all other views take what there is.
bool takesHeight(const View &view)
{
    return qobject_cast<const Tsb::OpmodeView *>(&view) == nullptr;
}

} // namespace

StackPicture::StackPicture(const FileReader &reader, const QVariant &setup, const TimeSpan &span, const QSize &size)
    : m_uiInfo(std::make_shared<UiInfo>())
{
    m_uiInfo->setData(reader.metadata(), reader.spectrumInfos().toList());
    m_uiInfo->publish();
    m_browser = std::make_unique<Tsb::TimeSeriesBrowser>(m_uiInfo);
    m_browser->setAttribute(Qt::WA_DontShowOnScreen);
    m_browser->show();
    Datastore &store = *reader.datastore();
    m_browser->setDatastore(&store);
    m_browser->timeView()->setTimeOffset(span.utcOffset);

    m_browser->setSetup(setup);
    m_browser->setUpdatesEnabled(false); // it is drawn once, into the picture alone
    const bool byDefault = !m_browser->hasViews();
    if (byDefault)
        m_browser->addDefaultStack();

    const int width = size.isEmpty() ? defaultWidth : size.width();
    m_browser->resize(std::max(width, defaultWidth), spareHeight);
    m_browser->setLeftColumnWidth(leftColumn);
    settle();
    const int besideAxis = m_browser->pictureFrame().width() - m_browser->timeView()->width();
    m_browser->resize(m_browser->width() + width - m_browser->pictureFrame().width(), m_browser->height());
    settle();
    if (!size.isEmpty())
        shareHeight(size.height());
    else if (byDefault)
        shareHeight(std::max(defaultHeight, m_browser->pictureFrame().height()));
    // Last, since scales are fitted to what is in sight.
    m_browser->fitTimescale(span.begin, span.end);
    m_browser->fitUntoldScales();
    settle();
    m_frame = m_browser->pictureFrame();
    if (width < besideAxis + leastAxisWidth)
        m_fault = QStringLiteral("The plots need at least %1 pixels of width.").arg(besideAxis + leastAxisWidth);
    if (m_frame.height() > greatestHeight)
        m_fault = QStringLiteral("The plots are too many, or too high, for one picture: %1 pixels, of at most %2")
                      .arg(QString::number(m_frame.height()), QString::number(greatestHeight));
    if (!size.isEmpty())
        m_frame.setHeight(size.height());
}

StackPicture::~StackPicture() = default;

/// Brings all geometry up to date, with the browser as high as all views need.
void StackPicture::settle()
{
    QCoreApplication::sendPostedEvents();
    int height = spareHeight;
    for (const View *view : m_browser->views())
        height += view->minimumHeight() + viewGap;
    m_browser->resize(m_browser->width(), height);
    QCoreApplication::sendPostedEvents();
    for (View *view : m_browser->views())
        view->activateLayout();
}

/// Gives the plots, in proportion to their heights, what a picture of that height leaves for them.
void StackPicture::shareHeight(int height)
{
    std::vector<View *> plots;
    int had = 0;
    for (View *view : m_browser->views()) {
        if (!takesHeight(*view))
            continue;
        plots.push_back(view);
        had += view->height();
    }
    const int needed = m_browser->pictureFrame().height() - had + int(plots.size()) * leastPlotHeight;
    if (height < needed) {
        m_fault = QStringLiteral("The plots need at least %1 pixels of height.").arg(needed);
        return;
    }
    int left = height - m_browser->pictureFrame().height() + had;
    for (View *view : plots) {
        const int before = view->height();
        const int share = int(std::lround(double(left) * before / had));
        view->setFixedHeight(share);
        left -= share;
        had -= before;
    }
    settle();
}

PictureFile::Drawing StackPicture::drawing() const
{
    m_browser->setUpdatesEnabled(true);
    PictureFile::Drawing drawing = m_browser->drawing();
    drawing.frame = m_frame;
    return drawing;
}

QImage StackPicture::draw() const
{
    return PictureFile::imageOf(drawing(), m_browser->devicePixelRatioF());
}

} // namespace Batch
