// The commands that keep the result: saving the records as day files, and telling spectra apart.

#include "gui/common/iconhelp.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "gui/morvantide/morvantideinfowindow.h"

#include <QAction>
#include <QSettings>

namespace {

const QString saveFolderKey = QStringLiteral("datasaver/folder");

} // namespace

void MorvantideMainWindow::setupKeepingActions()
{
    m_saveAction = new QAction(namedIcon(QStringLiteral("save-data")), tr("Save data..."), this);
    m_infoAction = new QAction(namedIcon(QStringLiteral("measurement-info")), tr("Spectra info"), this);
    m_infoAction->setIconText(tr("Spectra"));
    connect(m_saveAction, &QAction::triggered, this, &MorvantideMainWindow::saveData);
    connect(m_infoAction, &QAction::triggered, this, &MorvantideMainWindow::showInfoWindow);
    updateKeepingActions();
    m_infoAction->setEnabled(true); // until data were closed: only then it has lost what it told of
}

void MorvantideMainWindow::updateKeepingActions()
{
    m_saveAction->setEnabled(m_store != nullptr);
    m_infoAction->setEnabled(m_store != nullptr);
    const QString readVariant = m_request.variant.isEmpty() ? QStringLiteral("unknown") : m_request.variant;
    m_saveVariant = QStringLiteral("%1-reinv").arg(readVariant);
}

/// In the order of the columns: spectra that were read as they were met, then new ones as their inverters were loaded.
Spectrometer::SpectraByMode MorvantideMainWindow::spectraToSave() const
{
    auto spectra = Spectrometer::spectraByMode(*m_store, *uiInfo()->metadata(), uiInfo()->spectrumInfos().toVector());
    for (auto &ofMode : spectra)
        for (auto &info : ofMode)
            info = uiInfo()->commented(info);
    return spectra;
}

void MorvantideMainWindow::saveData()
{
    if (!m_store || m_saver)
        return;
    DataSaverDialog dialog({m_store, uiInfo()->metadata(), spectraToSave()}, *uiInfo(),
                           settings()->value(saveFolderKey).toString(), this);
    m_saver = &dialog;
    dialog.setVariant(m_saveVariant);
    dialog.setReinverting(isReinverting());
    connect(&m_reinversion, &Reinversion::finished, &dialog, [&dialog] { dialog.setReinverting(false); });
    dialog.exec();
    m_saveVariant = dialog.variant();
    settings()->setValue(saveFolderKey, dialog.folder());
}

void MorvantideMainWindow::showInfoWindow()
{
    if (m_infoWindow)
        m_infoWindow->close();
    delete m_infoWindow;
    m_infoWindow = new MorvantideInfoWindow(uiInfo(), this);
    m_infoWindow->setRecordsText([this](UiInfo::InfoKey spectrum) { return recordsText(spectrum); });
    connect(m_infoWindow, &MorvantideInfoWindow::requestSpectrumRemove, this, &MorvantideMainWindow::removeSpectrum);
    m_infoWindow->show();
}

QString MorvantideMainWindow::recordsText(UiInfo::InfoKey spectrum) const
{
    const auto series = m_store ? m_store->series(spectrum) : nullptr;
    return tr("%1 of %2 records have this spectrum")
        .arg(QString::number(series ? series->size() : 0), QString::number(m_store ? m_store->size() : 0));
}
