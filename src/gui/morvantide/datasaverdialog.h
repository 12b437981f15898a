#pragma once

#include "datafiles/writing/recordwriting.h"
#include "gui/common/uiinfo.h"

#include <QDialog>

#include <memory>
#include <vector>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStandardItem;
class QStandardItemModel;
class QTreeView;

/// Writes the records of a store into day files: the user picks a folder and a name for the variant, and ticks the
/// files to write. It stays open after a save, for the next one. While it writes the window lives, and Esc or close
/// ends the writing, not the dialog.
class DataSaverDialog : public QDialog {
    Q_OBJECT
public:
    /// The data that can be saved.
    struct Content {
        std::shared_ptr<Datastore> store;
        std::shared_ptr<const Spectrometer::RecordMetadata> metadata;
        Spectrometer::SpectraByMode spectra; ///< with the comments that their files get
    };

    /// `names` has the names that the views show for the spectra.
    DataSaverDialog(Content content, const UiInfo &names, const QString &previousFolder, QWidget *parent = nullptr);
    ~DataSaverDialog() override;

    QString folder() const;
    QString variant() const;
    void setVariant(const QString &variant);
    bool isSaving() const { return m_saving; }

public Q_SLOTS:
    void chooseFolderClicked();
    void saveData();
    /// Warns of files that stand in the folder.
    void checkFolder(const QString &name);
    /// Whether spectra are still being made; that is warned of too.
    void setReinverting(bool on);
    void reject() override;

private:
    /// A spectrum that can be ticked.
    struct Choice {
        QString mode;
        SpectMath::SpectrumInfoPointer info;
        QStandardItem *item;
    };

    void fillTree(const UiInfo &names);
    QLayout *makeForm();
    void setSaving(bool on);
    Spectrometer::PlainFileOutput::Settings outputSettings() const;
    bool writeAll(Spectrometer::PlainFileOutput &output, int *done);

    Content m_content;
    std::vector<Choice> m_choices;
    QStandardItem *m_fullRecords = nullptr;
    QStandardItemModel *m_model;
    QLineEdit *m_folderEdit;
    QPushButton *m_chooseFolderButton;
    QLineEdit *m_variantEdit;
    QTreeView *m_tree;
    QLabel *m_problemLabel;
    QCheckBox *m_inversionVars;
    QProgressBar *m_progressBar;
    QDialogButtonBox *m_buttonBox;
    bool m_reinverting = false;
    bool m_saving = false;
    bool m_stopRequested = false;
};
