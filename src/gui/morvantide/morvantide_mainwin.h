#pragma once

#include "gui/frame/mainwindowbase.h"
#include "gui/morvantide/dataexporting.h"
#include "gui/morvantide/dataloader.h"
#include "gui/morvantide/datasaving.h"
#include "gui/morvantide/filechoices.h"
#include "gui/morvantide/inverterloader.h"
#include "gui/morvantide/invertersinuse.h"
#include "gui/morvantide/layoutkeeper.h"
#include "gui/morvantide/reinversion.h"

#include <QPointer>
#include <QVariantMap>

#include <functional>

class ColormapChoice;
class MorvantideInfoWindow;
class FollowCommand;
class OpenCommands;
class Rereading;
class ReinversionProgress;

/// The review window: the commands that open, close and reinvert data. The long work of a command has an owner of
/// its own.
class MorvantideMainWindow : public MainWindowBase {
    Q_OBJECT
public:
    /// Settings are kept beside the executable, or where the user's settings lie if that can't be.
    explicit MorvantideMainWindow(QWidget *parent = nullptr);
    explicit MorvantideMainWindow(const QString &settingsFile, QWidget *parent = nullptr);
    ~MorvantideMainWindow() override;

    /// The command line's words: a data folder and an averaging variant to offer, both optional. The offer is made once
    /// the event loop runs.
    void setPositionalArguments(const QStringList &arguments);

    /// The open data, for variant 0; null without.
    std::shared_ptr<Datastore> currentDatastoreFor(int dpVariantId) override;
    bool isReading() const { return m_loader.isReading(); }
    /// The folder that is open; a null text without.
    const QString &folderPath() const { return m_folderPath; }
    bool isReinverting() const { return m_reinversion.isRunning(); }
    /// The inverters in use, in the order of loading.
    const SpectMath::InverterList &inverters() const { return m_inverters.inverters(); }

public Q_SLOTS:
    void showDataDirChoice();
    /// Asks for a folder, starting from that choice if it isn't empty, else from the last one.
    void showDataDirChoice(const QVariantMap &newchoice);
    void showDataFileChoice();
    /// Reads the data again, with the days that have come since. The window stays as it is, and so do the data if
    /// nothing is read; spectra that were inverted here are inverted again.
    void readAgain();
    void closeData();
    void cancelFileReader();
    void fileReaderFinished(const DataLoader::Result &result);
    /// Asks for a folder and the choice of files, and writes day files.
    void saveData();
    /// Shows the dialog that puts tables together.
    void showExportData();
    /// The same for the records of a span.
    void showExportOfSpan(RecordTime begin, RecordTime end);
    /// Lists the spectra in memory in a window of its own; an earlier one goes.
    void showInfoWindow();
    /// Quits, on a wish from outside of the event loop.
    void terminateSignal();

    /// Asks for inverter files and inverts all records with them; while that goes on, asks whether to end it.
    void reinvert();
    /// No record is begun any more; results so far stay.
    void cancelReinvert();
    void reinversionFinished();
    void inversionQueueStatus(int length, int speed);
    /// Discards a spectrum of all records, and its inverter. During a reinversion it only cancels that.
    void removeSpectrum(const SpectMath::SpectrumInfo *spectrumptr);

Q_SIGNALS:
    void invertersChanged(const SpectMath::InverterList &inverters);

protected:
    void setupActions() override;
    void setupToolbar() override;
    void setupMenus() override;
    void storeMainWindowState() override;

private:
    void openFiles(const DataRequest &request);
    void startReading();
    /// Data that are read again bring something along; else null.
    void showData(const std::shared_ptr<FileReader> &reader, const Rereading *kept = nullptr);
    void showAgain(const DataLoader::Result &result);
    std::function<void()> backToTyping() const;
    void setTitle(bool incomplete);
    bool mayChangeRecords() const;

    // ---- keeping the result
    void setupKeepingActions();
    void updateKeepingActions();
    // ---- reinversion
    void setupSpectraMenu();
    void invertersLoaded(const InverterLoader::Result &result);
    /// Whether a reinversion can begin; says why not.
    bool mayReinvert();
    void startReinversion(const SpectMath::InverterList &inverters);
    void updateReinversionActions();

    std::unique_ptr<LayoutKeeper> m_layouts;
    ColormapChoice *m_colormap;
    DataLoader m_loader;
    DataRequest m_request; ///< of the open data or the read under way
    bool m_readsAgain = false;
    bool m_isIncomplete = false; ///< the read was cancelled
    QString m_folderPath;
    OpenCommands *m_open = nullptr;
    QAction *m_readAgainAction = nullptr;
    FollowCommand *m_follow = nullptr;

    QAction *m_exportAction = nullptr;
    QAction *m_saveAction = nullptr;
    QAction *m_infoAction = nullptr;
    QPointer<MorvantideInfoWindow> m_infoWindow;

    InverterLoader m_inverterLoader;
    Reinversion m_reinversion;
    InvertersInUse m_inverters;
    DataSaving m_saving;
    DataExporting m_exporting;
    QAction *m_reinvertAction = nullptr;
    QAction *m_cancelReinvertAction = nullptr;
    ReinversionProgress *m_reinversionProgress = nullptr;
};
