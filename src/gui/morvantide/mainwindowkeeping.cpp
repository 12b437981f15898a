// The commands that keep the result: saving the records as day files.

#include "gui/common/iconhelp.h"
#include "gui/morvantide/morvantide_mainwin.h"

#include <QAction>
#include <QSettings>

namespace {

const QString saveFolderKey = QStringLiteral("datasaver/folder");

} // namespace

void MorvantideMainWindow::setupKeepingActions()
{
    m_saveAction = new QAction(namedIcon(QStringLiteral("save-data")), tr("Save data..."), this);
    connect(m_saveAction, &QAction::triggered, this, &MorvantideMainWindow::saveData);
    updateKeepingActions();
}

void MorvantideMainWindow::updateKeepingActions()
{
    m_saveAction->setEnabled(m_store != nullptr);
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
    dialog.exec();
    m_saveVariant = dialog.variant();
    settings()->setValue(saveFolderKey, dialog.folder());
}
