#pragma once

#include "gui/common/modalwork.h"
#include "gui/common/pictures/picturefile.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <functional>

class QAction;
class QWidget;

/// The commands "Copy picture" and "Save picture..." for what a widget shows. Belongs to the widget.
class PictureCommands : public QObject {
    Q_OBJECT
public:
    /// `drawing` is asked at each command. A PNG can be saved with each of these numbers of pixels for a logical one.
    PictureCommands(QWidget *widget, std::function<PictureFile::Drawing()> drawing, const QVector<int> &ratios = {2});

    QAction *copyAction() const { return m_copy; }
    QAction *saveAction() const { return m_save; }
    void setEnabled(bool on);

public Q_SLOTS:
    /// At the resolution of the screen, and at least two pixels for each of a plain screen's.
    void copy();
    /// Asks for a file and writes it on another thread; tells when that fails.
    void save();

private:
    struct Choice {
        QString filter;
        QString suffix;
        int ratio;
    };

    QVector<Choice> choices() const;
    void write(const PictureFile::Drawn &drawn, const QString &path);
    void tell(const QString &title, const QString &text);

    QWidget *m_widget;
    std::function<PictureFile::Drawing()> m_drawing;
    QVector<int> m_ratios;
    QAction *m_copy;
    QAction *m_save;
    QString m_folder; ///< where the last picture went
    ModalWork m_writing;
};
