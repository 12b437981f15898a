#include "gui/frame/mainwindowbase.h"

#include "gui/browser/controls/gototimedialog.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/focusreturn.h"
#include "gui/common/inversionstatistics.h"
#include "gui/common/logbox.h"
#include "gui/common/logdock.h"
#include "gui/common/recordform.h"
#include "gui/common/recordviews/recordview.h"
#include "gui/frame/abouttext.h"
#include "util/timeformat.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFont>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QSettings>

namespace {

constexpr int settleTime = 500;                          // ms
constexpr std::int64_t firstTicksPerPixel = 100'000'000; // 10 s
constexpr int firstOriginPixel = 10;

} // namespace

MainWindowBase::MainWindowBase(QWidget *parent) : QMainWindow(parent), m_logger(QStringLiteral("gui"))
{
    QFont::insertSubstitutions(QStringLiteral("Monospace"),
                               {QStringLiteral("Consolas"), QStringLiteral("Lucida Console")});
    setObjectName(QStringLiteral("MainWindow"));
    setDockNestingEnabled(true);
    setCorners();

    // Before all else, so that everything that follows can log.
    m_logDock = new LogDock(this);
    connect(new LogBox(this), &LogBox::newEntry, this, &MainWindowBase::addLogEntry);

    m_uiInfo = std::make_shared<UiInfo>();
    m_browser = new Tsb::TimeSeriesBrowser(m_uiInfo, this);
    setCentralWidget(m_browser);
    connect(m_browser, &Tsb::TimeSeriesBrowser::recordChosen, this, &MainWindowBase::showRecord);
    connect(m_browser->timeView(), &Tsb::TimeView::doubleClicked, this, &MainWindowBase::fitTimescale);
    setupShortcuts();
    new FocusReturn(this);
}

MainWindowBase::~MainWindowBase() = default;

void MainWindowBase::setAboutInfo(const QString &name, const QString &description)
{
    m_appName = name;
    m_aboutText = aboutText(name, description);
}

void MainWindowBase::setSettings(std::unique_ptr<QSettings> settings)
{
    m_settings = std::move(settings);
}

std::shared_ptr<Datastore> MainWindowBase::currentDatastoreFor(int)
{
    return nullptr;
}

void MainWindowBase::addLogEntry(Log::Entry entry)
{
    m_logDock->addEntry(entry);
}

void MainWindowBase::showAboutBox()
{
    QMessageBox::about(this, tr("About %1").arg(m_appName), m_aboutText);
}

void MainWindowBase::closeEvent(QCloseEvent *event)
{
    storeMainWindowState();
    QCoreApplication::processEvents(QEventLoop::AllEvents, settleTime); // queued work may settle
    event->accept();
}

// ---- the shown record

void MainWindowBase::showRecord(std::shared_ptr<Record> record)
{
    if (!m_followLastGuard)
        implicitDisableFollowLast();
    if (takeShownRecord(record))
        m_browser->selectRecord(record);
}

/// False for the one that is shown already.
bool MainWindowBase::takeShownRecord(const std::shared_ptr<Record> &record)
{
    if (record == m_shownRecord)
        return false;
    if (record && (!m_shownRecord || record->beginUtcOffset != m_shownRecord->beginUtcOffset))
        m_browser->timeView()->setTimeOffset(record->beginUtcOffset);
    m_shownRecord = record; // before the browser hears of it: its answer comes back here
    queueViewUpdate();
    return true;
}

void MainWindowBase::queueViewUpdate()
{
    if (m_viewUpdateQueued)
        return;
    m_viewUpdateQueued = true;
    QMetaObject::invokeMethod(this, &MainWindowBase::updateRecordViewsNow, Qt::QueuedConnection);
}

void MainWindowBase::updateRecordViewsNow()
{
    if (m_recordForm)
        m_recordForm->showRecord(m_shownRecord);
    // Without a record the views keep the last one.
    if (m_shownRecord && !m_shownRecord->interim)
        for (RecordViews::RecordView *view : qAsConst(m_recordViews))
            view->showRecord(m_shownRecord);
    m_viewUpdateQueued = false;
}

void MainWindowBase::showRecordDelayed(std::shared_ptr<Record> record)
{
    if (record != m_delayedRecord) {
        m_delayedRecord = std::move(record);
        QMetaObject::invokeMethod(this, &MainWindowBase::updateShownRecord, Qt::QueuedConnection);
    } else if (record && record != m_shownRecord) {
        m_logger.log(Log::Debug, QStringLiteral("skipped record show %1").arg(timeToString(record->beginTime)));
    }
}

void MainWindowBase::updateShownRecord()
{
    showRecord(m_delayedRecord);
}

void MainWindowBase::jumpRecord(JumpCmd command)
{
    if (!m_datastore || !m_shownRecord)
        return;
    std::shared_ptr<Record> found;
    switch (command) {
    case NextRecord:
        found = m_datastore->neighbour(m_shownRecord, 1);
        break;
    case PreviousRecord:
        found = m_datastore->neighbour(m_shownRecord, -1);
        break;
    case NextRecordOfMode:
        found = m_datastore->neighbourWithOpmode(m_shownRecord, 1, m_shownRecord->opmode);
        break;
    case PreviousRecordOfMode:
        found = m_datastore->neighbourWithOpmode(m_shownRecord, -1, m_shownRecord->opmode);
        break;
    }
    // The shown record itself is how the store says that there is none: it must not end following.
    if (found && found != m_shownRecord)
        showRecord(found);
}

// ---- following the latest record

bool MainWindowBase::isFollowingLast() const
{
    return m_actions.followLast && m_actions.followLast->isChecked();
}

void MainWindowBase::setFollowLast(bool on)
{
    const QScopedValueRollback<bool> guard(m_followLastGuard, true);
    if (!on)
        return;
    if (m_lastRecord)
        showRecord(m_lastRecord);
    else if (m_datastore && !m_datastore->isEmpty())
        showRecord(m_datastore->records().back()); // nothing came in since the data were opened
}

void MainWindowBase::implicitDisableFollowLast()
{
    if (m_actions.followLast)
        m_actions.followLast->setChecked(false);
}

DpVariant MainWindowBase::variantOf(const Record &record) const
{
    const auto metadata = m_uiInfo->metadata();
    if (!metadata || record.dpVariantId < 0 || record.dpVariantId >= metadata->dpVariants.size())
        return {};
    return metadata->dpVariants[record.dpVariantId];
}

bool MainWindowBase::isOffset(const Record &record) const
{
    const auto metadata = m_uiInfo->metadata();
    return metadata && record.opmode >= 0 && record.opmode < metadata->opmodes.size() &&
           metadata->opmodes[record.opmode].isOffset;
}

void MainWindowBase::followRecord(const std::shared_ptr<Record> &record)
{
    if (takeShownRecord(record))
        m_browser->followRecord(record);
}

void MainWindowBase::recordCameIn(const std::shared_ptr<Record> &record, bool following)
{
    const DpVariant variant = variantOf(*record);
    if (variant.skipOffsets && isOffset(*record))
        return;
    // A shown record whose spectra are still being replaced holds its follower back, until the next one comes.
    const bool heldBack = !variant.followAtOnce && m_spectraPending && m_shownRecord == m_lastRecord;
    if (!variant.followAtOnce && !heldBack)
        m_spectraPending = false;
    if (following && !heldBack)
        followRecord(record);
    m_lastRecord = record;
}

void MainWindowBase::recordUpdated(int, std::shared_ptr<Record> record, int flags)
{
    const bool following = isFollowingLast();
    const QScopedValueRollback<bool> guard(m_followLastGuard, true);
    if (flags & RecordCameIn) {
        recordCameIn(record, following);
        return;
    }
    if ((flags & SpectraChanged) && m_spectraPending && record == m_lastRecord) {
        if (following)
            followRecord(record);
        return;
    }
    if (record != m_shownRecord)
        return;
    if (flags & SpectraChanged)
        m_spectraPending = true;
    queueViewUpdate(); // the shown record has changed under the views' feet
}

// ---- the data

void MainWindowBase::forgetRecords()
{
    {
        const QScopedValueRollback<bool> guard(m_followLastGuard, true);
        showRecord(nullptr);
    }
    m_delayedRecord.reset();
    m_lastRecord.reset();
    m_spectraPending = false;
    // At once: their slots have no meaning under the next description.
    if (m_recordForm)
        m_recordForm->showRecord(nullptr);
    for (RecordViews::RecordView *view : qAsConst(m_recordViews))
        view->showRecord(nullptr);
}

void MainWindowBase::setDatastore(std::shared_ptr<Datastore> store)
{
    if (store == m_datastore)
        return;
    forgetRecords();
    if (m_datastore)
        disconnect(m_datastore.get(), nullptr, this, nullptr);
    const bool isFirst = !m_datastore;
    const std::shared_ptr<Datastore> former = std::exchange(m_datastore, std::move(store)); // outlives its views
    m_browser->setDatastore(m_datastore.get());
    setFollowLast(isFollowingLast()); // only a move of the user ends that
    m_browser->timeView()->navigator()->forgetViews();
    if (!m_datastore)
        return;
    if (!m_datastore->isEmpty()) {
        Tsb::TimeView *timeView = m_browser->timeView();
        if (isFirst)
            timeView->setTimeScale(TimeScale(m_datastore->at(0)->beginTime, firstTicksPerPixel, firstOriginPixel));
        timeView->setTimeOffset(m_datastore->records().back()->beginUtcOffset);
    }
    connect(m_datastore.get(), &Datastore::updated, this, &MainWindowBase::recordUpdated, Qt::DirectConnection);
}

void MainWindowBase::fitTimescale()
{
    if (!m_datastore || m_datastore->isEmpty())
        return;
    m_browser->fitTimescale(m_datastore->at(0)->beginTime, effectiveEnd(*m_datastore->records().back()));
}

void MainWindowBase::showGoToTime()
{
    auto *const dialog =
        new Tsb::GoToTimeDialog(m_browser->timeView()->navigator(), m_browser->timeView()->timeOffset(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindowBase::updatePreviousView()
{
    m_actions.previousView->setEnabled(m_browser->isEnabled() && m_browser->timeView()->navigator()->hasPreviousView());
}

void MainWindowBase::clearWindowSetup()
{
    m_browser->closeAllViews();
}

void MainWindowBase::setBrowsingEnabled(bool on)
{
    m_actions.followLast->setEnabled(on);
    m_actions.goToTime->setEnabled(on);
    m_browser->setEnabled(on);
    updatePreviousView();
}

void MainWindowBase::showInversionStats()
{
    const Datastore none;
    m_logger.log(Log::Info, InversionStatistics::report(m_datastore ? *m_datastore : none));
}
