#include "gui/common/dataexport/exportsetuptree.h"

#include "gui/browser/controls/actionsmenu.h"
#include "gui/browser/controls/plaintooltip.h"
#include "gui/common/dataexport/exportfieldkinds.h"
#include "gui/common/dataexport/exportfieldpage.h"
#include "gui/common/dataexport/generalexportsettingsform.h"
#include "gui/common/iconhelp.h"
#include "gui/common/menubutton.h"
#include "log/logger.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>

namespace {

constexpr int treeCharacters = 30;
constexpr int mostCharacters = 500; // of a text in it, which may hold very many names

QToolButton *makeButton(QAction *action, QWidget *parent)
{
    auto *const button = new QToolButton(parent);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

ExportSetupTree::ExportSetupTree(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent)
    : QWidget(parent), m_uiInfo(uiInfo), m_tree(new QTreeWidget(this)), m_stack(new QStackedWidget(this)),
      m_general(new GeneralExportSettingsForm(uiInfo))
{
    m_tree->setObjectName(QStringLiteral("setupTree"));
    m_tree->setAccessibleName(tr("Pages of the export settings"));
    m_tree->setHeaderHidden(true);
    m_tree->setTabKeyNavigation(false);
    auto *const hint = new QLabel(tr("Each field adds columns to the table, in the order of this list."));
    hint->setWordWrap(true);
    hint->setAlignment(Qt::AlignTop);
    m_generalItem = new QTreeWidgetItem(m_tree, {tr("General export settings")});
    m_fieldsItem = new QTreeWidgetItem(m_tree, {tr("Fields")});
    m_fieldsItem->setExpanded(true);
    makeActions();
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makeTreeSide());
    layout->addWidget(m_stack, 1);
    m_generalPage = addPage(m_general);
    m_fieldsPage = addPage(hint);

    connect(m_general, &GeneralExportSettingsForm::changed, this, &ExportSetupTree::changed);
    connect(m_tree, &QTreeWidget::currentItemChanged, this, &ExportSetupTree::showCurrent);
    showGeneral();
}

void ExportSetupTree::makeActions()
{
    for (const ExportFieldKind &kind : exportFieldKinds()) {
        m_addActions << new QAction(kind.command, this);
        const QVariantMap map{{QStringLiteral("type"), kind.type}};
        connect(m_addActions.last(), &QAction::triggered, this, [this, map] { addFields({map}); });
    }
    auto *const fromPlots = new QAction(tr("Add fields from timeseries plots"), this);
    connect(fromPlots, &QAction::triggered, this, &ExportSetupTree::requestPlotFields);
    m_addActions.insert(1, fromPlots);

    m_up = new QAction(namedIcon(QStringLiteral("arrow-up")), tr("Move up"), m_tree);
    m_down = new QAction(namedIcon(QStringLiteral("arrow-down")), tr("Move down"), m_tree);
    m_remove = new QAction(namedIcon(QStringLiteral("remove")), tr("Remove"), m_tree);
    m_up->setShortcut(Qt::CTRL + Qt::Key_Up);
    m_down->setShortcut(Qt::CTRL + Qt::Key_Down);
    m_remove->setShortcut(Qt::Key_Delete);
    for (QAction *action : {m_up, m_down, m_remove})
        action->setShortcutContext(Qt::WidgetShortcut);
    m_tree->addActions({m_up, m_down, m_remove});
    Tsb::offerActionsMenu(m_tree);
    connect(m_up, &QAction::triggered, this, [this] { moveCurrent(-1); });
    connect(m_down, &QAction::triggered, this, [this] { moveCurrent(1); });
    connect(m_remove, &QAction::triggered, this, &ExportSetupTree::removeCurrent);
}

QWidget *ExportSetupTree::makeTreeSide()
{
    auto *const side = new QWidget(this);
    auto *const add = new MenuButton(side);
    add->setText(tr("Add fields"));
    add->setFocusPolicy(Qt::TabFocus);
    auto *const menu = new QMenu(add);
    menu->addActions(m_addActions);
    add->setMenu(menu);
    auto *const buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addStretch();
    for (QAction *action : {m_up, m_down, m_remove})
        buttons->addWidget(makeButton(action, side));
    auto *const layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tree);
    layout->addLayout(buttons);
    side->setFixedWidth(fontMetrics().averageCharWidth() * treeCharacters);
    return side;
}

QWidget *ExportSetupTree::addPage(QWidget *form)
{
    auto *const page = new QScrollArea(m_stack);
    page->setFrameShape(QFrame::NoFrame);
    page->setFocusPolicy(Qt::NoFocus); // what it holds has the focus, and scrolls into sight
    page->setWidgetResizable(true);
    page->setWidget(form);
    m_stack->addWidget(page);
    Q_EMIT pageAdded();
    return page;
}

int ExportSetupTree::wantedWidth() const
{
    int widest = 0;
    for (const auto *page : m_stack->findChildren<QScrollArea *>(QString(), Qt::FindDirectChildrenOnly))
        widest =
            std::max(widest, page->widget()->minimumSizeHint().width() + page->verticalScrollBar()->sizeHint().width());
    return layout()->itemAt(0)->widget()->minimumWidth() + layout()->spacing() + widest;
}

// ---- fields

QVariantList ExportSetupTree::fields() const
{
    QVariantList list;
    for (const Field &field : m_fields)
        list << field.form->settings();
    return list;
}

void ExportSetupTree::setFields(const QVariantList &fields)
{
    showGeneral();
    for (const Field &field : m_fields) {
        delete field.item;
        delete field.page;
    }
    m_fields.clear();
    append(fields);
    Q_EMIT changed();
}

void ExportSetupTree::addFields(const QVariantList &fields)
{
    const std::size_t first = m_fields.size();
    append(fields);
    if (first < m_fields.size())
        m_tree->setCurrentItem(m_fields[first].item);
    Q_EMIT changed();
}

void ExportSetupTree::append(const QVariantList &fields)
{
    std::size_t leftOut = 0;
    for (const QVariant &field : fields) {
        const QVariantMap map = field.toMap();
        const ExportFieldKind *const kind = exportFieldKind(map.value(QStringLiteral("type")).toString());
        if (kind && m_fields.size() < mostFields)
            addField(*kind, map);
        else if (kind)
            ++leftOut;
    }
    if (leftOut > 0)
        Log::Logger(QStringLiteral("dataexport"))
            .log(Log::Warning, QStringLiteral("%1 fields were left out: the dialog has no more than %2.")
                                   .arg(QString::number(leftOut), QString::number(mostFields)));
}

void ExportSetupTree::addField(const ExportFieldKind &kind, const QVariantMap &map)
{
    ExportFieldPage *const form = kind.make(m_uiInfo, nullptr);
    form->setSettings(map);
    m_fields.push_back({new QTreeWidgetItem(m_fieldsItem), form, addPage(form)});
    connect(form, &ExportFieldPage::treeItemTextChanged, this, [this, form] { updateFieldItemText(form); });
    connect(form, &ExportFieldPage::changed, this, &ExportSetupTree::changed);
    updateFieldItemText(form);
}

void ExportSetupTree::updateFieldItemText(const ExportFieldPage *form)
{
    for (const Field &field : m_fields) {
        if (field.form != form)
            continue;
        const QString text = form->treeItemText().left(mostCharacters);
        field.item->setText(0, text);
        field.item->setToolTip(0, Tsb::plainToolTip(text));
    }
}

int ExportSetupTree::currentField() const
{
    return m_fieldsItem->indexOfChild(m_tree->currentItem());
}

void ExportSetupTree::showGeneral()
{
    m_tree->setCurrentItem(m_generalItem);
    showCurrent();
}

void ExportSetupTree::showCurrent()
{
    const int place = currentField();
    const int count = int(m_fields.size());
    m_up->setEnabled(place > 0);
    m_down->setEnabled(place >= 0 && place + 1 < count);
    m_remove->setEnabled(place >= 0);
    if (place >= 0 && place < count)
        m_stack->setCurrentWidget(m_fields[std::size_t(place)].page);
    else
        m_stack->setCurrentWidget(m_tree->currentItem() == m_fieldsItem ? m_fieldsPage : m_generalPage);
}

void ExportSetupTree::moveCurrent(int steps)
{
    const int from = currentField(), to = from + steps;
    if (from < 0 || to < 0 || to >= int(m_fields.size()))
        return;
    std::swap(m_fields[std::size_t(from)], m_fields[std::size_t(to)]);
    QTreeWidgetItem *const item = m_fieldsItem->takeChild(from);
    m_fieldsItem->insertChild(to, item);
    m_tree->setCurrentItem(item);
    Q_EMIT changed();
}

void ExportSetupTree::removeCurrent()
{
    const int place = currentField();
    if (place < 0)
        return;
    const Field field = m_fields[std::size_t(place)];
    m_fields.erase(m_fields.begin() + place);
    delete field.item; // another one becomes current
    delete field.page;
    showCurrent();
    Q_EMIT changed();
}
