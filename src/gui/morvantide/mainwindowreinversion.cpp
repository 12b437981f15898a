// The commands of the menu "Spectra" that make spectra anew and discard them.

#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/iconhelp.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "spectra/inverterchoice.h"
#include "spectra/inverterfiles.h"

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>

#include <algorithm>

namespace {

const QString inverterPathKey = QStringLiteral("lastreinvpath");

/// The user took the wish back: nothing more is said.
struct ReinversionAborted {};
/// What went wrong is in the log already.
struct ReinversionFailed {};

} // namespace

void MorvantideMainWindow::setupSpectraMenu()
{
    m_reinvertAction = new QAction(namedIcon(QStringLiteral("reinvert")), tr("Reinvert..."), this);
    m_cancelReinvertAction = new QAction(tr("Cancel reinversion"), this);
    connect(m_reinvertAction, &QAction::triggered, this, &MorvantideMainWindow::reinvert);
    connect(m_cancelReinvertAction, &QAction::triggered, this, &MorvantideMainWindow::cancelReinvert);
    connect(&m_inverterLoader, &InverterLoader::finished, this, &MorvantideMainWindow::invertersLoaded);
    connect(&m_reinversion, &Reinversion::finished, this, &MorvantideMainWindow::reinversionFinished);
    connect(&m_reinversion, &Reinversion::queueStatus, this, &MorvantideMainWindow::inversionQueueStatus);
    updateReinversionActions();

    m_spectraMenu = new QMenu(tr("Spectra"), this);
    m_spectraMenu->addActions({m_reinvertAction, m_cancelReinvertAction, actions().inversionStats});
    menuBar()->insertMenu(viewMenu()->menuAction(), m_spectraMenu);

    m_queueStatusLabel = new QLabel(this);
    m_queueStatusLabel->setObjectName(QStringLiteral("queueStatusLabel"));
    m_queueStatusLabel->setMinimumWidth(m_queueStatusLabel->fontMetrics().horizontalAdvance(tr("0000 records/s")));
    m_queueStatusLabel->setToolTip(tr("Data inversion rate in records per second\n"
                                      "(optionally also inversion queue length)"));
    statusBar()->addPermanentWidget(m_queueStatusLabel);
}

void MorvantideMainWindow::updateReinversionActions()
{
    m_reinvertAction->setEnabled(m_store != nullptr); // during a run too: it asks then
    m_cancelReinvertAction->setEnabled(isReinverting());
}

// ---- starting

void MorvantideMainWindow::reinvert()
{
    if (!m_store) {
        logger().log(Log::Warning, QStringLiteral("No data to invert!"));
        return;
    }
    if (m_inverterLoader.isLoading())
        return; // its dialog stands before the window
    if (isReinverting()) {
        QMessageBox question(QMessageBox::Question, QStringLiteral("Morvantide"),
                             tr("An inversion already in progress."), QMessageBox::Abort | QMessageBox::Cancel, this);
        question.setInformativeText(tr("Do you want to abort the current inversion?"));
        question.setDefaultButton(QMessageBox::Cancel);
        if (question.exec() == QMessageBox::Abort)
            cancelReinvert();
        return;
    }
    try {
        m_inverterLoader.start(askForInverterFiles());
    } catch (const ReinversionAborted &) {
    }
}

void MorvantideMainWindow::invertersLoaded(const InverterLoader::Result &result)
{
    try {
        const SpectMath::InverterList loaded = usable(result);
        if (loaded.empty()) {
            logger().log(Log::Warning, QStringLiteral("No inverters!"));
            return;
        }
        startReinversion(takeIntoUse(loaded));
        ++m_reinversionCount;
    } catch (const ReinversionAborted &) {
    } catch (const ReinversionFailed &) {
        logger().log(Log::Error, QStringLiteral("Reinversion failed!"));
    }
}

QStringList MorvantideMainWindow::askForInverterFiles()
{
    QFileDialog dialog(this, tr("Open inverters"), settings()->value(inverterPathKey).toString(),
                       tr("Inverters (*.inverter *.sinv *.sinp *.invmap *.zip);;All files (*)"));
    dialog.setFileMode(QFileDialog::ExistingFiles);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        throw ReinversionAborted();
    const QStringList files = dialog.selectedFiles();
    settings()->setValue(inverterPathKey, QFileInfo(files.first()).absolutePath());
    return files;
}

SpectMath::InverterList MorvantideMainWindow::usable(const InverterLoader::Result &result) const
{
    if (result.cancelled)
        throw ReinversionAborted();
    SpectMath::tellLoadingErrors(logger(), result.errors, !result.inverters.empty());
    if (result.inverters.empty() && !result.errors.isEmpty())
        throw ReinversionFailed();
    return result.inverters;
}

/// Those of the loaded that are used. They take the place of spectra with the same hash, for that means that they are
/// the same inversion.
SpectMath::InverterList MorvantideMainWindow::takeIntoUse(const SpectMath::InverterList &loaded)
{
    const auto tellRemoval = [this](const QString &oldName, const QString &name) {
        logger().log(Log::Warning,
                     QStringLiteral("Removing existing spectrum '%1' with same hash as '%2'").arg(oldName, name));
    };
    const auto [used, replaced] = SpectMath::chooseInverters(loaded, m_store->records(), *uiInfo()->metadata());
    for (const SpectMath::InverterPointer &inverter : replaced)
        tellRemoval(inverter->info()->name, inverter->info()->name);
    const QString tag = QStringLiteral("reinv-%1").arg(m_reinversionCount + 1);
    std::vector<UiInfo::InfoPointer> removed; // views know them until the list is published
    for (const SpectMath::InverterPointer &inverter : used) {
        const UiInfo::InfoPointer &info = inverter->info();
        if (const UiInfo::InfoPointer old = uiInfo()->spectrumById(info->hash)) {
            tellRemoval(old->name, info->name);
            discard(old);
            removed.push_back(old);
        }
        uiInfo()->addSpectrum(info, tag);
    }
    m_inverters.insert(m_inverters.end(), used.begin(), used.end());
    Q_EMIT invertersChanged(m_inverters);
    uiInfo()->publish();
    return used;
}

void MorvantideMainWindow::startReinversion(const SpectMath::InverterList &inverters)
{
    if (isReinverting()) {
        logger().log(Log::Critical, QStringLiteral("Possible software bug: an inversion queue is already present."));
        return;
    }
    logger().log(Log::Info, QStringLiteral("Starting reinversion"));
    m_reinversion.start(m_store, uiInfo()->metadata(), inverters);
    updateReinversionActions();
}

// ---- while it runs, and its end

void MorvantideMainWindow::inversionQueueStatus(int length, int speed)
{
    m_queueStatusLabel->setText(
        length < 1 ? tr("%1 records/s").arg(speed)
                   : tr("%1 records/s (%2 in queue)").arg(QString::number(speed), QString::number(length)));
}

void MorvantideMainWindow::cancelReinvert()
{
    if (!isReinverting())
        return updateReinversionActions();
    const QString done = QString::number(m_reinversion.recordsDone());
    const QString count = QString::number(m_reinversion.recordCount());
    m_reinversion.cancel();
    logger().log(Log::Warning, QStringLiteral("Reinversion cancelled after %1 of %2 records").arg(done, count));
    reinversionFinished(); // which is said of a cancelled one too
}

void MorvantideMainWindow::reinversionFinished()
{
    logger().log(Log::Info, QStringLiteral("Reinversion finished!"));
    m_queueStatusLabel->clear();
    browser()->redrawPlots(); // gaps whose end wasn't there yet when their begin was drawn
    updateReinversionActions();
}

// ---- discarding

void MorvantideMainWindow::removeSpectrum(const SpectMath::SpectrumInfo *spectrumptr)
{
    if (m_ignoreRemovals)
        return;
    if (isReinverting()) {
        cancelReinvert();
        logger().log(Log::Error, QStringLiteral("Can't remove spectrum while reinversion in progress!"));
        // Who discards several asks for each; only another click means it.
        m_ignoreRemovals = true;
        QMetaObject::invokeMethod(
            this, [this] { m_ignoreRemovals = false; }, Qt::QueuedConnection);
        return;
    }
    const auto &known = uiInfo()->spectrumInfos();
    const auto found =
        std::find_if(known.begin(), known.end(), [spectrumptr](const auto &info) { return info.get() == spectrumptr; });
    if (found == known.end())
        return;
    const UiInfo::InfoPointer info = *found; // views know it until the list is published
    discard(info);
    Q_EMIT invertersChanged(m_inverters);
    uiInfo()->publish();
}

/// Takes a description, its spectra and its inverter out of use. The list of spectra is to be published then.
void MorvantideMainWindow::discard(const UiInfo::InfoPointer &info)
{
    logger().log(Log::Info, QStringLiteral("Removing spectrum '%1' from memory.").arg(info->name));
    browser()->setListening(false); // what shows the spectrum hears of it with the list
    m_discarded.take(m_store->removeSpectrum(info.get()));
    browser()->setListening(true);
    uiInfo()->removeSpectrum(info.get());
    const auto isGone = [this, &info](const SpectMath::InverterPointer &inverter) {
        if (inverter->info() != info)
            return false;
        logger().log(Log::Debug, QStringLiteral("removed from invmap"));
        return true;
    };
    m_inverters.erase(std::remove_if(m_inverters.begin(), m_inverters.end(), isGone), m_inverters.end());
}
