#pragma once

#include <QString>

/// Folds complaints that repeat from row to row into one. Good rows between two equal complaints don't end a run.
class ErrorRun {
public:
    explicit ErrorRun(const QString &fileName) : m_fileName(fileName) {}

    /// Takes in a complaint about a row. True if it belongs to the present run; otherwise nothing was changed, and the
    /// caller flushes and begins a new run with it.
    bool extend(const QString &message, int row);
    void begin(const QString &message, int row);

    /// Ends the run. True if there was one; text() then tells it.
    bool flush();
    const QString &text() const { return m_text; }

private:
    QString m_fileName;
    QString m_message; ///< null when there is no run
    int m_firstRow = 0;
    int m_lastRow = 0;
    QString m_text;
};
