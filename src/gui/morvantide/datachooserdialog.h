#pragma once

#include <QDialog>
#include <QTimer>
#include <QVariantMap>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QDialogButtonBox;
class QGroupBox;
class QRadioButton;
class OverviewLabel;

/// Asks for the data to read: a folder, its time span, and the averaging variant or the old-style files. A choice is a
/// map with "folderName", "beginTime" and "endTime" (QDateTime), "limitBegin", "limitEnd", "variant", "legacyFiles" and
/// "assumedOpmode", the mode of old-style records whose files tell none.
class DataChooserDialog : public QDialog {
    Q_OBJECT
public:
    explicit DataChooserDialog(QWidget *parent = nullptr);

    /// Fills the list of recent folders.
    void setOldPaths(const QStringList &paths);
    /// Sets the values that the map holds, and nothing else.
    void setChoice(const QVariantMap &choice);
    /// With all keys.
    QVariantMap choice() const;

private Q_SLOTS:
    void chooseFolder();
    void selectAllTimespan();
    void selectLast7Days();
    void selectLast30Days();
    /// Lists the variants that the folder holds.
    void listVariants();

private:
    QWidget *makeFolderRow();
    QGroupBox *makeTimespanBox();
    QGroupBox *makeKindBox();
    /// The mode of records whose files tell none, as a row of that box.
    QLayout *makeModeRow(QWidget *box);
    QDateTimeEdit *makeDateEdit(const QString &name);
    void setSpanOfDays(int days);
    void updateAcceptable();
    void updateOverview();

    QComboBox *m_folder = nullptr;
    QCheckBox *m_limitBegin = nullptr;
    QDateTimeEdit *m_beginTime = nullptr;
    QCheckBox *m_limitEnd = nullptr;
    QDateTimeEdit *m_endTime = nullptr;
    QRadioButton *m_averagingVariant = nullptr;
    QComboBox *m_variant = nullptr;
    QRadioButton *m_legacyFiles = nullptr;
    QComboBox *m_assumedOpmode = nullptr;
    OverviewLabel *m_overview = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    QTimer m_listTimer; ///< lets a name be typed before the folder is looked into
};
