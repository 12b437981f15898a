#include "gui/morvantide/reinversionprogress.h"

#include "gui/morvantide/reinversion.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>

namespace {

constexpr int lookInterval = 100; // ms
constexpr int barWidth = 24;      // average characters

} // namespace

ReinversionProgress::ReinversionProgress(const Reinversion &reinversion, QStatusBar *statusBar)
    : QObject(statusBar), m_reinversion(reinversion), m_rate(new QLabel(statusBar)), m_bar(new QProgressBar(statusBar))
{
    m_rate->setObjectName(QStringLiteral("queueStatusLabel"));
    m_rate->setMinimumWidth(m_rate->fontMetrics().horizontalAdvance(tr("0000 records/s")));
    m_rate->setToolTip(tr("Data inversion rate in records per second\n"
                          "(optionally also inversion queue length)"));
    m_bar->setObjectName(QStringLiteral("reinversionBar"));
    m_bar->setAccessibleName(tr("Progress of the reinversion"));
    m_bar->setToolTip(m_bar->accessibleName());
    m_bar->setFixedWidth(barWidth * m_bar->fontMetrics().averageCharWidth());
    m_bar->hide();
    statusBar->addPermanentWidget(m_bar);
    statusBar->addPermanentWidget(m_rate);
    connect(&m_timer, &QTimer::timeout, this, &ReinversionProgress::showPart);
    connect(&reinversion, &Reinversion::started, this, [this] { m_timer.start(lookInterval); });
}

void ReinversionProgress::showRate(int queueLength, int speed)
{
    m_rate->setText(queueLength < 1
                        ? tr("%1 records/s").arg(speed)
                        : tr("%1 records/s (%2 in queue)").arg(QString::number(speed), QString::number(queueLength)));
}

void ReinversionProgress::showPart()
{
    if (!m_reinversion.isRunning())
        return clear();
    m_bar->setMaximum(std::max(1, m_reinversion.recordCount()));
    m_bar->setValue(m_reinversion.recordsDone());
    m_bar->show();
}

void ReinversionProgress::clear()
{
    m_timer.stop();
    m_bar->hide();
    m_rate->clear();
}
