#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QVector>
#include <QWheelEvent>
#include <QWidget>

#include <optional>

/// Lays out, paints and deletes what is due.
inline void settle()
{
    for (int i = 0; i < 3; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// A mouse event as the platform sends it: a move has no button of its own, and a release leaves none held. The pointer
/// is where the widget's point `at` is unless `global` tells its place.
inline void sendMouse(QWidget *widget, QEvent::Type type, const QPoint &at, Qt::MouseButton button = Qt::LeftButton,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier, std::optional<QPoint> global = {})
{
    QMouseEvent event(type, at, global.value_or(widget->mapToGlobal(at)),
                      type == QEvent::MouseMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, modifiers);
    QApplication::sendEvent(widget, &event);
}

/// Presses, goes by way of some points and lets go at the last of them, all as seen from the widget's place at the
/// press: the widget may move with the pointer.
inline void dragMouse(QWidget *widget, const QPoint &from, const QVector<QPoint> &way,
                      Qt::MouseButton button = Qt::LeftButton)
{
    const QPoint origin = widget->mapToGlobal(QPoint());
    const auto send = [&](QEvent::Type type, const QPoint &to) {
        sendMouse(widget, type, widget->mapFromGlobal(origin + to), button);
    };
    send(QEvent::MouseButtonPress, from);
    for (const QPoint &to : way) {
        send(QEvent::MouseMove, to);
        QApplication::processEvents();
    }
    send(QEvent::MouseButtonRelease, way.last());
}

/// Whether the widget takes the turn; a notch is 120.
inline bool turnWheel(QWidget *widget, const QPoint &at, const QPoint &delta)
{
    QWheelEvent event(at, widget->mapToGlobal(at), QPoint(), delta, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}
