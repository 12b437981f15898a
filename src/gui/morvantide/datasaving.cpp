#include "gui/morvantide/datasaving.h"

#include "gui/morvantide/invertersinuse.h"
#include "gui/morvantide/reinversion.h"

#include <QSettings>

namespace {

const QString folderKey = QStringLiteral("datasaver/folder");

} // namespace

DataSaving::DataSaving(std::shared_ptr<UiInfo> uiInfo, const Reinversion &reinversion,
                       const InvertersInUse &inverters, QWidget *window)
    : m_uiInfo(std::move(uiInfo)), m_reinversion(reinversion), m_inverters(inverters), m_window(window)
{
}

void DataSaving::setReadVariant(const QString &variant)
{
    m_variant = QStringLiteral("%1-reinv").arg(variant.isEmpty() ? QStringLiteral("unknown") : variant);
}

bool DataSaving::areSpectraMissing() const
{
    return m_reinversion.isRunning() || m_inverters.isBehind();
}

/// In the order of the columns: spectra that were read as they were met, then new ones as their inverters were loaded.
Spectrometer::SpectraByMode DataSaving::spectraOf(const Datastore &store) const
{
    auto spectra = Spectrometer::spectraByMode(store, *m_uiInfo->metadata(), m_uiInfo->spectrumInfos().toVector());
    for (auto &ofMode : spectra)
        for (auto &info : ofMode)
            info = m_uiInfo->commented(info);
    return spectra;
}

void DataSaving::run(const std::shared_ptr<Datastore> &store, QSettings &settings)
{
    if (!store || m_dialog)
        return;
    DataSaverDialog dialog({store, m_uiInfo->metadata(), spectraOf(*store)}, *m_uiInfo,
                           settings.value(folderKey).toString(), m_window);
    m_dialog = &dialog;
    dialog.setVariant(m_variant);
    const auto showWhetherReinverting = [this, &dialog] { dialog.setReinverting(areSpectraMissing()); };
    showWhetherReinverting();
    QObject::connect(&m_reinversion, &Reinversion::finished, &dialog, showWhetherReinverting);
    QObject::connect(&m_inverters, &InvertersInUse::caughtUp, &dialog, showWhetherReinverting);
    dialog.exec();
    m_variant = dialog.variant();
    settings.setValue(folderKey, dialog.folder());
}

void DataSaving::stop()
{
    if (m_dialog)
        m_dialog->reject();
}
