#include "gui/browser/views/timeseriesbrowser.h"

#include "axis/zoomfactor.h"
#include "columns/setupkeys.h"
#include "gui/browser/controls/header.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/views/arrangingcommands.h"
#include "gui/browser/views/measuringcommands.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/stackdrawing.h"
#include "gui/browser/views/view.h"
#include "gui/browser/views/viewholder.h"
#include "gui/common/iconhelp.h"
#include "gui/common/pictures/picturecommands.h"
#include "log/logger.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace Tsb {

namespace {

constexpr int updatePeriod = 500; // ms
constexpr int scrollMargin = 50;
constexpr int dragScrollMargin = 30;
} // namespace

TimeSeriesBrowser::TimeSeriesBrowser(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, std::vector<ViewKind> kinds)
    : QWidget(parent), m_uiInfo(std::move(uiInfo)), m_kinds(std::move(kinds)), m_header(new Header(this)),
      m_scrollArea(new QScrollArea(this)), m_viewHolder(new ViewHolder),
      m_plotAdder(new PlotAdder(*this, m_kinds, m_uiInfo, this)), m_scales(new ScaleFitting(*this, this))
{
    const int frameWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    m_scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_viewHolder->setLastRow(m_plotAdder->makeRow());
    m_scrollArea->setWidget(m_viewHolder);
    m_header->setContentsMargins(frameWidth, 0, frameWidth, 0);
    m_header->setViewLeft(m_scrollArea->frameWidth() + m_viewHolder->layout()->contentsMargins().left());

    auto *const mainLayout = new QVBoxLayout(this);
    mainLayout->setContentsMargins(0, 0, 0, 0);
    mainLayout->setSpacing(0);
    mainLayout->addWidget(m_header);
    mainLayout->addWidget(m_scrollArea);

    // From the time axis and to it.
    connect(timeView(), &TimeView::followNowChanged, this, &TimeSeriesBrowser::timeViewFollowNowChanged);
    connect(this, &TimeSeriesBrowser::timeCursorChanged, timeView(), &TimeView::setTimeCursor);
    // From the stack: a drag near the edge scrolls.
    connect(m_viewHolder, &ViewHolder::dragMoved, m_scrollArea,
            [this](const QPoint &at) { m_scrollArea->ensureVisible(at.x(), at.y(), 0, dragScrollMargin); });
    timeView()->setMeasuringCursors(&m_cursors);
    connect(timeView(), &TimeView::timeCursorChange, this, &TimeSeriesBrowser::setTimeCursor);
    m_measuring = new MeasuringCommands(
        &m_cursors, timeView(), [this](int which) { return placeForCursor(which); }, this);
    connect(m_measuring, &MeasuringCommands::exportRequested, this, &TimeSeriesBrowser::spanExportRequested);
    m_arranging = new ArrangingCommands(m_viewHolder, this);
    connect(m_arranging, &ArrangingCommands::arranged, this, &TimeSeriesBrowser::ensureViewVisible);
    makeViewActions();
    m_updateTimer.start(updatePeriod);
}

void TimeSeriesBrowser::makeViewActions()
{
    auto *const autoscale = new QAction(tr("Autoscale all plots"), this);
    auto *const closeAll = new QAction(namedIcon(QStringLiteral("remove")), tr("Close all plots"), this);
    connect(autoscale, &QAction::triggered, this, &TimeSeriesBrowser::allFitScale);
    connect(closeAll, &QAction::triggered, this, &TimeSeriesBrowser::closeAllViews);
    m_pictures = new PictureCommands(this, [this] { return drawing(); }, {1, 2, 4});
    m_viewActions << autoscale << closeAll << m_pictures->saveAction() << m_pictures->copyAction();
    updateViewActions();
}

void TimeSeriesBrowser::updateViewActions()
{
    for (QAction *action : addPlotActions() + m_viewActions)
        action->setEnabled(isEnabled());
    m_pictures->setEnabled(isEnabled() && hasViews());
    m_measuring->setEnabled(isEnabled());
}

TimeSeriesBrowser::~TimeSeriesBrowser()
{
    // They would die in the base class, and tell it to an object that is half gone.
    for (View *view : m_views) {
        view->disconnect(this);
        delete view;
    }
}

TimeView *TimeSeriesBrowser::timeView() const
{
    return m_header->timeView();
}

QAction *TimeSeriesBrowser::arrangingAction() const
{
    return m_arranging->menuAction();
}

TimeScale TimeSeriesBrowser::timeScale() const
{
    return timeView()->timeScale();
}

QVector<View *> TimeSeriesBrowser::views() const
{
    QVector<View *> open;
    for (View *view : m_views) {
        if (!view->isDiscarded())
            open.append(view);
    }
    return open;
}

PictureFile::Drawing TimeSeriesBrowser::drawing()
{
    return stackDrawing(*this, *timeView(), views());
}

QRect TimeSeriesBrowser::pictureFrame() const
{
    return stackFrame(*this, *timeView(), views());
}

void TimeSeriesBrowser::setDatastore(Datastore *datastore)
{
    if (m_datastore) {
        m_datastore->disconnect(this);
        m_datastore->disconnect(m_scales);
    }
    m_datastore = datastore;
    if (!m_keepsCursors)
        m_cursors.drop();
    for (View *view : m_views)
        view->setDatastore(datastore);
    if (datastore) {
        connect(datastore, &Datastore::updated, this, &TimeSeriesBrowser::curvesChanged);
        connect(datastore, &Datastore::updated, m_scales, &ScaleFitting::valuesChanged);
        connect(datastore, &Datastore::removed, this, &TimeSeriesBrowser::curvesChanged);
    }
    Q_EMIT curvesChanged();
}

void TimeSeriesBrowser::setNotes(const RecordNotes *notes)
{
    m_notes = notes;
    for (View *view : m_views)
        view->setNotes(notes);
}

void TimeSeriesBrowser::setListening(bool on)
{
    for (Plot *plot : findChildren<Plot *>())
        plot->setListening(on);
}

void TimeSeriesBrowser::redrawPlots()
{
    for (Plot *plot : findChildren<Plot *>())
        plot->requestFullRedraw();
    Q_EMIT curvesChanged();
}

// ---- views come

void TimeSeriesBrowser::addView(View *view)
{
    m_viewHolder->addView(view);
    view->setLeftMargin(m_header->leftMargin());
    connectView(view);
    m_views.push_back(view);
    view->setUpdateTimer(&m_updateTimer);
    view->setMeasuringCursors(&m_cursors);
    view->setColorLock(&m_colorLock);
    view->setTimeScale(timeScale());
    view->setUiInfo(m_uiInfo);
    view->setDatastore(m_datastore);
    view->setNotes(m_notes);
    view->setCurrentRecord(m_currentRecord);
    updateViewActions();
    Q_EMIT curvesChanged();
}

void TimeSeriesBrowser::connectView(View *view)
{
    // From the time axis.
    connect(m_header, &Header::leftMarginChanged, view, &View::setLeftMargin);
    connect(timeView(), &TimeView::timeScaleChanged, view, &View::setTimeScale);
    // From the view.
    connect(view, &QObject::destroyed, this, &TimeSeriesBrowser::viewDestroyed);
    connect(view, &View::recordChosen, this, &TimeSeriesBrowser::recordChosen);
    connect(view, &View::requestPan, timeView(), qOverload<TimeScale, QPoint>(&TimeView::changeZoom));
    connect(view, &View::requestZoom, timeView(), qOverload<double, int>(&TimeView::changeZoom));
    connect(view, &View::requestCloseBelow, this, &TimeSeriesBrowser::closeViewsBelow);
    connect(view, &View::requestDisableAutoscroll, this, &TimeSeriesBrowser::setDisableAutoscroll);
    connect(view, &View::curvesChanged, this, &TimeSeriesBrowser::curvesChanged);
    // The time cursor's ring.
    connect(view, &View::timeCursorChange, this, &TimeSeriesBrowser::setTimeCursor);
    connect(this, &TimeSeriesBrowser::timeCursorChanged, view, &View::timeCursorChange);
}

const QList<QAction *> &TimeSeriesBrowser::addPlotActions() const
{
    return m_plotAdder->actions();
}

void TimeSeriesBrowser::addDefaultStack()
{
    m_plotAdder->addDefaultStack();
    allFitScale(); // each view once
    ScaleFitting::settleBeforePainting();
}

void TimeSeriesBrowser::addOpmodePlot()
{
    m_plotAdder->addOpmodePlot();
}

void TimeSeriesBrowser::addFlagPlot(const QString &flagData)
{
    m_plotAdder->addFlagPlot(flagData);
}

void TimeSeriesBrowser::addElectrometerPlot(int channelNumber)
{
    m_plotAdder->addElectrometerPlot(channelNumber);
}

void TimeSeriesBrowser::addDiagnosticPlot(const QString &channelName)
{
    m_plotAdder->addDiagnosticPlot(channelName);
}

void TimeSeriesBrowser::ensureViewVisible(QWidget *widget)
{
    widget->show();
    // Queued: the layout has to settle first. The widget may be gone by then.
    QMetaObject::invokeMethod(
        this,
        [this, target = QPointer<QWidget>(widget)] {
            if (target)
                scrollToView(target);
        },
        Qt::QueuedConnection);
}

void TimeSeriesBrowser::scrollToView(QWidget *widget)
{
    m_scrollArea->ensureWidgetVisible(widget, scrollMargin, scrollMargin);
}

bool TimeSeriesBrowser::hasRoom() const
{
    return views().size() < greatestViewCount;
}

// ---- views go

void TimeSeriesBrowser::closeView(View *view)
{
    if (std::find(m_views.begin(), m_views.end(), view) != m_views.end())
        view->discard();
}

void TimeSeriesBrowser::closeTempViews()
{
    for (View *view : views()) {
        if (view->isTemporary())
            view->discard();
    }
}

void TimeSeriesBrowser::closeAllViews()
{
    for (View *view : views())
        view->discard();
}

void TimeSeriesBrowser::closeViewsBelow(View *view)
{
    const auto shown = m_viewHolder->viewsInOrder();
    const int from = shown.indexOf(view);
    for (int i = from; from >= 0 && i < shown.size(); ++i)
        shown[i]->discard();
}

void TimeSeriesBrowser::viewDestroyed(QObject *object)
{
    const auto gone = [object](View *view) { return static_cast<QObject *>(view) == object; };
    m_views.erase(std::remove_if(m_views.begin(), m_views.end(), gone), m_views.end());
    updateViewActions();
    Q_EMIT curvesChanged();
}

// ---- settings

QVariant TimeSeriesBrowser::setup() const
{
    QVariantList list;
    for (const View *view : m_viewHolder->viewsInOrder()) {
        const QString type = m_kinds.typeOf(*view);
        if (type.isEmpty() || view->isTemporary())
            continue;
        QVariantMap entry{{SetupKeys::type, type}};
        const QVariant settings = view->settings();
        if (settings.isValid())
            entry.insert(SetupKeys::settings, settings);
        list.append(entry);
    }
    return list;
}

void TimeSeriesBrowser::setSetup(const QVariant &setup)
{
    setUpdatesEnabled(false);
    const QVector<View *> former = views();
    closeAllViews();
    const QVariantList list = setup.toList();
    int count = 0;
    for (const QVariant &entry : list) {
        const QVariantMap map = entry.toMap();
        const QString type = map.value(SetupKeys::type).toString();
        if (!m_kinds.has(type) || ++count > greatestViewCount)
            continue;
        View *const view = m_kinds.make(type);
        addView(view);
        view->setPredecessors(former);
        view->setSettings(map.value(SetupKeys::settings));
    }
    if (count > greatestViewCount)
        Log::Logger(QStringLiteral("gui"))
            .log(Log::Warning, QStringLiteral("The layout has %1 plots; the first %2 are shown")
                                   .arg(QString::number(count), QString::number(greatestViewCount)));
    for (View *view : former) // later it would have all of the others painted once more
        QCoreApplication::sendPostedEvents(view, QEvent::DeferredDelete);
    setUpdatesEnabled(true);
}

int TimeSeriesBrowser::leftColumnWidth() const
{
    return m_header->leftColumn();
}

void TimeSeriesBrowser::setLeftColumnWidth(int width)
{
    m_header->setLeftColumn(width);
}

int TimeSeriesBrowser::scrolledHeight() const
{
    return m_scrollArea->verticalScrollBar()->value();
}

void TimeSeriesBrowser::scrollTo(int height)
{
    QMetaObject::invokeMethod(
        this, [this, height] { m_scrollArea->verticalScrollBar()->setValue(height); }, Qt::QueuedConnection);
}

// ---- for all views

void TimeSeriesBrowser::activateLayouts() const
{
    // A plot's width is asked for to fit to it, so it must be that of the layout to come; layouts settle with the event
    // loop.
    layout()->activate();
    m_viewHolder->layout()->activate();
    QCoreApplication::sendPostedEvents(m_viewHolder, QEvent::LayoutRequest);
    m_viewHolder->layout()->activate();
    for (View *view : views())
        view->activateLayout();
}

void TimeSeriesBrowser::allFitScale()
{
    m_scales->fitAll();
}

void TimeSeriesBrowser::setColormap(const QString &name)
{
    for (auto *view : findChildren<SpectrogramView *>())
        view->setColormap(name, view->isWhiteBackground());
}

void TimeSeriesBrowser::fitUntoldScales()
{
    m_scales->fitUntold();
}

void TimeSeriesBrowser::fitTimescale(RecordTime begin, RecordTime end)
{
    activateLayouts();
    timeView()->navigator()->fitWhole(begin, end);
}

void TimeSeriesBrowser::setDisableAutoscroll(bool on)
{
    m_disableAutoscroll = on;
    if (!on)
        timeView()->navigator()->finishDrag(); // a plot lets go of the axis
}

void TimeSeriesBrowser::selectRecord(std::shared_ptr<Record> record)
{
    makeCurrent(record, &TimeNavigator::scrollIntoView);
}

void TimeSeriesBrowser::followRecord(std::shared_ptr<Record> record)
{
    makeCurrent(record, &TimeNavigator::runIntoView);
}

void TimeSeriesBrowser::makeCurrent(const std::shared_ptr<Record> &record, Scroll bring)
{
    if (record == m_currentRecord)
        return;
    if (record && !m_disableAutoscroll)
        (timeView()->navigator()->*bring)(record->beginTime, effectiveEnd(*record));
    m_currentRecord = record;
    for (View *view : m_views)
        view->setCurrentRecord(record);
    Q_EMIT recordChosen(record);
}

void TimeSeriesBrowser::setTimeCursor(bool visible, int value)
{
    if (visible == m_timeCursorVisible && (!visible || value == m_timeCursorPixel))
        return;
    // Stored before it is told: the news comes back round the ring.
    m_timeCursorVisible = visible;
    m_timeCursorPixel = value;
    Q_EMIT timeCursorChanged(visible, value);
}

void TimeSeriesBrowser::timeViewFollowNowChanged(bool on)
{
    if (on)
        m_updateTimer.stop(); // the moving scale paces the repaints
    else
        m_updateTimer.start();
}

// ---- measuring

const QList<QAction *> &TimeSeriesBrowser::measuringActions() const
{
    return m_measuring->actions();
}

QVector<CurveFigures> TimeSeriesBrowser::measure() const
{
    QVector<CurveFigures> curves;
    for (View *view : m_viewHolder->viewsInOrder()) {
        for (const CurveFigures &curve : view->measure(m_cursors.times())) {
            const auto isSame = [&](const CurveFigures &c) { return c.name == curve.name && c.unit == curve.unit; };
            if (std::none_of(curves.begin(), curves.end(), isSame))
                curves.append(curve);
        }
    }
    return curves;
}

/// Under the pointer, else at the selected record, else at a third of the axis.
RecordTime TimeSeriesBrowser::placeForCursor(int which) const
{
    const QRect axis = timeView()->contentsRect();
    if (m_timeCursorVisible)
        return timeScale().tickAt(m_timeCursorPixel - axis.left());
    if (timeView()->underMouse())
        return timeScale().tickAt(timeView()->mapFromGlobal(QCursor::pos()).x() - axis.left());
    const int column = m_currentRecord ? timeScale().pixelAt(m_currentRecord->midTime) : -1;
    if (column >= 0 && column < axis.width())
        return m_currentRecord->midTime;
    return timeScale().tickAt(axis.width() * (which + 1) / (MeasuringCursors::count + 1));
}

void TimeSeriesBrowser::zoom(int step)
{
    const int middle = m_currentRecord ? saturatedPixel(timeScale().columnOf(m_currentRecord->midTime))
                                       : timeView()->contentsRect().width() / 2;
    timeView()->changeZoom(zoomOfSteps(step), middle);
}

void TimeSeriesBrowser::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Plus)
        zoom(1);
    else if (event->key() == Qt::Key_Minus)
        zoom(-1);
    else
        QWidget::keyPressEvent(event);
}

void TimeSeriesBrowser::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        updateViewActions();
    QWidget::changeEvent(event);
}

} // namespace Tsb
