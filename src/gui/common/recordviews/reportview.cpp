#include "gui/common/recordviews/reportview.h"

#include "gui/common/recordviews/recordreport.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace RecordViews {

ReportView::ReportView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : RecordView(std::move(uiInfo), parent, flags), m_pages(new QStackedWidget(this)),
      m_browser(new QTextBrowser(m_pages))
{
    setObjectName(QStringLiteral("reportView"));
    setWindowTitle(tr("Inversion report"));
    m_browser->setAccessibleName(tr("Inversion report"));
    m_browser->setOpenLinks(false);
    m_browser->setLineWrapMode(QTextEdit::NoWrap); // wide tables scroll
    m_pages->addWidget(makeButtonPage());
    m_pages->addWidget(m_browser);
    setWidget(m_pages);
    returnToButton();
}

QWidget *ReportView::makeButtonPage()
{
    auto *page = new QWidget(m_pages);
    m_button = new QPushButton(tr("Click to analyze selected record"), page);
    m_button->setAutoDefault(true);
    m_button->setMinimumWidth(1); // its words don't hold the window open
    m_hint = new QLabel(page);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    auto *layout = new QVBoxLayout(page);
    layout->addStretch();
    layout->addWidget(m_button, 0, Qt::AlignCenter);
    layout->addWidget(m_hint);
    layout->addStretch();
    connect(m_button, &QPushButton::clicked, this, &ReportView::showCurrentReport);
    return page;
}

void ReportView::returnToButton()
{
    m_browser->clear();
    m_reported = record();
    const bool isReady = m_reported && !m_inverters.empty();
    m_button->setEnabled(isReady);
    m_hint->setText(m_inverters.empty() ? tr("No inverters are loaded.") : tr("No record is selected."));
    m_hint->setHidden(isReady);
    const bool hadFocus = m_browser->hasFocus();
    m_pages->setCurrentIndex(0);
    if (hadFocus)
        m_button->setFocus();
}

QString ReportView::viewName() const
{
    return QStringLiteral("report");
}

void ReportView::refreshRecord()
{
    if (record() != m_reported)
        returnToButton();
}

void ReportView::setInverters(const SpectMath::InverterList &inverters)
{
    m_inverters = inverters;
    returnToButton();
}

void ReportView::showCurrentReport()
{
    if (!record())
        return;
    m_reported = record();
    const QString report = recordReport(m_inverters, *m_reported, uiInfo()->metadata().get());
    if (report.isEmpty())
        return returnToButton();
    m_browser->setHtml(report);
    m_pages->setCurrentWidget(m_browser);
    m_browser->setFocus(); // the button, which had it, is gone
}

} // namespace RecordViews
