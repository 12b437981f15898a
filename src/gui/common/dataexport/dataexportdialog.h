#pragma once

#include "gui/common/dataexport/exportsource.h"

#include <QDialog>
#include <QTimer>
#include <QVariantMap>

#include <optional>
#include <vector>

class ExportPreview;
class ExportSetupTree;
class QLabel;

/// Puts a setup for exports together, keeps it in files, and asks for the export; what comes of it is shown below the
/// buttons. It stays open meanwhile, and after.
class DataExportDialog : public QDialog {
    Q_OBJECT
public:
    /// All that the user has chosen.
    struct State {
        QVariantMap setup;
        int timeSpan = 0; ///< a GeneralExportSettingsForm::TimeSpan
        std::optional<ExportSource::Span> markedSpan;
        QString setupPath; ///< of the setup file that was loaded or saved last
        QByteArray geometry;
    };

    explicit DataExportDialog(ExportSource source, QWidget *parent = nullptr);
    ~DataExportDialog() override;

    /// The tree of the setup, as a file holds it.
    QVariantMap setup() const;
    void setSetup(const QVariantMap &setup);
    State state() const;
    void setState(const State &state);
    /// The time span whose records alone are meant; none for all records.
    std::optional<ExportSource::Span> timeSpan() const;
    /// Chooses a span that was marked on the time axis or measured, and offers it from then on.
    void setMarkedSpan(const ExportSource::Span &span);
    const QString &setupPath() const { return m_setupPath; }
    void setSetupPath(const QString &path);
    /// Takes the setup of a file. The result is null, or the reason why nothing has changed.
    QString load(const QString &path);
    /// The result is null, or the reason why the file is as it was.
    QString save(const QString &path);

public Q_SLOTS:
    void addFields(const QVariantList &fields);
    /// The time axis shows another span.
    void spanChanged();
    /// What became of an export; nothing for an empty text.
    void showResult(const QString &text);
    /// Asks for a file.
    void saveSetup();
    void loadSetup();

Q_SIGNALS:
    void requestExport(const QVariantMap &setup);
    /// For fields like the plots of the browser; addFields() takes them.
    void requestPlotFields();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLayout *makeButtons();
    void putLastInTabOrder();
    void widenForPages();
    QString askForSetupFile(bool toSave);
    void offerMarkedSpan();
    void setupChanged();
    void showPreview();
    void tell(const QString &text, const QString &reason);

    const ExportSource m_source;
    QString m_setupPath;
    std::optional<ExportSource::Span> m_markedSpan;
    ExportSetupTree *m_tree;
    ExportPreview *m_preview;
    QLabel *m_result;
    std::vector<QWidget *> m_lastWidgets; ///< below the pages
    QTimer m_previewTimer;                ///< runs out behind the last of some changes
};
