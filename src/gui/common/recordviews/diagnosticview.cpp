#include "gui/common/recordviews/diagnosticview.h"

#include "gui/common/iconhelp.h"
#include "gui/common/recordviews/diagnosticmodel.h"
#include "gui/common/recordviews/headerstate.h"
#include "gui/common/recordviews/plotquestion.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>

namespace RecordViews {

namespace {

constexpr int nameWidth = 200;
constexpr int valueWidth = 30; // the last column takes the rest
constexpr int leastWidth = 10;

const QLatin1String selectedParameterKey("diagview_selected_parameter");

} // namespace

DiagnosticView::DiagnosticView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : RecordView(std::move(uiInfo), parent, flags), m_model(new DiagnosticModel(this))
{
    setObjectName(QStringLiteral("diagnosticsView"));
    setWindowTitle(tr("Record variable list"));
    setWidget(makeContents());
    makeActions();
    connect(m_filterEdit, &QLineEdit::textChanged, this, &DiagnosticView::setFilter);
    connect(m_treeView, &QTreeView::doubleClicked, this, &DiagnosticView::activateParameter);
    connect(m_treeView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &DiagnosticView::selectParameter);
    connect(m_treeView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection &, const QItemSelection &lost) { selectionChanged(!lost.isEmpty()); });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { m_hiddenSelection.clear(); });
    connect(m_treeView->header(), &QHeaderView::sectionResized, this, &RecordView::setupChanged);
    connect(m_treeView->header(), &QHeaderView::sectionMoved, this, &RecordView::setupChanged);
    connect(this->uiInfo().get(), &UiInfo::highlightsChanged, this, &DiagnosticView::setRecordStale);
}

QWidget *DiagnosticView::makeContents()
{
    auto *const contents = new QWidget(this);
    m_treeView = new QTreeView(contents);
    m_treeView->setModel(m_model);
    m_treeView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_treeView->setAllColumnsShowFocus(true);
    m_treeView->setExpandsOnDoubleClick(false);
    m_treeView->setRootIsDecorated(false);
    m_treeView->setUniformRowHeights(true); // else each step would measure every row
    m_treeView->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_treeView->header()->setMinimumSectionSize(leastWidth);
    m_treeView->header()->resizeSection(DiagnosticModel::NameColumn, nameWidth);
    m_treeView->header()->resizeSection(DiagnosticModel::ValueColumn, valueWidth);
    m_filterEdit = new QLineEdit(contents);
    m_filterEdit->setObjectName(QStringLiteral("filterLine"));
    m_treeView->setAccessibleName(tr("Record variable list"));
    m_filterEdit->setPlaceholderText(tr("Filter by name"));
    m_filterEdit->setAccessibleName(m_filterEdit->placeholderText());
    m_filterEdit->setToolTip(tr("Variables whose name or unit holds every word. A word behind \"!\" is one that they "
                                "must not hold."));
    auto *const layout = new QVBoxLayout(contents);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_filterEdit);
    layout->addWidget(m_treeView);
    QWidget::setTabOrder(m_filterEdit, m_treeView);
    return contents;
}

void DiagnosticView::makeActions()
{
    m_clearAction = new QAction(namedIcon(QStringLiteral("clear-text")), tr("Clear filter"), this);
    m_filterEdit->addAction(m_clearAction, QLineEdit::TrailingPosition);
    m_clearAction->setVisible(false); // not before: a new button of a line is shown in any case
    connect(m_clearAction, &QAction::triggered, this, &DiagnosticView::clearFilter);
    auto *const plot = new QAction(namedIcon(QStringLiteral("add-plot")), tr("Plot selected parameters"), this);
    plot->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    plot->setShortcutContext(Qt::WidgetShortcut);
    connect(plot, &QAction::triggered, this, &DiagnosticView::showSelectedPlots);
    auto *const copy =
        new QAction(namedIcon(QStringLiteral("clipboard-copy")), tr("Copy selected values to clipboard"), this);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut); // other docks copy by the same key
    connect(copy, &QAction::triggered, this, &DiagnosticView::copyParameterValues);
    m_treeView->addActions({plot, copy});
}

DiagnosticView::~DiagnosticView()
{
    // The list goes later than this, and not without signals.
    m_treeView->header()->disconnect(this);
    m_treeView->selectionModel()->disconnect(this);
}

QString DiagnosticView::viewName() const
{
    return QStringLiteral("diagnostics");
}

QVariantMap DiagnosticView::setup() const
{
    QVariantMap setup;
    storeHeaderState(setup, *m_treeView->header());
    return setup;
}

void DiagnosticView::restoreSetup(const QVariantMap &setup)
{
    restoreHeaderState(*m_treeView->header(), setup);
}

void DiagnosticView::refreshSetup()
{
    m_model->setMetadata(uiInfo()->metadata());
}

void DiagnosticView::refreshRecord()
{
    m_model->setHighlights(uiInfo()->highlightedVariables());
    m_model->setRecord(record());
}

// ---- the filter

void DiagnosticView::clearFilter()
{
    setFilter({});
}

void DiagnosticView::setFilter(QString filter)
{
    if (m_filterEdit->text() != filter)
        return m_filterEdit->setText(filter); // which calls back
    m_clearAction->setVisible(!filter.isEmpty());
    std::vector<int> selected;
    const QModelIndexList rows = selectedRows();
    for (const QModelIndex &row : rows)
        selected.push_back(m_model->groupOf(row));
    selected.insert(selected.end(), m_hiddenSelection.begin(), m_hiddenSelection.end());
    const int current = m_model->groupOf(m_treeView->currentIndex());
    m_isFiltering = true;
    m_model->setFilter(filter);
    selectGroups(selected, current);
    m_isFiltering = false;
}

void DiagnosticView::selectGroups(const std::vector<int> &groups, int current)
{
    m_hiddenSelection.clear();
    QItemSelection selection;
    for (const int group : groups) {
        const int row = m_model->rowOf(group);
        if (row < 0)
            m_hiddenSelection.push_back(group);
        else if (!selection.isEmpty() && selection.last().bottom() + 1 == row) // thousands of ranges would be slow
            selection.last() = QItemSelectionRange(selection.last().topLeft(), m_model->index(row, 1));
        else
            selection.append(QItemSelectionRange(m_model->index(row, 0), m_model->index(row, 1)));
    }
    QItemSelectionModel *const model = m_treeView->selectionModel();
    model->select(selection, QItemSelectionModel::ClearAndSelect);
    const QModelIndex index = m_model->index(m_model->rowOf(current), 0);
    if (index.isValid()) {
        model->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        m_treeView->scrollTo(index);
    }
}

void DiagnosticView::selectionChanged(bool hasLostRows)
{
    if (hasLostRows && !m_isFiltering)
        m_hiddenSelection.clear(); // the user began anew
}

// ---- the selected variables

QModelIndexList DiagnosticView::selectedRows() const
{
    return m_treeView->selectionModel()->selectedRows();
}

void DiagnosticView::selectParameter(QModelIndex newindex, QModelIndex)
{
    if (newindex.isValid() && !m_isFiltering)
        uiInfo()->setValue(selectedParameterKey, m_model->mainVariable(newindex).name);
}

void DiagnosticView::activateParameter(QModelIndex index)
{
    if (m_model->groupOf(index) >= 0)
        Q_EMIT uiInfo()->requestVariableScatterplot(m_model->mainVariable(index).name);
}

void DiagnosticView::showSelectedPlots()
{
    QStringList names;
    const QModelIndexList rows = selectedRows();
    for (const QModelIndex &row : rows)
        names << m_model->mainVariable(row).name;
    if (!confirmPlots(this, names.size()))
        return;
    for (const QString &name : qAsConst(names))
        Q_EMIT uiInfo()->requestVariableScatterplot(name);
}

void DiagnosticView::copyParameterValues()
{
    QString text;
    const QModelIndexList rows = selectedRows();
    for (const QModelIndex &row : rows)
        text += m_model->textToCopy(row) + QLatin1Char('\n');
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

} // namespace RecordViews
