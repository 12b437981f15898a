#include "gui/frame/measuringdock.h"

#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/iconhelp.h"
#include "gui/common/seencontents.h"
#include "gui/frame/measuringmodel.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QStackedWidget>
#include <QTableView>

#include <algorithm>

namespace {

constexpr int dragInterval = 30, changeInterval = 300; // ms

} // namespace

MeasuringDock::MeasuringDock(Tsb::TimeSeriesBrowser *browser, QWidget *parent)
    : QDockWidget(tr("Measuring"), parent), m_browser(browser), m_model(new MeasuringModel(this)),
      m_table(new QTableView(this)), m_hint(new QLabel(this)), m_pages(new QStackedWidget(this)),
      m_contents(new SeenContents(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("measuringDock"));
    m_hint->setText(tr("The keys 1 and 2 set cursors where the pointer is, over a plot or the time axis."));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    makeTable();
    m_pages->addWidget(m_hint);
    m_pages->addWidget(m_table);
    setWidget(m_pages);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, m_contents, &SeenContents::setStale);
    connect(m_browser->measuringCursors(), &Tsb::MeasuringCursors::changed, this, &MeasuringDock::cursorsChanged);
    connect(m_browser, &Tsb::TimeSeriesBrowser::curvesChanged, this, [this] {
        if (m_hadCursors && !m_timer.isActive())
            m_timer.start(changeInterval);
    });
}

void MeasuringDock::makeTable()
{
    m_table->setModel(m_model);
    m_table->setAccessibleName(tr("Values at the measuring cursors and between them"));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setHighlightSections(false);
    auto *const copyRows =
        new QAction(namedIcon(QStringLiteral("clipboard-copy")), tr("&Copy selected rows or all"), this);
    copyRows->setShortcut(QKeySequence::Copy);
    copyRows->setShortcutContext(Qt::WidgetWithChildrenShortcut); // other docks copy by the same key
    connect(copyRows, &QAction::triggered, this, &MeasuringDock::copy);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_table->addAction(copyRows);
    m_table->addActions(m_browser->measuringActions());
}

/// The first cursor brings the dock from behind its tab: it tells what the key did.
void MeasuringDock::cursorsChanged()
{
    const bool haveCome = m_browser->measuringCursors()->areAny();
    if (haveCome && !m_hadCursors && isVisible())
        raise();
    m_hadCursors = haveCome;
    if (!m_timer.isActive() || m_timer.interval() > dragInterval)
        m_timer.start(dragInterval);
}

void MeasuringDock::refresh()
{
    const Tsb::MeasuringCursors &cursors = *m_browser->measuringCursors();
    m_model->setFigures(cursors.times(), cursors.areAny() ? m_browser->measure() : QVector<Tsb::CurveFigures>(),
                        m_browser->timeView()->timeOffset());
    m_pages->setCurrentWidget(cursors.areAny() ? static_cast<QWidget *>(m_table) : m_hint);
    const int count = int(cursors.areAny()) + int(cursors.areBoth());
    if (count > m_fittedFor)
        m_table->resizeColumnsToContents();
    m_fittedFor = count;
}

void MeasuringDock::copy()
{
    if (m_timer.isActive())
        refresh();
    QList<int> rows;
    for (const QModelIndex &index : m_table->selectionModel()->selectedRows())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    if (rows.isEmpty()) {
        for (int row = 0; row < m_model->rowCount(); ++row)
            rows << row;
    }
    QGuiApplication::clipboard()->setText(m_model->textOf(rows));
}
