#pragma once

#include "gui/common/uiinfo.h"
#include "gui/morvantide/datasaverdialog.h"

#include <QPointer>

#include <memory>

class InvertersInUse;
class QSettings;
class Reinversion;

/// Owns a save of the open data from its dialog to its end, and knows the next one's offer: the folder of the
/// last, and the averaging variant, as long as the data are open. Main thread only.
class DataSaving {
public:
    /// All outlive it. The dialog stands before the window.
    DataSaving(std::shared_ptr<UiInfo> uiInfo, const Reinversion &reinversion, const InvertersInUse &inverters,
               QWidget *window);

    /// Other data, of that averaging variant: the next save offers it with "-reinv"; "unknown" stands for none.
    void setReadVariant(const QString &variant);
    /// Comes back when the dialog is closed. One at a time.
    void run(const std::shared_ptr<Datastore> &store, QSettings &settings);
    bool isRunning() const { return !m_dialog.isNull(); }
    /// Ends the writing that is under way, or closes the dialog.
    void stop();

private:
    bool areSpectraMissing() const;
    Spectrometer::SpectraByMode spectraOf(const Datastore &store) const;

    const std::shared_ptr<UiInfo> m_uiInfo;
    const Reinversion &m_reinversion;
    const InvertersInUse &m_inverters;
    QWidget *const m_window;
    QString m_variant; ///< of the next save
    QPointer<DataSaverDialog> m_dialog;
};
