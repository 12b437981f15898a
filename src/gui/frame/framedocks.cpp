#include "gui/frame/framedocks.h"

#include "gui/common/commentview.h"
#include "gui/common/diagnosticstatusdockwidget.h"
#include "gui/common/iconhelp.h"
#include "gui/common/logdock.h"
#include "gui/common/recordform.h"
#include "gui/common/recordviews/diagnosticview.h"
#include "gui/common/recordviews/distribution/spectraview.h"
#include "gui/common/recordviews/electrometersplot.h"
#include "gui/common/recordviews/electrometersview.h"
#include "gui/common/recordviews/reportview.h"
#include "gui/common/recordviews/vargridview.h"
#include "gui/frame/docklayout.h"

#include <QAction>
#include <QMainWindow>

#include <utility>

FrameDocks::FrameDocks(std::shared_ptr<UiInfo> uiInfo, QMainWindow *window)
    : QObject(window), m_uiInfo(std::move(uiInfo)), m_window(window), m_log(new LogDock(window))
{
}

void FrameDocks::makeAll()
{
    const QList<QDockWidget *> others = std::exchange(m_docks, {});
    add(m_log, QStringLiteral("log"));
    QDockWidget *const selected =
        makeDock(QStringLiteral("currentrecordform"), tr("Selected record"), QStringLiteral("current-record"));
    m_form = new RecordForm(m_uiInfo, selected);
    selected->setWidget(m_form);
    addRecordView(new RecordViews::DiagnosticView(m_uiInfo, m_window), QStringLiteral("diagnostics"));
    addRecordView(new RecordViews::VarGridView(m_uiInfo, m_window), QStringLiteral("diagnostics"));
    m_report = new RecordViews::ReportView(m_uiInfo, m_window);
    addRecordView(m_report, {});
    addRecordView(new RecordViews::ElectrometersView(m_uiInfo, m_window), QStringLiteral("electrometer-signals"));
    addRecordView(new RecordViews::ElectrometersPlot(m_uiInfo, m_window), QStringLiteral("electrometer-signals-plot"));
    addRecordView(new RecordViews::SpectraView(m_uiInfo, m_window), QStringLiteral("distribution-plot"));
    m_commentList = new CommentView(
        makeDock(QStringLiteral("commentList"), tr("Comment list"), QStringLiteral("comment-list"))); // enters itself
    m_status = new DiagnosticStatusDockWidget(m_uiInfo, m_window);
    add(m_status, QStringLiteral("diagnostic-status"));
    m_docks += others;
    arrangeDocks(*m_window);
}

QDockWidget *FrameDocks::makeDock(const QString &name, const QString &title, const QString &icon)
{
    auto *const dock = new QDockWidget(title, m_window);
    dock->setObjectName(name);
    add(dock, icon);
    return dock;
}

void FrameDocks::add(QDockWidget *dock, const QString &icon)
{
    dock->toggleViewAction()->setIcon(namedIcon(icon));
    m_docks.append(dock);
}

void FrameDocks::addRecordView(RecordViews::RecordView *view, const QString &icon)
{
    m_views.append(view);
    add(view, icon);
}

QList<QAction *> FrameDocks::toggleActions() const
{
    QList<QAction *> actions;
    for (const QDockWidget *dock : m_docks)
        actions.append(dock->toggleViewAction());
    return actions;
}

void FrameDocks::showRecord(const std::shared_ptr<Record> &record)
{
    if (m_form)
        m_form->showRecord(record);
    if (record && !record->interim)
        for (RecordViews::RecordView *view : qAsConst(m_views))
            view->showRecord(record);
}

void FrameDocks::directTypingTo(const std::shared_ptr<Record> &record)
{
    if (m_form && m_form->isTyping())
        m_form->showRecord(record);
}

void FrameDocks::setDatastore(Datastore *datastore)
{
    if (m_form)
        m_form->showRecord(nullptr);
    for (RecordViews::RecordView *view : qAsConst(m_views)) {
        view->showRecord(nullptr);
        view->setDatastore(datastore);
    }
}
