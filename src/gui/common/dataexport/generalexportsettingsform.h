#pragma once

#include "gui/common/dataexport/exportfieldform.h"
#include "gui/common/uiinfo.h"

#include <QWidget>

#include <memory>

class DataComboBox;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;

/// Edits the map "general" of a setup, and the choice of a time span, which belongs to the window and stands in no
/// setup.
class GeneralExportSettingsForm : public QWidget, public ExportFieldForm {
    Q_OBJECT
public:
    explicit GeneralExportSettingsForm(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent = nullptr);

    QVariantMap settings() const override;
    void setSettings(const QVariantMap &settings) override;
    /// Where the search for an output file begins, and what a relative one is relative to.
    void setOutputFolder(const QString &folder) { m_outputFolder = folder; }
    enum TimeSpan { AllRecords, InSight, Marked };
    TimeSpan timeSpan() const;
    void setTimeSpan(TimeSpan span);
    /// Without this there is no marked span to choose.
    void offerMarkedSpan(const QString &text);

Q_SIGNALS:
    void changed();

private:
    QGroupBox *makeOutputBox();
    QGroupBox *makeFormatBox();
    QGroupBox *makeRecordsBox();
    void chooseOutputFile();
    void showNameEnding();
    void listModes();
    void chooseModes(const QStringList &modes);

    std::shared_ptr<const UiInfo> m_uiInfo;
    QString m_outputFolder;
    QLineEdit *m_outputFile;
    QLabel *m_nameEnding;
    QCheckBox *m_addDate;
    QCheckBox *m_addOpmode;
    DataComboBox *m_separator;
    QLineEdit *m_timeFormat;
    DataComboBox *m_timeZone;
    QCheckBox *m_commentLines;
    QComboBox *m_span;
    QComboBox *m_modes; ///< its data are lists of names
};
