#include "gui/common/dataexport/dataexportdialog.h"

#include "dataexport/dataexporter.h"
#include "gui/browser/controls/plaintooltip.h"
#include "gui/common/complainttext.h"
#include "gui/common/dataexport/exportpreview.h"
#include "gui/common/dataexport/exportsample.h"
#include "gui/common/dataexport/exportsetuptree.h"
#include "gui/common/dataexport/generalexportsettingsform.h"
#include "gui/common/filedialog.h"
#include "gui/common/screenfit.h"
#include "llama/qyaml.h"
#include "util/filereplacement.h"
#include "util/timeformat.h"

#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

constexpr QSize firstSize(980, 720);
constexpr int previewDelay = 300; // ms
constexpr int version = 1;

} // namespace

DataExportDialog::DataExportDialog(ExportSource source, QWidget *parent)
    : QDialog(parent), m_source(std::move(source)), m_tree(new ExportSetupTree(m_source.uiInfo, this)),
      m_preview(new ExportPreview(this)), m_result(new QLabel(this))
{
    setObjectName(QStringLiteral("DataExportDialog"));
    setSetupPath(QString());
    setWindowTitle(tr("Export settings"));
    setAccessibleName(tr("Export data"));
    m_result->setObjectName(QStringLiteral("resultLabel"));
    m_result->setTextFormat(Qt::PlainText);
    m_result->setWordWrap(true);
    m_result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *const preview = new QGroupBox(tr("First rows"), this);
    (new QVBoxLayout(preview))->addWidget(m_preview);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(m_tree, 1);
    layout->addWidget(preview);
    layout->addLayout(makeButtons());
    layout->addWidget(m_result);
    QSizePolicy keepsPlace = m_result->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    m_result->setSizePolicy(keepsPlace);
    m_result->hide();
    resize(fittedToScreen(*this, firstSize));
    widenForPages();

    m_previewTimer.setSingleShot(true);
    m_previewTimer.setInterval(previewDelay);
    connect(&m_previewTimer, &QTimer::timeout, this, &DataExportDialog::showPreview);
    connect(m_tree, &ExportSetupTree::changed, this, &DataExportDialog::setupChanged);
    connect(m_tree, &ExportSetupTree::pageAdded, this, &DataExportDialog::putLastInTabOrder);
    connect(m_tree, &ExportSetupTree::pageAdded, this, &DataExportDialog::widenForPages);
    putLastInTabOrder();
    connect(m_tree, &ExportSetupTree::requestPlotFields, this, &DataExportDialog::requestPlotFields);
}

DataExportDialog::~DataExportDialog() = default;

QLayout *DataExportDialog::makeButtons()
{
    auto *const load = new QPushButton(tr("Load setup..."), this);
    auto *const save = new QPushButton(tr("Save setup..."), this);
    auto *const run = new QPushButton(tr("Export"), this);
    auto *const close = new QPushButton(tr("Close"), this);
    for (QPushButton *button : {load, save, close})
        button->setAutoDefault(false); // Return exports
    run->setDefault(true);
    connect(load, &QPushButton::clicked, this, &DataExportDialog::loadSetup);
    connect(save, &QPushButton::clicked, this, &DataExportDialog::saveSetup);
    connect(run, &QPushButton::clicked, this, [this] { Q_EMIT requestExport(setup()); });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    m_lastWidgets = {m_preview->findChild<QTableWidget *>(), load, save, run, close};
    auto *const row = new QHBoxLayout;
    row->addWidget(load);
    row->addWidget(save);
    row->addStretch();
    row->addWidget(run);
    row->addWidget(close);
    return row;
}

/// Texts are longer in other languages, and larger in other fonts.
void DataExportDialog::widenForPages()
{
    const QMargins margins = layout()->contentsMargins();
    const int wanted = m_tree->wantedWidth() + margins.left() + margins.right();
    resize(fittedToScreen(*this, size().expandedTo({wanted, 0})));
}

void DataExportDialog::putLastInTabOrder()
{
    QWidget *last = previousInFocusChain();
    while (last != this && last->focusPolicy() == Qt::NoFocus) // setTabOrder() takes no such
        last = last->previousInFocusChain();
    for (QWidget *widget : m_lastWidgets) {
        setTabOrder(last, widget);
        last = widget;
    }
}

// ---- the setup

QVariantMap DataExportDialog::setup() const
{
    return {{QStringLiteral("general"), m_tree->general()->settings()},
            {QStringLiteral("fields"), m_tree->fields()},
            {QStringLiteral("quilvane_data_export_version"), version}};
}

void DataExportDialog::setSetup(const QVariantMap &setup)
{
    m_tree->general()->setSettings(setup.value(QStringLiteral("general")).toMap());
    m_tree->setFields(setup.value(QStringLiteral("fields")).toList());
}

DataExportDialog::State DataExportDialog::state() const
{
    return {setup(), m_tree->general()->timeSpan(), m_markedSpan, m_setupPath, saveGeometry()};
}

void DataExportDialog::setState(const State &state)
{
    setSetupPath(state.setupPath);
    m_markedSpan = state.markedSpan;
    offerMarkedSpan();
    m_tree->general()->setTimeSpan(GeneralExportSettingsForm::TimeSpan(state.timeSpan));
    setSetup(state.setup);
    if (!state.geometry.isEmpty())
        restoreGeometry(state.geometry);
}

std::optional<ExportSource::Span> DataExportDialog::timeSpan() const
{
    switch (m_tree->general()->timeSpan()) {
    case GeneralExportSettingsForm::InSight:
        return m_source.visibleSpan();
    case GeneralExportSettingsForm::Marked:
        return m_markedSpan;
    default:
        return std::nullopt;
    }
}

void DataExportDialog::setMarkedSpan(const ExportSource::Span &span)
{
    m_markedSpan = span;
    offerMarkedSpan();
    m_tree->general()->setTimeSpan(GeneralExportSettingsForm::Marked);
    setupChanged(); // it may have been another marked span before
}

void DataExportDialog::offerMarkedSpan()
{
    if (!m_markedSpan)
        return;
    const std::int64_t offset = m_source.store->records().back()->beginUtcOffset; // that of the time axis
    const auto text = [offset](RecordTime time) {
        return timeToString(localTime(time, offset), QStringLiteral("%Y-%m-%d %H:%M:%S"));
    };
    m_tree->general()->offerMarkedSpan(
        tr("Those from %1 to %2").arg(text(m_markedSpan->first), text(m_markedSpan->second)));
}

void DataExportDialog::addFields(const QVariantList &fields)
{
    m_tree->addFields(fields);
}

// ---- files

void DataExportDialog::setSetupPath(const QString &path)
{
    m_setupPath = path;
    m_tree->general()->setOutputFolder(m_source.outputFolder(path));
}

QString DataExportDialog::load(const QString &path)
{
    try {
        const QVariant tree = DataExport::loadSetupTree(path);
        const DataExport::ExportSetup understood = DataExport::exportSetupFrom(tree);
        DataExport::logErrors(understood.errors);
        setSetupPath(path);
        setSetup(tree.toMap());
        if (!understood.errors.isEmpty())
            showResult(tr("Not all of the setup was understood: the log tells what."));
        return QString();
    } catch (const DataExport::SetupError &error) {
        return error.message();
    }
}

QString DataExportDialog::save(const QString &path)
{
    QByteArray bytes;
    try {
        bytes = Llama::yamlDump(setup());
    } catch (const Llama::Exception &error) {
        return error.message();
    }
    const QString reason = replaceFile(path, bytes);
    if (reason.isNull()) {
        setSetupPath(path);
        setupChanged(); // a relative output file is another one now
    }
    return reason;
}

QString DataExportDialog::askForSetupFile(bool toSave)
{
    auto *const dialog =
        new FileDialog(toSave ? FileDialog::Use::Write : FileDialog::Use::Read, this,
                       toSave ? tr("Save data export settings") : tr("Load data export settings"),
                       m_source.outputFolder(m_setupPath), tr("Data export settings (*.exportsetup);;All files (*)"));
    dialog->setAcceptMode(toSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(toSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setDefaultSuffix(QStringLiteral("exportsetup"));
    if (!m_setupPath.isEmpty())
        dialog->selectFile(m_setupPath);
    return FileDialog::ask(dialog).value(0);
}

void DataExportDialog::saveSetup()
{
    const QString path = askForSetupFile(true);
    const QString reason = path.isEmpty() ? QString() : save(path);
    if (!reason.isNull())
        tell(tr("Failed to open file %1 for writing.").arg(path), reason);
}

void DataExportDialog::loadSetup()
{
    const QString path = askForSetupFile(false);
    const QString reason = path.isEmpty() ? QString() : load(path);
    if (!reason.isNull())
        tell(tr("Failed to open file %1.").arg(path), reason);
}

void DataExportDialog::tell(const QString &text, const QString &reason)
{
    // The dialog may go meanwhile, with the data.
    const QPointer<QMessageBox> box(
        new QMessageBox(QMessageBox::Warning, tr("Data export"), text, QMessageBox::Ok, this));
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(Tsb::plainToolTip(complaintText(reason)));
    box->exec();
    delete box;
}

// ---- preview

void DataExportDialog::setupChanged()
{
    m_previewTimer.start();
    m_result->hide();
}

void DataExportDialog::spanChanged()
{
    if (m_tree->general()->timeSpan() == GeneralExportSettingsForm::InSight)
        m_previewTimer.start();
}

void DataExportDialog::showResult(const QString &text)
{
    m_result->setText(text);
    m_result->setVisible(!text.isEmpty());
}

void DataExportDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    showPreview();
}

void DataExportDialog::showPreview()
{
    m_previewTimer.stop();
    if (isVisible() && m_source.uiInfo->metadata())
        m_preview->showSample(ExportSample::of(m_source, setup(), m_setupPath, timeSpan()));
}
