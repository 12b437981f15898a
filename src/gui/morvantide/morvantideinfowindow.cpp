#include "gui/morvantide/morvantideinfowindow.h"

#include "gui/common/screenfit.h"
#include "store/datastore.h"

#include <QColorDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QPushButton>
#include <QShortcut>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr QSize firstSize(640, 400);
constexpr int idWidth = 12; // average characters: enough to tell hashes apart

QPushButton *makeButton(const QString &name, const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(true); // Return presses what has the focus
    return button;
}

QIcon colorIcon(const QColor &color, const QSize &size, qreal pixelRatio)
{
    QPixmap pixmap(size * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(color.isValid() ? color : Qt::transparent);
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected); // as it is, not tinted by the selection
    return icon;
}

} // namespace

/// Rows know what they stand for; tool tips are asked for when they are shown, since records come in meanwhile.
class MorvantideInfoWindow::Model : public QStandardItemModel {
public:
    using QStandardItemModel::QStandardItemModel;

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::ToolTipRole && recordsText)
            if (const UiInfo::InfoKey info = rows.value(index.row()))
                return recordsText(info);
        return QStandardItemModel::data(index, role);
    }

    QHash<int, const SpectMath::SpectrumInfo *> rows;
    RecordsText recordsText;
};

MorvantideInfoWindow::MorvantideInfoWindow(std::shared_ptr<UiInfo> uiInfo, QWidget *parent)
    : QWidget(parent, Qt::Window), m_uiInfo(std::move(uiInfo)), m_model(new Model(this)),
      m_treeView(new QTreeView(this)),
      m_renameButton(makeButton(QStringLiteral("renameButton"), tr("Change comment"), this)),
      m_colorButton(makeButton(QStringLiteral("colorButton"), tr("Change color..."), this)),
      m_deleteButton(makeButton(QStringLiteral("deleteButton"), tr("Discard"), this))
{
    setObjectName(QStringLiteral("MorvantideInfoForm"));
    setWindowTitle(tr("Spectrum information"));
    m_treeView->setObjectName(QStringLiteral("treeView"));
    m_treeView->setModel(m_model);
    m_treeView->setAccessibleName(tr("Spectra"));
    m_treeView->setRootIsDecorated(false);
    m_treeView->setAllColumnsShowFocus(true);
    m_treeView->setUniformRowHeights(true);
    m_treeView->setTabKeyNavigation(false);
    m_treeView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_treeView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto *closeButton = makeButton(QStringLiteral("closeButton"), tr("Close"), this);
    auto *layout = new QVBoxLayout(this);
    for (QWidget *widget :
         std::initializer_list<QWidget *>{m_treeView, m_renameButton, m_colorButton, m_deleteButton, closeButton})
        layout->addWidget(widget);
    resize(fittedToScreen(*this, firstSize));

    connect(m_treeView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MorvantideInfoWindow::selectionChanged);
    connect(m_renameButton, &QPushButton::clicked, this, &MorvantideInfoWindow::renameSpectrum);
    connect(m_colorButton, &QPushButton::clicked, this, &MorvantideInfoWindow::changeSpectrumColor);
    connect(m_deleteButton, &QPushButton::clicked, this, &MorvantideInfoWindow::deleteSpectrum);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &MorvantideInfoWindow::updateModel);
    updateModel();
    for (int column = 0; column < m_model->columnCount(); ++column)
        m_treeView->resizeColumnToContents(column);
    m_treeView->setColumnWidth(2, fontMetrics().averageCharWidth() * idWidth);
}

MorvantideInfoWindow::~MorvantideInfoWindow() = default;

QString MorvantideInfoWindow::recordsText(const Datastore *store, UiInfo::InfoKey spectrum)
{
    const auto series = store ? store->series(spectrum) : nullptr;
    return tr("%n of %1 records have this spectrum", nullptr, series ? int(series->size()) : 0)
        .arg(store ? store->size() : 0);
}

void MorvantideInfoWindow::setRecordsText(RecordsText text)
{
    m_model->recordsText = std::move(text);
}

void MorvantideInfoWindow::addRow(const UiInfo::InfoPointer &info)
{
    QList<QStandardItem *> cells;
    for (const QString &text : {info->name, m_uiInfo->spectrumComment(info.get()), info->hash, info->inverterName}) {
        cells.append(new QStandardItem(text));
        cells.last()->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    }
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    cells.first()->setIcon(colorIcon(m_uiInfo->spectrumColor(info.get()), {side, side}, devicePixelRatioF()));
    m_model->rows.insert(m_model->rowCount(), info.get());
    m_model->appendRow(cells);
}

void MorvantideInfoWindow::updateModel()
{
    // By hash: the descriptions of the rows may be gone by now, and a rebuilt one keeps it.
    QSet<QString> selected;
    for (const QModelIndex &index : m_treeView->selectionModel()->selectedRows(2))
        selected.insert(index.data().toString());
    const int current = m_treeView->currentIndex().row();

    m_updating = true; // a button that is disabled for a moment would lose the focus
    m_model->rows.clear();
    m_model->setRowCount(0); // not clear(), which would forget the columns' widths
    m_model->setHorizontalHeaderLabels({tr("Spectrum"), tr("Comment"), tr("Id"), tr("Inverter")});
    for (const UiInfo::InfoPointer &info : m_uiInfo->spectrumInfos())
        addRow(info);

    QItemSelection rows;
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (selected.contains(m_model->item(row, 2)->text()))
            rows.select(m_model->index(row, 0), m_model->index(row, m_model->columnCount() - 1));
    m_treeView->selectionModel()->setCurrentIndex(m_model->index(std::min(current, m_model->rowCount() - 1), 0),
                                                  QItemSelectionModel::NoUpdate);
    m_treeView->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    m_updating = false;
    selectionChanged();
}

void MorvantideInfoWindow::selectionChanged()
{
    if (m_updating)
        return;
    const int count = m_treeView->selectionModel()->selectedRows().size();
    const QWidget *focused = focusWidget();
    if (count == 0 && (focused == m_renameButton || focused == m_colorButton || focused == m_deleteButton))
        m_treeView->setFocus(); // else it would go to "Close", and another Return with it
    m_renameButton->setEnabled(count > 0);
    m_deleteButton->setEnabled(count > 0);
    m_colorButton->setEnabled(count == 1);
}

QList<UiInfo::InfoPointer> MorvantideInfoWindow::selectedSpectra() const
{
    QList<UiInfo::InfoPointer> infos;
    for (const UiInfo::InfoPointer &info : m_uiInfo->spectrumInfos()) {
        const int row = m_model->rows.key(info.get(), -1);
        if (row >= 0 && m_treeView->selectionModel()->isRowSelected(row, {}))
            infos.append(info);
    }
    return infos;
}

void MorvantideInfoWindow::deleteSpectrum()
{
    for (const UiInfo::InfoPointer &info : selectedSpectra())
        Q_EMIT requestSpectrumRemove(info.get());
}

void MorvantideInfoWindow::changeSpectrumColor()
{
    const QList<UiInfo::InfoPointer> selected = selectedSpectra();
    if (selected.size() != 1)
        return;
    const UiInfo::InfoKey info = selected.first().get();
    const QColor color = QColorDialog::getColor(m_uiInfo->spectrumColor(info), this,
                                                tr("Select color for %1").arg(m_uiInfo->spectrumName(info)));
    if (!color.isValid())
        return;
    m_uiInfo->setSpectrumColor(info, color);
    m_uiInfo->publish();
}

void MorvantideInfoWindow::renameSpectrum()
{
    const QList<UiInfo::InfoPointer> selected = selectedSpectra();
    if (selected.isEmpty())
        return;
    QString comment = m_uiInfo->spectrumComment(selected.first().get());
    for (const UiInfo::InfoPointer &info : selected)
        if (m_uiInfo->spectrumComment(info.get()) != comment)
            comment.clear();
    bool accepted = false;
    comment = QInputDialog::getText(this, tr("Spectrum comment"), tr("Enter comment for spectrum"), QLineEdit::Normal,
                                    comment, &accepted);
    if (!accepted)
        return;
    for (const UiInfo::InfoPointer &info : selected)
        m_uiInfo->setSpectrumComment(info.get(), comment);
    m_uiInfo->publish();
}
