#include "gui/morvantide/datachooserdialog.h"

#include "datafiles/reading/datafinder.h"
#include "gui/common/filedialog.h"
#include "gui/morvantide/overviewlabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

#include <utility>

namespace {

constexpr int listDelay = 300; // ms
const QStringList commonVariants{QStringLiteral("block"), QStringLiteral("10s"), QStringLiteral("1s")};
const QStringList commonModes{QStringLiteral("ions"), QStringLiteral("particles")};

/// Takes a date that is typed where all of the old one is selected, or in front of it. The base ignores digits there
/// until a part is selected, and skips a part at a hyphen behind a part that is complete.
class TypedDateEdit : public QDateTimeEdit {
public:
    using QDateTimeEdit::QDateTimeEdit;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const QLineEdit &line = *lineEdit();
        const bool atStart = !line.hasSelectedText() && line.cursorPosition() == 0;
        const bool isDigit = !event->text().isEmpty() && event->text().front().isDigit();
        if (isDigit && (atStart || line.selectedText() == line.text()))
            setSelectedSection(sectionAt(0));
        const bool isBehindPart = std::exchange(m_wentOn, false);
        if (isBehindPart && event->text() == QLatin1String("-"))
            return;
        const Section part = currentSection();
        QDateTimeEdit::keyPressEvent(event);
        m_wentOn = isDigit && currentSection() != part;
    }

private:
    bool m_wentOn = false; ///< the last digit completed a part
};

QComboBox *makeEditableBox(const QString &name, int characters, QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setObjectName(name);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setMinimumContentsLength(characters);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    // Completing in the line would put another folder in the place of the one that was typed.
    box->completer()->setCompletionMode(QCompleter::PopupCompletion);
    box->completer()->setCaseSensitivity(Qt::CaseSensitive);
    return box;
}

QPushButton *makeButton(const QString &name, const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false); // Return accepts the dialog
    return button;
}

} // namespace

DataChooserDialog::DataChooserDialog(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Choose data - Morvantide"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeFolderRow());
    layout->addWidget(makeTimespanBox());
    layout->addWidget(makeKindBox());
    layout->addStretch();
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    m_listTimer.setSingleShot(true);
    m_listTimer.setInterval(listDelay);
    connect(&m_listTimer, &QTimer::timeout, this, &DataChooserDialog::listVariants);
    connect(m_folder, &QComboBox::currentTextChanged, this, [this] {
        m_listTimer.start();
        updateAcceptable();
    });
    connect(m_folder, &QComboBox::currentTextChanged, this, &DataChooserDialog::updateOverview);
    connect(m_variant, &QComboBox::currentTextChanged, this, &DataChooserDialog::updateOverview);
    for (QAbstractButton *button : std::initializer_list<QAbstractButton *>{m_limitBegin, m_limitEnd, m_legacyFiles})
        connect(button, &QAbstractButton::toggled, this, &DataChooserDialog::updateOverview);
    for (QDateTimeEdit *edit : {m_beginTime, m_endTime})
        connect(edit, &QDateTimeEdit::dateTimeChanged, this, &DataChooserDialog::updateOverview);
    updateAcceptable();
}

QWidget *DataChooserDialog::makeFolderRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_folder = makeEditableBox(QStringLiteral("folderNameComboBox"), 45, row);
    auto *label = new QLabel(tr("&Data folder:"), row);
    label->setBuddy(m_folder);
    auto *button = new QToolButton(row);
    button->setObjectName(QStringLiteral("chooseFolderButton"));
    button->setText(QStringLiteral("..."));
    button->setToolTip(tr("Choose a folder"));
    connect(button, &QToolButton::clicked, this, &DataChooserDialog::chooseFolder);
    layout->addWidget(label);
    layout->addWidget(m_folder, 1);
    layout->addWidget(button);
    return row;
}

QDateTimeEdit *DataChooserDialog::makeDateEdit(const QString &name)
{
    auto *edit = new TypedDateEdit(QDateTime::currentDateTime(), this);
    edit->setObjectName(name);
    edit->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    edit->setCalendarPopup(true);
    edit->setEnabled(false);
    return edit;
}

QGroupBox *DataChooserDialog::makeTimespanBox()
{
    auto *box = new QGroupBox(tr("Limit time span"), this);
    m_limitBegin = new QCheckBox(tr("&Start:"), box);
    m_limitBegin->setObjectName(QStringLiteral("limitBeginCheckBox"));
    m_beginTime = makeDateEdit(QStringLiteral("beginTimeEdit"));
    m_limitEnd = new QCheckBox(tr("&End:"), box);
    m_limitEnd->setObjectName(QStringLiteral("limitEndCheckBox"));
    m_endTime = makeDateEdit(QStringLiteral("endTimeEdit"));
    connect(m_limitBegin, &QCheckBox::toggled, m_beginTime, &QWidget::setEnabled);
    connect(m_limitEnd, &QCheckBox::toggled, m_endTime, &QWidget::setEnabled);

    auto *all = makeButton(QStringLiteral("allTimespanButton"), tr("&All"), box);
    auto *week = makeButton(QStringLiteral("timespan7dButton"), tr("Last &7 days"), box);
    auto *month = makeButton(QStringLiteral("timespan30dButton"), tr("Last &30 days"), box);
    connect(all, &QPushButton::clicked, this, &DataChooserDialog::selectAllTimespan);
    connect(week, &QPushButton::clicked, this, &DataChooserDialog::selectLast7Days);
    connect(month, &QPushButton::clicked, this, &DataChooserDialog::selectLast30Days);
    auto *buttons = new QHBoxLayout;
    for (QWidget *button : {all, week, month})
        buttons->addWidget(button);
    buttons->addStretch();

    auto *grid = new QGridLayout(box);
    grid->addWidget(m_limitBegin, 0, 0);
    grid->addWidget(m_beginTime, 0, 1, Qt::AlignLeft);
    grid->addWidget(m_limitEnd, 1, 0);
    grid->addWidget(m_endTime, 1, 1, Qt::AlignLeft);
    grid->addWidget(new QLabel(tr("Select:"), box), 2, 0);
    grid->addLayout(buttons, 2, 1);
    grid->setColumnStretch(1, 1);
    return box;
}

QGroupBox *DataChooserDialog::makeKindBox()
{
    auto *box = new QGroupBox(tr("Look for"), this);
    m_averagingVariant = new QRadioButton(tr("A&veraging period"), box);
    m_averagingVariant->setObjectName(QStringLiteral("averagingVariantRadioButton"));
    m_averagingVariant->setChecked(true);
    m_variant = makeEditableBox(QStringLiteral("variantComboBox"), 12, box);
    m_variant->addItems(commonVariants);
    m_variant->setAccessibleName(m_averagingVariant->text().remove(QLatin1Char('&')));
    m_legacyFiles = new QRadioButton(tr("O&ld-style sig/log/nds datafiles"), box);
    m_legacyFiles->setObjectName(QStringLiteral("legacyFilesRadioButton"));
    connect(m_averagingVariant, &QRadioButton::toggled, m_variant, &QWidget::setEnabled);

    auto *grid = new QGridLayout(box);
    grid->addWidget(m_averagingVariant, 0, 0);
    grid->addWidget(m_variant, 0, 1, Qt::AlignLeft);
    m_overview = new OverviewLabel(box);
    grid->addWidget(m_overview, 1, 0, 1, 2);
    grid->addWidget(m_legacyFiles, 2, 0, 1, 2);
    grid->addLayout(makeModeRow(box), 3, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    return box;
}

QLayout *DataChooserDialog::makeModeRow(QWidget *box)
{
    m_assumedOpmode = makeEditableBox(QStringLiteral("assumedOpmodeComboBox"), 12, box);
    m_assumedOpmode->addItems(commonModes);
    m_assumedOpmode->clearEditText();
    m_assumedOpmode->lineEdit()->setPlaceholderText(tr("unknown"));
    m_assumedOpmode->setToolTip(tr("Spectra of records of an unknown mode can't be saved"));
    auto *label = new QLabel(tr("Operating &mode where files tell none:"), box);
    label->setBuddy(m_assumedOpmode);
    auto *row = new QHBoxLayout;
    row->addSpacing(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                    style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing));
    for (QWidget *widget : std::initializer_list<QWidget *>{label, m_assumedOpmode}) {
        row->addWidget(widget);
        widget->setEnabled(false);
        connect(m_legacyFiles, &QRadioButton::toggled, widget, &QWidget::setEnabled);
    }
    row->addStretch();
    return row;
}

void DataChooserDialog::updateAcceptable()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_folder->currentText().isEmpty());
}

void DataChooserDialog::updateOverview()
{
    m_overview->setChoice(choice());
}

void DataChooserDialog::setOldPaths(const QStringList &paths)
{
    m_folder->clear();
    m_folder->addItems(paths);
}

void DataChooserDialog::setChoice(const QVariantMap &choice)
{
    const auto ifGiven = [&choice](const char *key, auto set) {
        const auto found = choice.constFind(QString::fromLatin1(key));
        if (found != choice.constEnd())
            set(*found);
    };
    ifGiven("folderName", [this](const QVariant &v) { m_folder->setEditText(v.toString()); });
    ifGiven("beginTime", [this](const QVariant &v) { m_beginTime->setDateTime(v.toDateTime()); });
    ifGiven("endTime", [this](const QVariant &v) { m_endTime->setDateTime(v.toDateTime()); });
    ifGiven("limitBegin", [this](const QVariant &v) { m_limitBegin->setChecked(v.toBool()); });
    ifGiven("limitEnd", [this](const QVariant &v) { m_limitEnd->setChecked(v.toBool()); });
    ifGiven("variant", [this](const QVariant &v) { m_variant->setEditText(v.toString()); });
    ifGiven("legacyFiles",
            [this](const QVariant &v) { (v.toBool() ? m_legacyFiles : m_averagingVariant)->setChecked(true); });
    ifGiven("assumedOpmode", [this](const QVariant &v) { m_assumedOpmode->setEditText(v.toString()); });
}

QVariantMap DataChooserDialog::choice() const
{
    return {{QStringLiteral("folderName"), m_folder->currentText()},
            {QStringLiteral("beginTime"), m_beginTime->dateTime()},
            {QStringLiteral("endTime"), m_endTime->dateTime()},
            {QStringLiteral("limitBegin"), m_limitBegin->isChecked()},
            {QStringLiteral("limitEnd"), m_limitEnd->isChecked()},
            {QStringLiteral("variant"), m_variant->currentText()},
            {QStringLiteral("legacyFiles"), m_legacyFiles->isChecked()},
            {QStringLiteral("assumedOpmode"), m_assumedOpmode->currentText().simplified()}};
}

void DataChooserDialog::chooseFolder()
{
    const QString folder = FileDialog::askForFolder(FileDialog::Use::Read, this, tr("Choose folder with datafiles"),
                                                    m_folder->currentText());
    if (!folder.isEmpty())
        m_folder->setEditText(folder);
}

void DataChooserDialog::selectAllTimespan()
{
    m_limitBegin->setChecked(false);
    m_limitEnd->setChecked(false);
}

void DataChooserDialog::setSpanOfDays(int days)
{
    const QDateTime now = QDateTime::currentDateTime();
    m_beginTime->setDateTime(now.addDays(-days));
    m_endTime->setDateTime(now);
    m_limitBegin->setChecked(true);
}

void DataChooserDialog::selectLast7Days()
{
    setSpanOfDays(7); // the end limit stays as it is
}

void DataChooserDialog::selectLast30Days()
{
    setSpanOfDays(30);
    m_limitEnd->setChecked(false);
}

void DataChooserDialog::listVariants()
{
    const QString folder = m_folder->currentText();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return;
    const QStringList found = folderContents(folder).variants;
    const QString chosen = m_variant->currentText();
    const QSignalBlocker blocker(m_variant);
    m_variant->clear();
    m_variant->addItems(found.isEmpty() ? commonVariants : found);
    m_variant->setEditText(chosen);
}
