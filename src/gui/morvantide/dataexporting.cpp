#include "gui/morvantide/dataexporting.h"

#include "axis/timenavigator.h"
#include "dataexport/exportnaming.h"
#include "dataexport/exporttable.h"
#include "dataexport/exporttargets.h"
#include "gui/browser/controls/plaintooltip.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/complainttext.h"
#include "gui/common/dataexport/plotfields.h"
#include "log/logger.h"

#include <QDir>
#include <QFileInfo>
#include <QProgressDialog>
#include <QScopedValueRollback>
#include <QSettings>
#include <QThread>

#include <algorithm>
#include <iterator>

namespace {

const QString setupPathKey = QStringLiteral("export_setup_path");
constexpr int shownFiles = 5;

const Log::Logger &logger()
{
    static const Log::Logger instance(QStringLiteral("dataexport"));
    return instance;
}

} // namespace

DataExporting::DataExporting(const std::shared_ptr<UiInfo> &uiInfo, Tsb::TimeSeriesBrowser *browser, QWidget *window)
    : m_window(window), m_browser(browser)
{
    m_source.uiInfo = uiInfo;
    m_source.visibleSpan = [browser] {
        const TimeScale scale = browser->timeScale();
        return std::make_pair(scale.tickAt(0), scale.tickAt(browser->timeView()->contentsRect().width()));
    };
}

DataExporting::~DataExporting() = default;

void DataExporting::setData(std::shared_ptr<Datastore> store, const QString &folder, const QStringList &files)
{
    m_source.store = std::move(store);
    m_source.folder = folder;
    m_source.files = files;
}

void DataExporting::closeData(QSettings &settings, bool isReadAgain)
{
    stop();
    m_source.store.reset();
    m_openPlace.clear();
    if (!isReadAgain)
        m_state.reset();
    else if (m_dialog)
        m_state = m_dialog->state();
    if (!m_dialog)
        return;
    if (isReadAgain && m_dialog->isVisible())
        m_openPlace = m_dialog->saveGeometry();
    settings.setValue(setupPathKey, m_dialog->setupPath());
    for (QDialog *question : m_dialog->findChildren<QDialog *>())
        question->reject();
    m_dialog->hide();
    if (m_isRunning)
        m_retiredDialog = m_dialog;
    else
        m_dialog->deleteLater(); // its file dialog may be about to end
    m_dialog.clear();
}

void DataExporting::stop()
{
    m_isStopped = true;
    if (m_box)
        m_box->reject();
}

// ---- the dialog

void DataExporting::showDialog(const QSettings &settings)
{
    if (!makeDialog(settings))
        return;
    m_dialog->show();
    m_dialog->activateWindow();
}

void DataExporting::showAgain(const QSettings &settings)
{
    const QByteArray place = std::exchange(m_openPlace, {});
    if (place.isNull() || !makeDialog(settings))
        return;
    m_dialog->restoreGeometry(place);
    m_dialog->setAttribute(Qt::WA_ShowWithoutActivating); // somebody may be typing elsewhere
    m_dialog->show();
}

bool DataExporting::makeDialog(const QSettings &settings)
{
    if (!m_source.store || m_isRunning)
        return false;
    if (m_dialog)
        m_state = m_dialog->state();
    delete m_dialog;
    m_dialog = new DataExportDialog(m_source, m_window);
    if (m_state) {
        m_dialog->setState(*m_state);
    } else {
        const QString path = settings.value(setupPathKey).toString();
        m_dialog->setSetupPath(path);
        const QString reason = QFileInfo::exists(path) ? m_dialog->load(path) : QString();
        if (!reason.isNull())
            logger().log(Log::Warning, QStringLiteral("Failed to open file %1. %2").arg(path, reason));
    }
    // Queued: the dialog may go while the export runs.
    connect(m_dialog, &DataExportDialog::requestExport, this, &DataExporting::requestExport, Qt::QueuedConnection);
    connect(m_dialog, &DataExportDialog::requestPlotFields, this, &DataExporting::giveExportTsbSetup);
    connect(m_browser->timeView()->navigator(), &Tsb::TimeNavigator::timeScaleChanged, m_dialog,
            &DataExportDialog::spanChanged);
    // Keys go to it, and behind it to the window, also where no window manager sees to that.
    connect(m_dialog, &QDialog::finished, m_window, &QWidget::activateWindow);
    return true;
}

void DataExporting::showDialogFor(const ExportSource::Span &span, const QSettings &settings)
{
    showDialog(settings);
    if (m_dialog && !m_isRunning)
        m_dialog->setMarkedSpan(span);
}

void DataExporting::giveExportTsbSetup()
{
    QStringList spectra;
    for (const auto &info : m_source.uiInfo->spectrumInfos())
        spectra << info->hash;
    QStringList errors;
    const QVariantList fields = plotFields(m_browser->setup(), spectra, &errors);
    DataExport::logErrors(errors);
    if (!m_dialog)
        return;
    m_dialog->addFields(fields);
    QStringList shown;
    std::transform(errors.begin(), errors.end(), std::back_inserter(shown), complaintText);
    if (!shown.isEmpty())
        showResult(shown.join(QLatin1Char('\n')));
    else if (fields.isEmpty())
        showResult(tr("No plot shows a concentration that can be exported."));
}

QWidget *DataExporting::window() const
{
    return m_dialog ? m_dialog.data() : m_window;
}

QMessageBox::StandardButton DataExporting::ask(QMessageBox &box)
{
    box.setTextFormat(Qt::PlainText); // it repeats names of files
    m_box = &box;
    return QMessageBox::StandardButton(box.exec());
}

void DataExporting::showResult(const QString &text)
{
    if (m_dialog)
        m_dialog->showResult(text);
}

void DataExporting::tell(const QString &text)
{
    QMessageBox box(QMessageBox::Warning, tr("Data export"), text, QMessageBox::Ok, window());
    ask(box);
}

// ---- the export

void DataExporting::requestExport(const QVariantMap &setup)
{
    if (!m_source.store) {
        logger().log(Log::Warning, QStringLiteral("Export: no data available!"));
        return;
    }
    if (m_isRunning)
        return;
    const QScopedValueRollback<bool> running(m_isRunning, true);
    m_isStopped = false;
    showResult(QString()); // that of the export before would be taken for this one's
    try {
        exportAs(m_source.setupOf(setup, setupPath()));
    } catch (const DataExport::SetupError &error) {
        tell(complaintText(error.message()));
    }
    if (m_retiredDialog)
        m_retiredDialog->deleteLater();
}

void DataExporting::exportAs(const DataExport::ExportSetup &setup)
{
    const QString fault = DataExport::ExportNaming(setup.general, nullptr).fault();
    if (!fault.isNull())
        return tell(complaintText(fault));
    const auto places = m_source.places(m_dialog ? m_dialog->timeSpan() : std::nullopt);
    if (places.first == places.second)
        return tell(tr("Nothing to export: no record is in the time span."));
    const DataExport::ExportData data = m_source.dataOf(places);
    const DataExport::ExportTable table(setup, data);
    DataExport::logErrors(setup.errors + table.errors());
    if (table.lacksSpectra())
        return tell(tr("Nothing to export: none of the setup's spectra is in memory."));
    // A list of its own: spectra come into the store meanwhile, and it may be closed.
    Datastore::Records records;
    for (int place = places.first; place < places.second; ++place)
        if (table.takes(*m_source.store->at(place)))
            records.push_back(m_source.store->at(place));
    if (records.empty())
        return tell(tr("Nothing to export: no record is of the setup's modes."));
    const QStringList targets = DataExport::exportTargets(setup.general, table, data.metadata, records);
    const QString reason = refusal(targets);
    if (!reason.isNull())
        return tell(complaintText(reason));
    const QStringList existing = DataExport::existingOf(targets);
    if (!existing.isEmpty() && !mayReplace(existing))
        return;

    const auto fate = existing.isEmpty() ? ExistingFile::Kept : ExistingFile::Replaced;
    DataExport::DataExporter exporter(setup, table, data.metadata, fate);
    if (addRecords(exporter, records))
        return tellEnd(exporter.finish(), targets);
    logger().log(Log::Info, QStringLiteral("Export was cancelled by user."));
    showResult(tr("Export was cancelled by user."));
}

QString DataExporting::refusal(const QStringList &targets) const
{
    QStringList files{setupPath()};
    for (const QString &file : m_source.files)
        files << QDir(m_source.folder).filePath(file);
    const QString reason = DataExport::refusalOf(targets, files);
    const auto folder =
        std::find_if(targets.begin(), targets.end(), [](const QString &path) { return QFileInfo(path).isDir(); });
    return reason.isNull() && folder != targets.end() ? tr("\"%1\" is a folder.").arg(*folder) : reason;
}

bool DataExporting::mayReplace(const QStringList &existing)
{
    QStringList names = existing.mid(0, shownFiles);
    for (QString &name : names)
        name = QDir::toNativeSeparators(name);
    if (existing.size() > shownFiles)
        names << tr("and %1 more").arg(existing.size() - shownFiles);
    QMessageBox box(QMessageBox::Question, tr("Data export"),
                    existing.size() == 1 ? tr("A file exists. Replace it?") : tr("Files exist. Replace them?"),
                    QMessageBox::Yes | QMessageBox::Cancel, window());
    box.setInformativeText(Tsb::plainToolTip(names.join(QLatin1Char('\n'))));
    box.setDefaultButton(QMessageBox::Cancel);
    return ask(box) == QMessageBox::Yes && !m_isStopped;
}

/// False if it was cancelled.
bool DataExporting::addRecords(DataExport::DataExporter &exporter, const Datastore::Records &records)
{
    QProgressDialog progress(tr("Exporting records"), tr("Cancel"), 0, int(records.size()), window());
    progress.setWindowTitle(tr("Exporting records"));
    progress.setWindowModality(Qt::WindowModal); // only so it runs the event loop
    progress.setMinimumDuration(0);
    connect(&progress, &QDialog::rejected, &progress, &QProgressDialog::cancel); // hiding is no end
    // Spectra may come in while the event loop runs: no other thread reads the records then.
    return exporter.addRecords(records, QThread::idealThreadCount(), [this, &progress](int done) {
        progress.setValue(done);
        return !progress.wasCanceled() && !m_isStopped;
    });
}

void DataExporting::tellEnd(const DataExport::DataExporter::Result &result, const QStringList &targets)
{
    logger().log(Log::Info, DataExport::resultText(result, targets));
    const int rows = int(result.rows);
    showResult(targets.size() == 1 ? tr("%n rows written to \"%1\"", nullptr, rows).arg(targets.first())
                                   : tr("%n rows written to %1 files in \"%2\"", nullptr, rows)
                                         .arg(QString::number(result.files), QFileInfo(targets.first()).path()));
    if (result.lost > 0)
        tell(tr("%n rows could not be written.\nThe log tells why.", nullptr, int(result.lost)));
    else if (!result.lasts)
        tell(tr("The files stand, but might be lost in a power failure.\nThe log tells why."));
}
