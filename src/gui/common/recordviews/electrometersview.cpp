#include "gui/common/recordviews/electrometersview.h"

#include "gui/common/iconhelp.h"
#include "gui/common/recordviews/electrometersmodel.h"
#include "gui/common/recordviews/electrometertext.h"
#include "gui/common/recordviews/headerstate.h"
#include "gui/common/recordviews/plotquestion.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QTreeView>

#include <algorithm>

namespace RecordViews {

namespace {

constexpr int nameRoom = 15, valueRoom = 10; // pixels beside the text
constexpr int longestName = 12;

const QLatin1String selectedElectrometerKey("elmview_selected_parameter");

} // namespace

ElectrometersView::ElectrometersView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : RecordView(std::move(uiInfo), parent, flags), m_model(new ElectrometersModel(this)),
      m_treeView(new QTreeView(this))
{
    setObjectName(QStringLiteral("electrometersView"));
    setWindowTitle(tr("Electrometer signals"));
    setupTree();
    makeActions();
    setWidget(m_treeView);
    connect(m_treeView, &QTreeView::doubleClicked, this, &ElectrometersView::activateChannel);
    connect(m_treeView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &ElectrometersView::selectParameter);
    connect(m_model, &QAbstractItemModel::modelReset, this, &ElectrometersView::fitNames);
    connect(m_treeView->header(), &QHeaderView::sectionResized, this, &ElectrometersView::takeWidths);
    connect(m_treeView->header(), &QHeaderView::sectionMoved, this, &ElectrometersView::takeWidths);
    connect(this->uiInfo().get(), &UiInfo::highlightsChanged, this, &ElectrometersView::setRecordStale);
}

void ElectrometersView::setupTree()
{
    m_treeView->setModel(m_model);
    m_treeView->setAccessibleName(windowTitle());
    m_treeView->setRootIsDecorated(false);
    m_treeView->setAllColumnsShowFocus(true);
    m_treeView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_treeView->setUniformRowHeights(true); // else each step would measure every row
    m_treeView->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_treeView->header()->setStretchLastSection(false);
    sizeColumns();
}

void ElectrometersView::sizeColumns()
{
    const char *const widestTexts[] = {"pos", "00.000", "0000.000", "0000.000", "0000.000"};
    for (int column = 0; column < ElectrometersModel::ColumnCount; ++column) {
        const int text = fontMetrics().horizontalAdvance(QLatin1String(widestTexts[column]));
        m_treeView->header()->resizeSection(column, text + (column == 0 ? nameRoom : valueRoom));
    }
}

/// Widens the first column to the names, as far as there is room beside the values.
void ElectrometersView::fitNames()
{
    if (m_hasOwnWidths)
        return;
    QHeaderView *const header = m_treeView->header();
    int width = header->sectionSize(ElectrometersModel::NameColumn);
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QString name = m_model->index(row, ElectrometersModel::NameColumn).data().toString().left(longestName);
        width = std::max(width, fontMetrics().horizontalAdvance(name) + nameRoom);
    }
    m_isFitting = true;
    header->resizeSection(ElectrometersModel::NameColumn, width);
    m_isFitting = false;
}

void ElectrometersView::takeWidths()
{
    if (m_isFitting)
        return;
    m_hasOwnWidths = true;
    Q_EMIT setupChanged();
}

QAction *ElectrometersView::addTreeAction(const QString &icon, const QString &text, void (ElectrometersView::*slot)())
{
    auto *const action = new QAction(namedIcon(icon), text, this);
    connect(action, &QAction::triggered, this, slot);
    m_treeView->addAction(action);
    return action;
}

void ElectrometersView::makeActions()
{
    const QString copyIcon = QStringLiteral("clipboard-copy");
    QAction *const plot = addTreeAction(QStringLiteral("add-plot"), tr("Plot selected electrometers"),
                                        &ElectrometersView::showSelectedPlots);
    plot->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    plot->setShortcutContext(Qt::WidgetShortcut);
    addTreeAction(copyIcon, tr("Copy all currents to clipboard"), &ElectrometersView::copyToClipboard);
    QAction *const copy = addTreeAction({}, tr("Copy selected rows"), &ElectrometersView::copySelectedRows);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut); // other docks copy by the same key
}

ElectrometersView::~ElectrometersView()
{
    // The list goes later than this, and not without signals.
    m_treeView->header()->disconnect(this);
    m_treeView->selectionModel()->disconnect(this);
}

QString ElectrometersView::viewName() const
{
    return QStringLiteral("electrometers");
}

QVariantMap ElectrometersView::setup() const
{
    QVariantMap setup;
    storeHeaderState(setup, *m_treeView->header());
    return setup;
}

void ElectrometersView::restoreSetup(const QVariantMap &setup)
{
    if (restoreHeaderState(*m_treeView->header(), setup))
        m_hasOwnWidths = true;
}

void ElectrometersView::refreshSetup()
{
    m_model->setMetadata(uiInfo()->metadata());
}

void ElectrometersView::refreshRecord()
{
    m_model->setHighlights(uiInfo()->highlightedElectrometers());
    m_model->setRecord(record());
}

// ---- the clipboard

void ElectrometersView::copyToClipboard()
{
    const auto metadata = uiInfo()->metadata();
    if (record() && metadata)
        QGuiApplication::clipboard()->setText(electrometersText(*record(), *metadata));
}

void ElectrometersView::copySelectedRows()
{
    QString text;
    const QModelIndexList rows = m_treeView->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        QStringList cells;
        for (int column = 0; column < m_model->columnCount(); ++column)
            cells << row.sibling(row.row(), column).data().toString();
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

// ---- plots

void ElectrometersView::selectParameter(QModelIndex newindex, QModelIndex)
{
    if (newindex.isValid())
        uiInfo()->setValue(selectedElectrometerKey, newindex.data(Qt::UserRole));
}

void ElectrometersView::activateChannel(QModelIndex index)
{
    if (index.isValid())
        Q_EMIT uiInfo()->requestElectrometerScatterplot(index.data(Qt::UserRole).toInt());
}

void ElectrometersView::showSelectedPlots()
{
    QVector<int> electrometers;
    const QModelIndexList rows = m_treeView->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        electrometers << row.data(Qt::UserRole).toInt();
    if (!confirmPlots(this, electrometers.size()))
        return;
    for (const int electrometer : qAsConst(electrometers))
        Q_EMIT uiInfo()->requestElectrometerScatterplot(electrometer);
    m_treeView->clearSelection();
}

} // namespace RecordViews
