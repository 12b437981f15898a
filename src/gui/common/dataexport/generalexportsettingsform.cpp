#include "gui/common/dataexport/generalexportsettingsform.h"

#include "dataexport/exportsetup.h"
#include "gui/common/dataexport/datacombobox.h"
#include "gui/common/dataexport/setupmap.h"
#include "gui/common/filedialog.h"

#include <QCheckBox>
#include <QDir>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalBlocker>
#include <QToolButton>

GeneralExportSettingsForm::GeneralExportSettingsForm(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent)
    : QWidget(parent), m_uiInfo(std::move(uiInfo))
{
    auto *const layout = new QVBoxLayout(this);
    for (QGroupBox *box : {makeOutputBox(), makeFormatBox(), makeRecordsBox()})
        layout->addWidget(box);
    layout->addStretch();

    for (const QLineEdit *edit : {m_outputFile, m_timeFormat})
        connect(edit, &QLineEdit::textChanged, this, &GeneralExportSettingsForm::changed);
    for (const QCheckBox *box : {m_addDate, m_addOpmode, m_commentLines})
        connect(box, &QCheckBox::toggled, this, &GeneralExportSettingsForm::changed);
    for (const QComboBox *box : std::initializer_list<const QComboBox *>{m_separator, m_timeZone, m_span, m_modes})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &GeneralExportSettingsForm::changed);
    for (const QCheckBox *box : {m_addDate, m_addOpmode})
        connect(box, &QCheckBox::toggled, this, &GeneralExportSettingsForm::showNameEnding);
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &GeneralExportSettingsForm::listModes);
    listModes();
    setSettings({});
}

QGroupBox *GeneralExportSettingsForm::makeOutputBox()
{
    auto *const box = new QGroupBox(tr("Output"), this);
    m_outputFile = new QLineEdit(box);
    m_outputFile->setObjectName(QStringLiteral("outputFile"));
    m_nameEnding = new QLabel(box);
    m_nameEnding->setObjectName(QStringLiteral("nameEnding"));
    auto *const choose = new QToolButton(box);
    choose->setText(QStringLiteral("..."));
    choose->setToolTip(tr("Choose output file"));
    choose->setAccessibleName(choose->toolTip());
    connect(choose, &QToolButton::clicked, this, &GeneralExportSettingsForm::chooseOutputFile);
    m_addDate = new QCheckBox(tr("Add record date to name"), box);
    m_addDate->setObjectName(QStringLiteral("addDate"));
    m_addOpmode = new QCheckBox(tr("Add record opmode to name"), box);
    m_addOpmode->setObjectName(QStringLiteral("addOpmode"));
    auto *const warning = new QLabel(tr("Files that exist are asked about once, and then replaced as a whole."), box);
    warning->setWordWrap(true);

    auto *const row = new QHBoxLayout;
    row->addWidget(m_outputFile, 1);
    row->addWidget(m_nameEnding);
    row->addWidget(choose);
    auto *const label = new QLabel(tr("Output file:"), box);
    label->setBuddy(m_outputFile);
    auto *const rows = new QFormLayout(box);
    rows->addRow(label, row);
    rows->addRow(warning);
    auto *const checks = new QHBoxLayout;
    checks->addWidget(m_addDate);
    checks->addWidget(m_addOpmode);
    checks->addStretch();
    rows->addRow(checks);
    return box;
}

QGroupBox *GeneralExportSettingsForm::makeFormatBox()
{
    auto *const box = new QGroupBox(tr("Format"), this);
    m_separator = new DataComboBox(box);
    m_separator->setObjectName(QStringLiteral("separator"));
    m_separator->addItem(tr("Tab"), QStringLiteral("\t"));
    m_separator->addItem(tr(", + space"), QStringLiteral(", "));
    m_separator->addItem(tr("; + space"), QStringLiteral("; "));
    m_separator->addItem(QStringLiteral(","), QStringLiteral(","));
    m_separator->addItem(QStringLiteral(";"), QStringLiteral(";"));
    m_timeFormat = new QLineEdit(box);
    m_timeFormat->setObjectName(QStringLiteral("timeFormat"));
    m_timeFormat->setToolTip(tr("%Y year, %m month, %d day, %j days since the year began, %H hours, %M minutes,\n"
                                "%S whole seconds, %s seconds with their fraction, %z offset from UTC"));
    m_timeZone = new DataComboBox(box);
    m_timeZone->setObjectName(QStringLiteral("timeZone"));
    m_timeZone->addItem(tr("Local"), QStringLiteral("local"));
    m_timeZone->addItem(tr("UTC"), QStringLiteral("utc"));
    m_commentLines = new QCheckBox(tr("Lines that tell program, files and spectra before the titles"), box);
    m_commentLines->setObjectName(QStringLiteral("commentLines"));
    auto *const rows = new QFormLayout(box);
    rows->addRow(tr("Field separator:"), m_separator);
    rows->addRow(tr("Time format:"), m_timeFormat);
    rows->addRow(tr("Time zone:"), m_timeZone);
    rows->addRow(m_commentLines);
    return box;
}

QGroupBox *GeneralExportSettingsForm::makeRecordsBox()
{
    auto *const box = new QGroupBox(tr("Records"), this);
    m_span = new QComboBox(box);
    m_span->setObjectName(QStringLiteral("timeSpan"));
    m_span->addItem(tr("All"), AllRecords);
    m_span->addItem(tr("Those in sight on the time axis"), InSight);
    m_modes = new QComboBox(box);
    m_modes->setObjectName(QStringLiteral("modes"));
    auto *const rows = new QFormLayout(box);
    rows->addRow(tr("Time span:"), m_span);
    rows->addRow(tr("Operating mode:"), m_modes);
    return box;
}

void GeneralExportSettingsForm::chooseOutputFile()
{
    const QPointer<GeneralExportSettingsForm> guard(this); // the data may be closed behind the dialog
    auto *const dialog = new FileDialog(FileDialog::Use::Write, window(), tr("Choose output file"), m_outputFolder,
                                        tr("Tables (*.txt *.csv *.tsv);;All files (*)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setOption(QFileDialog::DontConfirmOverwrite); // the export asks
    dialog->setDefaultSuffix(QStringLiteral("txt"));
    if (!m_outputFile->text().trimmed().isEmpty())
        dialog->selectFile(QDir(m_outputFolder).absoluteFilePath(m_outputFile->text()));
    const QStringList files = FileDialog::ask(dialog);
    if (guard && !files.isEmpty())
        m_outputFile->setText(files.first());
}

void GeneralExportSettingsForm::showNameEnding()
{
    QString ending;
    if (m_addDate->isChecked())
        ending += QStringLiteral("-<i>yyyymmdd</i>");
    if (m_addOpmode->isChecked())
        ending += QStringLiteral("-<i>opmode</i>");
    m_nameEnding->setText(ending);
}

// ---- records

GeneralExportSettingsForm::TimeSpan GeneralExportSettingsForm::timeSpan() const
{
    return TimeSpan(m_span->currentData().toInt());
}

void GeneralExportSettingsForm::setTimeSpan(TimeSpan span)
{
    m_span->setCurrentIndex(m_span->findData(span));
}

void GeneralExportSettingsForm::offerMarkedSpan(const QString &text)
{
    if (m_span->findData(Marked) < 0)
        m_span->addItem(QString(), Marked);
    m_span->setItemText(m_span->findData(Marked), text);
}

void GeneralExportSettingsForm::listModes()
{
    const QStringList chosen = m_modes->currentData().toStringList();
    const QSignalBlocker blocker(m_modes);
    m_modes->clear();
    m_modes->addItem(tr("All"), QStringList());
    if (const auto metadata = m_uiInfo->metadata())
        for (const Opmode &mode : metadata->opmodes)
            m_modes->addItem(mode.name, QStringList{mode.name});
    chooseModes(chosen);
}

/// Several modes, or one that the data don't have, get an entry of their own.
void GeneralExportSettingsForm::chooseModes(const QStringList &modes)
{
    if (m_modes->findData(modes) < 0)
        m_modes->addItem(modes.join(QStringLiteral(", ")), modes);
    m_modes->setCurrentIndex(m_modes->findData(modes));
}

// ---- settings

QVariantMap GeneralExportSettingsForm::settings() const
{
    QVariantMap map{{QStringLiteral("output_file"), m_outputFile->text()},
                    {QStringLiteral("file_name_add_date"), m_addDate->isChecked()},
                    {QStringLiteral("file_name_add_opmode"), m_addOpmode->isChecked()},
                    {QStringLiteral("field_separator"), m_separator->chosen()},
                    {QStringLiteral("time_format"), m_timeFormat->text()},
                    {QStringLiteral("time_zone"), m_timeZone->chosen()}};
    if (m_commentLines->isChecked())
        map[QStringLiteral("comment_lines")] = true;
    if (m_modes->currentIndex() > 0)
        map[QStringLiteral("opmodes")] = listOf(m_modes->currentData().toStringList());
    return map;
}

void GeneralExportSettingsForm::setSettings(const QVariantMap &settings)
{
    const DataExport::GeneralSettings first;
    m_outputFile->setText(textOr(settings, "output_file", ""));
    m_addDate->setChecked(valueOr(settings, "file_name_add_date", first.addDate));
    m_addOpmode->setChecked(valueOr(settings, "file_name_add_opmode", first.addOpmode));
    m_separator->choose(valueOr(settings, "field_separator", first.separator));
    m_timeFormat->setText(valueOr(settings, "time_format", first.timeFormat));
    m_timeZone->choose(textOr(settings, "time_zone", "utc"));
    m_commentLines->setChecked(valueOr(settings, "comment_lines", first.commentLines));
    chooseModes(valueOr(settings, "opmodes", QStringList()));
    showNameEnding();
}
