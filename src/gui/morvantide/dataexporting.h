#pragma once

#include "dataexport/dataexporter.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/common/dataexport/exportsource.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>

class QSettings;

namespace Tsb {
class TimeSeriesBrowser;
}

/// Owns the export dialog and the export that it asks for. As long as the data are open the dialog comes back as it was
/// left. The window is kept waiting by an export, with a modal dialog that shows its progress; the event loop runs
/// meanwhile, so that spectra may come in, and data may be closed. Main thread only.
class DataExporting : public QObject {
    Q_OBJECT
public:
    /// All outlive it. Dialogs stand before the window.
    DataExporting(const std::shared_ptr<UiInfo> &uiInfo, Tsb::TimeSeriesBrowser *browser, QWidget *window);
    ~DataExporting() override;

    /// Other data, in that folder; the files are names in it, or whole paths.
    void setData(std::shared_ptr<Datastore> store, const QString &folder, const QStringList &files);
    /// Ends an export, closes the dialog and keeps the path of its setup. Where the data are only read again, the
    /// dialog comes back by showAgain().
    void closeData(QSettings &settings, bool isReadAgain);
    void showAgain(const QSettings &settings);
    /// Makes the dialog anew and shows it.
    void showDialog(const QSettings &settings);
    /// The same with the records of that span chosen.
    void showDialogFor(const ExportSource::Span &span, const QSettings &settings);
    bool isRunning() const { return m_isRunning; }
    /// Ends the export that is under way.
    void stop();

public Q_SLOTS:
    /// Comes back when the export is done, or was given up.
    void requestExport(const QVariantMap &setup);
    /// Gives the dialog fields like the concentrations that the browser plots.
    void giveExportTsbSetup();

private:
    bool makeDialog(const QSettings &settings);
    /// The one that questions stand before.
    QWidget *window() const;
    QString setupPath() const { return m_dialog ? m_dialog->setupPath() : QString(); }
    void exportAs(const DataExport::ExportSetup &setup);
    QString refusal(const QStringList &targets) const;
    bool mayReplace(const QStringList &existing);
    bool addRecords(DataExport::DataExporter &exporter, const Datastore::Records &records);
    void tellEnd(const DataExport::DataExporter::Result &result, const QStringList &targets);
    void showResult(const QString &text);
    void tell(const QString &text);
    QMessageBox::StandardButton ask(QMessageBox &box);

    QWidget *const m_window;
    Tsb::TimeSeriesBrowser *const m_browser;
    ExportSource m_source;
    QPointer<DataExportDialog> m_dialog;
    QPointer<DataExportDialog> m_retiredDialog;     ///< closed with its data while the export has a dialog before it
    std::optional<DataExportDialog::State> m_state; ///< of the dialog before
    QByteArray m_openPlace;                         ///< of a dialog that is to come back; null if none is
    QPointer<QMessageBox> m_box;                    ///< that is open
    bool m_isRunning = false;
    bool m_isStopped = false;
};
