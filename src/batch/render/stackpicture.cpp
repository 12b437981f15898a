#include "batch/render/stackpicture.h"

#include "datafiles/reading/filereader.h"
#include "gui/browser/controls/header.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/common/uiinfo.h"

#include <QCoreApplication>
#include <QLayout>
#include <QPainter>
#include <QSplitter>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Batch {

using Tsb::View;

namespace {

constexpr int margin = 4;           ///< around the views
constexpr int leftColumn = 140;     ///< room for the names of scales, which nobody can widen any more
constexpr int leastPlotHeight = 48; ///< of a view that shares a given height
constexpr int leastAxisWidth = 60;  ///< one label of the time axis
constexpr int spareHeight = 400;    ///< of the browser below the last view, for what else stands there

/// A strip is as high as its text; all other views take what there is.
bool takesHeight(const View &view)
{
    return qobject_cast<const Tsb::OpmodeView *>(&view) == nullptr;
}

void hideInPlace(QWidget *widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
    widget->hide();
}

/// Where the widget stands in the browser.
QRect placeIn(const Tsb::TimeSeriesBrowser &browser, const QWidget &widget)
{
    return {widget.mapTo(&browser, QPoint()), widget.size()};
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
    m_browser->timeView()->setTimeOffset(store.records().back()->beginUtcOffset);

    m_browser->setSetup(setup);
    m_browser->setUpdatesEnabled(false); // it is drawn once, into the picture alone
    const bool byDefault = !m_browser->hasViews();
    if (byDefault)
        m_browser->addDefaultStack();

    const int width = size.isEmpty() ? defaultWidth : size.width();
    m_browser->resize(std::max(width, defaultWidth), spareHeight);
    m_browser->findChild<Tsb::Header *>()->splitter()->setSizes({leftColumn, m_browser->width()});
    settle();
    const int besideAxis = contentsFrame().width() - m_browser->timeView()->width();
    m_browser->resize(m_browser->width() + width - contentsFrame().width(), m_browser->height());
    settle();
    if (!size.isEmpty())
        shareHeight(size.height());
    else if (byDefault)
        shareHeight(std::max(defaultHeight, contentsFrame().height()));
    // Last, since scales are fitted to what is in sight.
    m_browser->fitTimescale(span.begin, span.end);
    for (View *view : m_browser->views()) {
        if (!view->isScaleGiven()) // a setup that is written by hand needn't know the values
            view->fitScale();
    }
    settle();
    m_frame = contentsFrame();
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
        height += view->minimumHeight() + margin;
    m_browser->resize(m_browser->width(), height);
    QCoreApplication::sendPostedEvents();
    for (View *view : m_browser->views())
        view->activateLayout();
}

/// From the left end of the views' contents, where their close buttons end, to the end of the axis, and down to the
/// last view.
QRect StackPicture::contentsFrame() const
{
    const QRect axis = placeIn(*m_browser, *m_browser->timeView());
    QRect frame(QPoint(Tsb::ViewLayout::titleWidth, axis.top()), axis.bottomRight());
    for (const View *view : m_browser->views()) {
        const QRect place = placeIn(*m_browser, *view);
        frame.setLeft(place.left() + Tsb::ViewLayout::titleWidth + view->layout()->spacing());
        frame.setBottom(std::max(frame.bottom(), place.bottom()));
    }
    return frame.adjusted(-margin, -margin, margin, margin);
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
    const int needed = contentsFrame().height() - had + int(plots.size()) * leastPlotHeight;
    if (height < needed) {
        m_fault = QStringLiteral("The plots need at least %1 pixels of height.").arg(needed);
        return;
    }
    int left = height - contentsFrame().height() + had;
    for (View *view : plots) {
        const int before = view->height();
        const int share = int(std::lround(double(left) * before / had));
        view->setFixedHeight(share);
        left -= share;
        had -= before;
    }
    settle();
}

/// Takes out what only the mouse can use. The places stay as they are.
void StackPicture::hideControls() const
{
    for (auto *handle : m_browser->findChildren<Tsb::Resizer *>())
        hideInPlace(handle);
    for (auto *button : m_browser->findChildren<QToolButton *>()) {
        if (button->menu() && button->isVisible())
            hideInPlace(button);
    }
}

QImage StackPicture::draw() const
{
    QRegion seen = placeIn(*m_browser, *m_browser->timeView());
    for (const View *view : m_browser->views())
        seen += placeIn(*m_browser, *view);
    seen &= m_frame;
    hideControls();
    m_browser->setUpdatesEnabled(true);

    // On a sheet with the browser's own origin first: edges that are smoothed come out as on the screen, to the last
    // bit.
    const int ratio = m_browser->devicePixelRatio();
    const auto blank = [&](const QSize &size) {
        QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(m_browser->palette().color(QPalette::Window));
        return image;
    };
    QImage sheet = blank({m_frame.right() + 1, m_frame.bottom() + 1});
    m_browser->render(&sheet, seen.boundingRect().topLeft(), seen);
    QImage picture = blank(m_frame.size());
    QPainter painter(&picture);
    painter.drawImage(-m_frame.topLeft(), sheet);
    return picture;
}

} // namespace Batch
