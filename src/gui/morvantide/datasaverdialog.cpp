#include "gui/morvantide/datasaverdialog.h"

#include "gui/common/filedialog.h"
#include "gui/common/screenfit.h"
#include "gui/morvantide/savewarnings.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardItemModel>
#include <QThread>
#include <QTreeView>

namespace {

constexpr int progressEvery = 100; // records
constexpr int folderWidth = 45;    // average characters
constexpr int fewestRows = 5;      // of the tree, which makes room for warnings
constexpr int firstRows = 13;      // of the whole dialog

const Log::Logger &logger()
{
    static const Log::Logger instance(QStringLiteral("filewriter"));
    return instance;
}

QStandardItem *plainItem(const QString &text)
{
    auto *item = new QStandardItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

QStandardItem *checkItem(const QString &text, Qt::CheckState state)
{
    QStandardItem *item = plainItem(text);
    item->setCheckable(true);
    item->setCheckState(state);
    return item;
}

bool isChecked(const QStandardItem *item)
{
    return item->checkState() == Qt::Checked;
}

QLabel *labelFor(QWidget *widget, const QString &text)
{
    auto *label = new QLabel(text, widget->parentWidget());
    label->setBuddy(widget);
    return label;
}

} // namespace

DataSaverDialog::DataSaverDialog(Content content, const UiInfo &names, const QString &previousFolder, QWidget *parent)
    : QDialog(parent), m_content(std::move(content)), m_model(new QStandardItemModel(this)),
      m_folderEdit(new QLineEdit(this)), m_chooseFolderButton(new QPushButton(QStringLiteral("..."), this)),
      m_variantEdit(new QLineEdit(this)), m_tree(new QTreeView(this)), m_problemLabel(new QLabel(this)),
      m_inversionVars(new QCheckBox(tr("Save inversion variables"), this)), m_progressBar(new QProgressBar(this)),
      m_buttonBox(new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Close, this))
{
    setObjectName(QStringLiteral("SaveForm"));
    setWindowTitle(tr("Save data - Morvantide"));
    m_folderEdit->setObjectName(QStringLiteral("folderEdit"));
    m_chooseFolderButton->setObjectName(QStringLiteral("chooseFolderButton"));
    m_variantEdit->setObjectName(QStringLiteral("variantLineEdit"));
    m_tree->setObjectName(QStringLiteral("resultsTreeView"));
    m_tree->setAccessibleName(tr("Data to save"));
    m_problemLabel->setObjectName(QStringLiteral("problemLabel"));
    m_inversionVars->setObjectName(QStringLiteral("saveInversionVarsCheckBox"));
    m_progressBar->setObjectName(QStringLiteral("progressBar"));
    m_buttonBox->setObjectName(QStringLiteral("buttonBox"));
    fillTree(names);
    setLayout(makeForm());

    connect(m_chooseFolderButton, &QPushButton::clicked, this, &DataSaverDialog::chooseFolderClicked);
    connect(m_folderEdit, &QLineEdit::textChanged, this, &DataSaverDialog::checkFolder);
    connect(m_variantEdit, &QLineEdit::textChanged, this, [this] { checkFolder(folder()); });
    connect(m_buttonBox, &QDialogButtonBox::accepted, this, &DataSaverDialog::saveData);
    connect(m_buttonBox, &QDialogButtonBox::rejected, this, &DataSaverDialog::reject);
    m_folderEdit->setText(previousFolder);
    const int height = fontMetrics().lineSpacing() * firstRows + sizeHint().height() - m_tree->minimumHeight();
    resize(fittedToScreen(*this, {sizeHint().width(), height}));
    checkFolder(previousFolder); // which an empty one wouldn't bring about
}

DataSaverDialog::~DataSaverDialog() = default;

void DataSaverDialog::fillTree(const UiInfo &names)
{
    m_fullRecords = checkItem(tr("Full records"), Qt::Unchecked);
    m_model->appendRow(m_fullRecords);
    for (const Opmode &mode : m_content.metadata->opmodes) {
        QStandardItem *row = plainItem(tr("%1 opmode spectra").arg(mode.name));
        m_model->appendRow(row);
        for (const auto &info : m_content.spectra.value(mode.name)) {
            QStandardItem *item = checkItem(info->displayLabel(), Qt::Checked);
            // Where labels are equal, the views' names and the comments are not.
            item->setToolTip(QStringLiteral("<p>%1</p><p>%2</p>")
                                 .arg(names.spectrumName(info.get()).toHtmlEscaped(), info->comment.toHtmlEscaped()));
            row->appendRow(item);
            m_choices.push_back({mode.name, info, item});
        }
    }
    m_tree->setModel(m_model);
    m_tree->setHeaderHidden(true);
    m_tree->setTabKeyNavigation(false);
    m_tree->expandAll();
}

QLayout *DataSaverDialog::makeForm()
{
    m_folderEdit->setMinimumWidth(m_folderEdit->fontMetrics().averageCharWidth() * folderWidth);
    m_chooseFolderButton->setToolTip(tr("Choose a folder"));
    m_chooseFolderButton->setAutoDefault(false); // Return saves
    m_chooseFolderButton->setFixedWidth(
        m_chooseFolderButton->fontMetrics().horizontalAdvance(QStringLiteral("  ...  ")) +
        2 * m_chooseFolderButton->fontMetrics().averageCharWidth());
    m_tree->setMinimumHeight(m_tree->fontMetrics().lineSpacing() * fewestRows);
    m_problemLabel->setTextFormat(Qt::RichText);
    m_problemLabel->setWordWrap(true);
    m_progressBar->setFormat(QStringLiteral("%v/%m"));
    m_progressBar->setAlignment(Qt::AlignCenter);
    QSizePolicy keepsPlace = m_progressBar->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    m_progressBar->setSizePolicy(keepsPlace);
    m_progressBar->hide();

    auto *grid = new QGridLayout;
    grid->addWidget(labelFor(m_folderEdit, tr("Output folder:")), 0, 0);
    grid->addWidget(m_folderEdit, 0, 1);
    grid->addWidget(m_chooseFolderButton, 0, 2);
    grid->addWidget(labelFor(m_variantEdit, tr("Averaging variant:")), 1, 0);
    grid->addWidget(m_variantEdit, 1, 1, 1, 2);
    grid->addWidget(labelFor(m_tree, tr("Data:")), 2, 0, Qt::AlignTop);
    grid->addWidget(m_tree, 2, 1, 1, 2);
    grid->addWidget(m_inversionVars, 3, 1, 1, 2);
    grid->addWidget(m_problemLabel, 4, 0, 1, 3);
    grid->addWidget(m_progressBar, 5, 0, 1, 3);
    grid->addWidget(m_buttonBox, 6, 0, 1, 3);
    grid->setRowStretch(2, 1);
    QWidget *before = m_folderEdit;
    for (QWidget *next :
         std::initializer_list<QWidget *>{m_chooseFolderButton, m_variantEdit, m_tree, m_inversionVars, m_buttonBox}) {
        setTabOrder(before, next);
        before = next;
    }
    return grid;
}

QString DataSaverDialog::folder() const
{
    return m_folderEdit->text();
}

QString DataSaverDialog::variant() const
{
    return m_variantEdit->text();
}

void DataSaverDialog::setVariant(const QString &variant)
{
    m_variantEdit->setText(variant);
}

void DataSaverDialog::chooseFolderClicked()
{
    const QString chosen =
        FileDialog::askForFolder(FileDialog::Use::Write, this, tr("Choose folder for datafiles"), folder());
    if (!chosen.isEmpty())
        m_folderEdit->setText(chosen);
}

void DataSaverDialog::checkFolder(const QString &name)
{
    QStringList modes;
    for (const Opmode &mode : m_content.metadata->opmodes)
        modes.append(mode.name);
    const QString warnings = saveWarnings({name, variant(), modes, m_reinverting});
    m_problemLabel->setText(warnings);
    m_problemLabel->setVisible(!warnings.isEmpty());
    m_buttonBox->button(QDialogButtonBox::Save)->setEnabled(true); // warnings never prevent a save
}

void DataSaverDialog::setReinverting(bool on)
{
    m_reinverting = on;
    checkFolder(folder());
}

void DataSaverDialog::reject()
{
    if (m_saving)
        m_stopRequested = true;
    else
        QDialog::reject();
}

// ---- saving

Spectrometer::PlainFileOutput::Settings DataSaverDialog::outputSettings() const
{
    auto settings = Spectrometer::dayFileSettings(folder(), variant(), m_content.metadata);
    settings.variants[0].records = isChecked(m_fullRecords);
    settings.inversionVars = m_inversionVars->isChecked();
    for (const Choice &choice : m_choices)
        if (isChecked(choice.item))
            settings.spectra[choice.mode].append(choice.info);
    return settings;
}

void DataSaverDialog::setSaving(bool on)
{
    m_saving = on;
    m_stopRequested = false;
    for (QWidget *input : std::initializer_list<QWidget *>{m_folderEdit, m_chooseFolderButton, m_variantEdit, m_tree,
                                                           m_inversionVars, m_buttonBox})
        input->setEnabled(!on);
    m_progressBar->setVisible(on);
}

bool DataSaverDialog::writeAll(Spectrometer::PlainFileOutput &output, int *done)
{
    m_progressBar->setRange(0, m_content.store->size());
    m_progressBar->setValue(0);
    return Spectrometer::writeRecords(output, *m_content.store, QThread::idealThreadCount(), [this, done](int count) {
        *done = count;
        if (count > 0 && count % progressEvery == 0) {
            m_progressBar->setValue(count);
            QCoreApplication::processEvents();
        }
        return !m_stopRequested;
    });
}

void DataSaverDialog::saveData()
{
    if (m_saving)
        return;
    if (folder().isEmpty()) {
        logger().log(Log::Error, QStringLiteral("No folder to save to: nothing was written."));
        return;
    }
    Spectrometer::PlainFileOutput output(outputSettings());
    QWidget *focused = focusWidget();
    setSaving(true);
    int done = 0;
    const bool complete = writeAll(output, &done);
    output.closeFiles();

    const auto counts = output.counts();
    const QString written = QString::number(counts.written);
    if (complete)
        logger().log(Log::Info, QStringLiteral("%1 rows written to \"%2\"").arg(written, folder()));
    else
        logger().log(Log::Info,
                     QStringLiteral("Saving was stopped after %1 of %2 records: %3 rows written to \"%4\"")
                         .arg(QString::number(done), QString::number(m_content.store->size()), written, folder()));
    if (counts.lost > 0)
        logger().log(Log::Error, QStringLiteral("%1 of %2 rows could not be written")
                                     .arg(QString::number(counts.lost), QString::number(counts.written + counts.lost)));
    Spectrometer::warnOfSpectraWithoutMode(*m_content.store);
    checkFolder(folder());
    setSaving(false);
    if (focused)
        focused->setFocus();
}
