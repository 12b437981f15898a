#pragma once

#include <QObject>
#include <QString>

class QAction;
class QImage;
class QWidget;

namespace RecordViews {

/// The commands "Copy picture" and "Save picture..." for all plots that are seen in a widget, each at its place; what
/// else stands there isn't drawn. Belongs to the widget.
class PlotPicture : public QObject {
    Q_OBJECT
public:
    explicit PlotPicture(QWidget *widget);

    QAction *copyAction() const { return m_copy; }
    QAction *saveAction() const { return m_save; }

    /// At the resolution of the screen, and at least two pixels for each of a plain screen's.
    static QImage imageOf(QWidget *widget);
    /// Writes a file that is whole or absent, as PNG, SVG or PDF by the end of its name. The result is null, or the
    /// reason of the failure.
    static QString write(QWidget *widget, const QString &path);

public Q_SLOTS:
    void copy();
    /// Asks for a file and writes it; tells when that fails.
    void save();

private:
    QWidget *m_widget;
    QAction *m_copy;
    QAction *m_save;
    QString m_folder; ///< where the last picture went
};

} // namespace RecordViews
