#include "gui/common/recordviews/vargridview.h"

#include "gui/common/recordviews/plotquestion.h"
#include "gui/common/recordviews/vargridviewmodel.h"
#include "log/logger.h"

#include <QAction>
#include <QActionGroup>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace RecordViews {

namespace {

const QLatin1String selectedLayoutKey("selected_layout");
constexpr int widthMargin = 10;
constexpr int greatestWidth = 2000;

} // namespace

VarGridView::VarGridView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : RecordView(std::move(uiInfo), parent, flags), m_model(new VarGridViewModel(this)),
      m_pages(new QStackedWidget(this)), m_layoutActionGroup(new QActionGroup(this))
{
    setObjectName(QStringLiteral("varGridView"));
    setWindowTitle(tr("Record variables"));
    m_hint = new QLabel(tr("There are no layouts. They are read from the file \"var_grid_layouts.yaml\" in the folder "
                           "of the data, or beside the program."),
                        m_pages);
    m_hint->setWordWrap(true);
    m_hint->setAlignment(Qt::AlignCenter);
    m_pages->addWidget(m_hint);
    m_pages->addWidget(makeGridPage());
    setWidget(m_pages);
    connect(m_layoutActionGroup, &QActionGroup::triggered, this, &VarGridView::layoutActionTriggered);
    connect(m_model, &VarGridViewModel::formatIsWrong, this, [this](const QString &format) {
        Log::Logger(QStringLiteral("gui"))
            .log(Log::Warning, QStringLiteral("The layout '%1' has a cell with a wrong format: '%2'")
                                   .arg(m_model->layout().name, format.left(100)));
    });
    connect(this->uiInfo().get(), &UiInfo::highlightsChanged, this, &VarGridView::setRecordStale);
}

VarGridView::~VarGridView()
{
    m_tableView->selectionModel()->disconnect(this); // the table goes later than this, and not without signals
}

QWidget *VarGridView::makeGridPage()
{
    auto *const page = new QWidget(m_pages);
    m_layoutButton = new QToolButton(page);
    m_layoutButton->setPopupMode(QToolButton::InstantPopup);
    m_layoutButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_layoutButton->setFocusPolicy(Qt::TabFocus);
    m_layoutButton->setAccessibleName(tr("Layout"));
    m_layoutButton->setMenu(new QMenu(m_layoutButton));
    m_tableView = new QTableView(page);
    m_tableView->setModel(m_model);
    m_tableView->setAccessibleName(tr("Record variables"));
    m_tableView->setShowGrid(false);
    m_tableView->setCornerButtonEnabled(false);
    m_tableView->setTabKeyNavigation(false);
    m_tableView->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *const layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_layoutButton);
    layout->addWidget(m_tableView);
    auto *const plot = new QAction(tr("Plot variables of this cell"), m_tableView);
    plot->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    plot->setShortcutContext(Qt::WidgetShortcut);
    connect(plot, &QAction::triggered, this, [this] { activateParameter(m_tableView->currentIndex()); });
    m_tableView->addAction(plot);
    connect(m_tableView, &QTableView::doubleClicked, this, &VarGridView::activateParameter);
    connect(m_tableView->selectionModel(), &QItemSelectionModel::currentChanged, this, &VarGridView::selectParameter);
    return page;
}

QString VarGridView::viewName() const
{
    return QStringLiteral("vargrid");
}

QVariantMap VarGridView::setup() const
{
    return {{selectedLayoutKey, m_selectedLayout}};
}

void VarGridView::restoreSetup(const QVariantMap &setup)
{
    const QVariant name = setup.value(selectedLayoutKey);
    m_selectedLayout = name.type() == QVariant::String ? name.toString() : QString();
    updateSetup();
}

void VarGridView::selectParameter(QModelIndex, QModelIndex) {}

void VarGridView::activateParameter(QModelIndex index)
{
    const VarGridCell *const cell = m_model->cell(index);
    if (!cell)
        return;
    const QStringList names = cell->variables; // the plots may change the layouts
    if (!confirmPlots(this, names.size()))
        return;
    for (const QString &name : names)
        Q_EMIT uiInfo()->requestVariableScatterplot(name);
}

void VarGridView::layoutActionTriggered(QAction *action)
{
    m_selectedLayout = action->data().toString();
    showLayout();
    setRecordStale();
    Q_EMIT setupChanged();
}

void VarGridView::refreshSetup()
{
    fillLayoutMenu();
    showLayout();
}

void VarGridView::fillLayoutMenu()
{
    qDeleteAll(m_layoutActionGroup->actions());
    for (const VarGridLayout &layout : uiInfo()->gridLayouts()) {
        QString text = layout.name;
        auto *const action = new QAction(text.replace(QLatin1Char('&'), QLatin1String("&&")), m_layoutActionGroup);
        action->setData(layout.name);
        action->setCheckable(true);
        m_layoutButton->menu()->addAction(action);
    }
}

void VarGridView::showLayout()
{
    const std::vector<VarGridLayout> &layouts = uiInfo()->gridLayouts();
    m_pages->setCurrentIndex(layouts.empty() ? 0 : 1);
    if (layouts.empty())
        return m_model->setLayout({}, nullptr);
    // A chosen layout that these data don't have stays chosen for the next.
    auto shown = std::find_if(layouts.begin(), layouts.end(),
                              [this](const VarGridLayout &layout) { return layout.name == m_selectedLayout; });
    if (shown == layouts.end())
        shown = layouts.begin();
    QAction *const action = m_layoutActionGroup->actions().value(int(shown - layouts.begin()));
    action->setChecked(true);
    QString name = action->data().toString(); // the entry's text may hold a mark, which were a key of the button
    m_layoutButton->setText(name.replace(QLatin1Char('&'), QLatin1String("&&")));
    m_layoutButton->setVisible(layouts.size() > 1);
    m_model->setFont(font());
    m_model->setRecord(record());
    m_model->setLayout(*shown, uiInfo()->metadata().get());
    m_tableView->verticalHeader()->setVisible(shown->firstColumnIsHeader);
    sizeColumns();
}

void VarGridView::sizeColumns()
{
    m_tableView->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + widthMargin / 2);
    for (int section = 0; section < m_model->columnCount(); ++section) {
        const VarGridColumn &column = m_model->column(section);
        int width = column.width;
        if (width <= 0 && !column.widthString.isEmpty())
            width = m_tableView->fontMetrics().horizontalAdvance(column.widthString.left(greatestWidth)) + widthMargin;
        if (width > 0)
            m_tableView->setColumnWidth(section, std::min(width, greatestWidth));
        else
            m_tableView->resizeColumnToContents(section);
    }
}

void VarGridView::refreshRecord()
{
    m_model->setHighlights(uiInfo()->highlightedVariables());
    m_model->setRecord(record());
}

void VarGridView::changeEvent(QEvent *event)
{
    RecordView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateSetup();
}

} // namespace RecordViews
