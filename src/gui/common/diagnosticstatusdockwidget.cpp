#include "gui/common/diagnosticstatusdockwidget.h"

#include "gui/common/docktitlebar.h"
#include "gui/common/flagcommands.h"
#include "gui/common/notesbrowser.h"
#include "gui/common/seencontents.h"
#include "gui/common/statustext.h"
#include "log/logger.h"
#include "store/datastore.h"

#include <QMenu>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

namespace {

constexpr int minuteInterval = 60000; // ms
constexpr Ticks day(ticksPerDay);

const char statusStyle[] = "a { text-decoration: none; color: palette(window-text); } "
                           ".dimmed a { color: palette(mid); } .dimmed .comment { color: palette(mid); } "
                           ".warning { color: #edd400; font-weight: bold; } "
                           ".error { color: #cc0000; font-weight: bold; }";

} // namespace

DiagnosticStatusDockWidget::DiagnosticStatusDockWidget(std::shared_ptr<UiInfo> uiInfo, QWidget *parent)
    : QDockWidget(tr("Diagnostic status"), parent), m_uiInfo(std::move(uiInfo)), m_browser(new NotesBrowser(this)),
      m_titleBar(new DockTitleBar(this)), m_contents(new SeenContents(this, [this] { redraw(); })),
      m_minuteTimer(new QTimer(this)), m_drawTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("diagnosticStatus"));
    m_browser->setAccessibleName(tr("Flags of all records"));
    m_browser->document()->setDefaultStyleSheet(QString::fromLatin1(statusStyle));
    setWidget(m_browser);
    connect(m_browser, &QTextBrowser::anchorClicked, this, &DiagnosticStatusDockWidget::flagBrowserClicked);
    connect(m_browser, &NotesBrowser::linkMenuRequested, this, &DiagnosticStatusDockWidget::addFlagCommands);
    m_drawTimer->setSingleShot(true);
    connect(m_drawTimer, &QTimer::timeout, m_contents, &SeenContents::setStale);
    connect(m_minuteTimer, &QTimer::timeout, m_contents, &SeenContents::setStale);
    m_minuteTimer->start(minuteInterval);
    flagsChanged();
}

void DiagnosticStatusDockWidget::addRecord(const Spectrometer::FullRecordPointer &record)
{
    if (m_counts.add(*record))
        flagsChanged();
}

void DiagnosticStatusDockWidget::addRecords(const Datastore &store)
{
    for (const auto &record : store.records())
        m_counts.add(*record);
    flagsChanged();
}

void DiagnosticStatusDockWidget::setMode(int mode)
{
    m_mode = mode;
    flagsChanged();
}

void DiagnosticStatusDockWidget::clear()
{
    m_counts.clear();
    m_contents->refreshNow();
}

void DiagnosticStatusDockWidget::flagsChanged()
{
    if (!m_drawTimer->isActive())
        m_drawTimer->start(0);
}

void DiagnosticStatusDockWidget::redraw()
{
    StatusText::Texts texts;
    if (m_mode == ByCount) {
        texts = StatusText::byCount(m_counts);
    } else if (m_mode == ByTime) {
        const RecordTime now = currentRecordTime();
        m_counts.forgetBefore(now - day);
        texts = StatusText::byTime(m_counts, now);
    } else {
        return;
    }
    m_titleBar->setNews(texts.summary);
    setTable(texts.table);
}

void DiagnosticStatusDockWidget::setTable(const QString &html)
{
    if (html == m_table)
        return; // laying out a long table costs more than all the rest
    m_table = html;
    const int position = m_browser->verticalScrollBar()->value();
    m_browser->setHtml(html);
    m_browser->verticalScrollBar()->setValue(position);
}

std::shared_ptr<Spectrometer::RecordFlag> DiagnosticStatusDockWidget::flagAt(const QString &address) const
{
    const Log::Logger logger(QStringLiteral("gui"));
    const QStringList parts = address.split(QLatin1Char('/'));
    if (parts.size() != 2) {
        logger.log(Log::Debug, QStringLiteral("invalid parts size"));
        return nullptr;
    }
    const auto flag = m_counts.flagOf(parts.first());
    if (!flag)
        logger.log(Log::Debug, QStringLiteral("Flag %1 not found").arg(parts.first()));
    return parts.last() == QLatin1String("flag") ? flag : nullptr;
}

void DiagnosticStatusDockWidget::flagBrowserClicked(const QUrl &url)
{
    if (const auto flag = flagAt(url.path()))
        highlightSubjects(*m_uiInfo, flag.get());
}

void DiagnosticStatusDockWidget::addFlagCommands(QMenu *menu, const QString &address)
{
    if (const auto flag = flagAt(address))
        addPlotFlagCommand(menu, *m_uiInfo, flag);
}
