#pragma once

#include <QTimer>

class QLabel;
class QProgressBar;
class QStatusBar;
class Reinversion;

/// How far a reinversion is, in the window's status bar: the rate, and a bar as soon as it has taken a moment. Both
/// outlive this.
class ReinversionProgress : public QObject {
    Q_OBJECT
public:
    ReinversionProgress(const Reinversion &reinversion, QStatusBar *statusBar);

public Q_SLOTS:
    void showRate(int queueLength, int speed);
    /// The run has ended.
    void clear();

private:
    void showPart();

    const Reinversion &m_reinversion;
    QLabel *m_rate;
    QProgressBar *m_bar;
    QTimer m_timer;
};
