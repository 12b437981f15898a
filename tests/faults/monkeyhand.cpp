#include "faults/monkeyhand.h"

#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/frame/dockstate.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/datasaverdialog.h"

#include <QAction>
#include <QDockWidget>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QWheelEvent>
#include <QWindow>

namespace Faults {

namespace {

constexpr std::array<Qt::Key, 40> keys{
    Qt::Key_Tab,  Qt::Key_Backtab,  Qt::Key_Return, Qt::Key_Escape,    Qt::Key_Space,  Qt::Key_Left,     Qt::Key_Right,
    Qt::Key_Up,   Qt::Key_Down,     Qt::Key_Home,   Qt::Key_End,       Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Delete,
    Qt::Key_Left, Qt::Key_Right,    Qt::Key_Insert, Qt::Key_Backspace, Qt::Key_F1,     Qt::Key_F2,       Qt::Key_F3,
    Qt::Key_F4,   Qt::Key_F5,       Qt::Key_F6,     Qt::Key_F7,        Qt::Key_F8,     Qt::Key_F9,       Qt::Key_F10,
    Qt::Key_F11,  Qt::Key_F12,      Qt::Key_Plus,   Qt::Key_Minus,     Qt::Key_Menu,   Qt::Key_Escape,   Qt::Key_0,
    Qt::Key_1,    Qt::Key_Question, Qt::Key_Slash,  Qt::Key_Tab,       Qt::Key_Return};
constexpr std::array<Qt::KeyboardModifiers::Int, 8> modifiers{
    Qt::NoModifier,    Qt::NoModifier,      Qt::NoModifier,  Qt::NoModifier,
    Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::ControlModifier | Qt::ShiftModifier};

Qt::KeyboardModifiers modifiersOf(const MonkeyEvent &event, int which)
{
    return Qt::KeyboardModifiers(modifiers[std::size_t(event.below(which, int(modifiers.size())))]);
}

void pressKey(QWindow *window, Qt::Key key, Qt::KeyboardModifiers with, const QString &text)
{
    const QPointer<QWindow> still(window);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        if (still)
            qt_handleKeyEvent(window, type, key, with, text);
}

void sendMouse(QWindow *window, QEvent::Type type, const QPoint &global, Qt::MouseButton button,
               Qt::KeyboardModifiers with = Qt::NoModifier)
{
    const bool isMove = type == QEvent::MouseMove;
    qt_handleMouseEvent(window, window->mapFromGlobal(global), global,
                        type == QEvent::MouseButtonRelease ? Qt::NoButton : button, isMove ? Qt::NoButton : button,
                        type, with, ++QTest::lastMouseTimestamp);
}

QWindow *keyWindow(QWidget *target)
{
    if (QWidget *popup = QApplication::activePopupWidget())
        return popup->windowHandle();
    return QGuiApplication::focusWindow() ? QGuiApplication::focusWindow() : target->window()->windowHandle();
}

} // namespace

MonkeyHand::MonkeyHand(LoadedWindow &window, GrowingFolder &growing, MonkeyEvents events)
    : m_window(window), m_growing(growing), m_events(std::move(events))
{
}

void MonkeyHand::run()
{
    QTimer::singleShot(0, qApp, [this] { next(); });
    while (true) {
        QApplication::exec();
        endDrags(*m_window.window); // of which the toolkit would keep its notes
        if (m_isOver)
            return;
        m_window.makeWindow();
    }
}

/// The next event is due before this one is through: it may run an event loop of its own.
void MonkeyHand::next()
{
    if (m_isOver)
        return;
    if (!m_steps.empty()) {
        const auto step = m_steps.front();
        m_steps.pop_front();
        QTimer::singleShot(0, qApp, [this] { next(); });
        return step();
    }
    if (m_depth == 0)
        checkState();
    if (m_next == m_events.size()) {
        m_isOver = true;
        m_window.window->terminateSignal();
        return;
    }
    if (!m_window.window->isVisible() && m_depth == 0)
        QCoreApplication::quit(); // it was closed: run() makes another one
    const MonkeyEvent &event = m_events[m_next++];
    std::printf("at\t%zu\t\n", m_next);
    std::fflush(stdout);
    QTimer::singleShot(event.wait, qApp, [this] { next(); });
    ++m_depth;
    act(event);
    --m_depth;
}

/// What always holds between two events.
void MonkeyHand::checkState() const
{
    const MorvantideMainWindow &window = *m_window.window;
    const bool isOpen = window.uiInfo() && const_cast<MorvantideMainWindow &>(window).datastore();
    Child::require(!isOpen || !window.folderPath().isNull(), "there are data of no folder");
    Child::require(isOpen || !window.isReinverting(), "there is a reinversion without data");
    Child::require(isOpen || (window.uiInfo()->spectrumInfos().isEmpty() && window.inverters().empty()),
                   "there are spectra without data");
}

void MonkeyHand::act(const MonkeyEvent &event)
{
    switch (event.action) {
    case MonkeyEvent::key:
        return sendKey(event);
    case MonkeyEvent::type:
        return typeText(event);
    case MonkeyEvent::click:
    case MonkeyEvent::doubleClick:
    case MonkeyEvent::hover:
        return clickAt(event);
    case MonkeyEvent::drag:
        return drag(event);
    case MonkeyEvent::wheel:
        return turn(event);
    case MonkeyEvent::command:
        return giveCommand(event);
    case MonkeyEvent::answer:
        return answer(event);
    case MonkeyEvent::dock:
        return moveDock(event);
    case MonkeyEvent::resize:
        return resize(event);
    case MonkeyEvent::grow:
        m_growing.write(1 + event.below(0, 20));
        return m_growing.flush(event.below(1, 2) == 0);
    case MonkeyEvent::work:
        return startWork(event);
    }
}

// ---- where

QWidget *MonkeyHand::target(const MonkeyEvent &event) const
{
    QWidget *const popup = QApplication::activePopupWidget();
    const bool isBeside = event.action == MonkeyEvent::click && event.numbers[5] % 4 == 0; // which closes the pop-up
    if (popup && !isBeside)
        return popup;
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    QWidgetList others;
    for (QWidget *one : QApplication::topLevelWidgets())
        if (one->isVisible() && one->windowHandle() && one != m_window.window.get())
            others << one;
    const int which = event.below(5, 3 * (others.size() + 1));
    return which < others.size() ? others[which] : m_window.window.get();
}

QPoint MonkeyHand::placeIn(QWidget *target, const MonkeyEvent &event) const
{
    QWidgetList seen{target};
    for (QWidget *one : target->findChildren<QWidget *>())
        if (one->window() == target && one->isVisible() && !one->visibleRegion().isEmpty())
            seen << one;
    QWidget *widget = seen[event.below(0, seen.size())];
    const QPoint inside(event.below(1, widget->width()), event.below(2, widget->height()));
    return widget->mapTo(target, inside);
}

// ---- keys and mouse

void MonkeyHand::sendKey(const MonkeyEvent &event)
{
    QWindow *window = keyWindow(target(event));
    const Qt::KeyboardModifiers with = modifiersOf(event, 1);
    const int letter = event.below(0, 26 * 3);
    const Qt::Key key = letter < 26 ? Qt::Key(Qt::Key_A + letter) : keys[std::size_t(event.below(2, int(keys.size())))];
    const bool hasText = key < 128 && !(with & (Qt::ControlModifier | Qt::AltModifier));
    if (window)
        pressKey(window, key, with, hasText ? QString(QChar(key)) : QString());
}

void MonkeyHand::typeText(const MonkeyEvent &event)
{
    static const std::array<const char *, 8> texts{"1e9",     "-3.5",  "0",           "particles", "2019-09-12 01:00",
                                                   "x y <b>", "%1 %n", "\xe2\x82\xac"};
    for (const QChar letter : QString::fromUtf8(texts[std::size_t(event.below(0, int(texts.size())))]))
        m_steps.push_back([this, event, letter] {
            if (QWindow *window = keyWindow(target(event)))
                pressKey(window, Qt::Key(letter.toUpper().unicode()), Qt::NoModifier, letter);
        });
}

void MonkeyHand::clickAt(const MonkeyEvent &event)
{
    QWidget *const widget = target(event);
    const QPointer<QWindow> window(widget->windowHandle());
    if (!window)
        return;
    const QPoint global = widget->mapToGlobal(placeIn(widget, event));
    const auto with = modifiersOf(event, 3);
    const Qt::MouseButton button = event.below(4, 5)      ? Qt::LeftButton
                                   : event.numbers[4] % 3 ? Qt::RightButton
                                                          : Qt::MiddleButton;
    sendMouse(window, QEvent::MouseMove, global, Qt::NoButton, with);
    if (event.action == MonkeyEvent::hover)
        return;
    QTest::lastMouseTimestamp += 1000; // by itself no double click
    for (int i = event.action == MonkeyEvent::doubleClick ? 2 : 1; i > 0; --i) {
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            m_steps.push_back([=] {
                if (window)
                    sendMouse(window, type, global, button, with);
            });
    }
}

void MonkeyHand::drag(const MonkeyEvent &event)
{
    QWidget *const widget = target(event);
    const QPointer<QWindow> window(widget->windowHandle());
    if (!window)
        return;
    const auto with = modifiersOf(event, 3);
    const QPoint from = widget->mapToGlobal(placeIn(widget, event));
    const QPoint by(event.below(4, 1200) - 600, event.below(5, 800) - 400);
    const Qt::MouseButton button = event.numbers[3] % 5 ? Qt::LeftButton : Qt::MiddleButton;
    const auto send = [=](QEvent::Type type, const QPoint &to) {
        m_steps.push_back([=] {
            if (window)
                sendMouse(window, type, to, button, with);
        });
    };
    QTest::lastMouseTimestamp += 1000;
    send(QEvent::MouseButtonPress, from);
    const int stops = 2 + event.numbers[4] % 4;
    for (int i = 1; i <= stops; ++i)
        send(QEvent::MouseMove, from + by * i / stops);
    send(QEvent::MouseButtonRelease, from + by);
}

void MonkeyHand::turn(const MonkeyEvent &event)
{
    QWidget *const widget = target(event);
    const QPoint at = placeIn(widget, event);
    QWidget *child = widget->childAt(at);
    QWidget *const hit = child ? child : widget;
    const int notches = (event.below(3, 7) - 3) * 120;
    const QPoint delta = event.numbers[4] % 5 ? QPoint(0, notches) : QPoint(notches, 0);
    QWheelEvent wheel(hit->mapFrom(widget, at), widget->mapToGlobal(at), QPoint(), delta, Qt::NoButton,
                      modifiersOf(event, 4), Qt::NoScrollPhase, false);
    QApplication::sendEvent(hit, &wheel);
}

// ---- commands and the window

void MonkeyHand::giveCommand(const MonkeyEvent &event)
{
    if (QApplication::activeModalWidget() || QApplication::activePopupWidget())
        return;
    QList<QAction *> open;
    for (QAction *one : m_window.window->findChildren<QAction *>())
        if (one->isEnabled() && one->isVisible() && !one->menu() && !one->isSeparator() && !one->text().isEmpty())
            open << one;
    if (!open.isEmpty())
        open[event.below(0, open.size())]->trigger();
}

/// What takes long, by its command. Its dialog is answered at once in three of four times, and left to later events
/// else.
void MonkeyHand::startWork(const MonkeyEvent &event)
{
    static constexpr std::array<const char *, 8> commands{"Reinvert...",   "Reinvert...",        "Reinvert...",
                                                          "Save data...",  "Export data...",     "Read again",
                                                          "Follow folder", "Open data folder..."};
    if (QApplication::activeModalWidget())
        return answer(event);
    if (QApplication::activePopupWidget())
        return;
    QAction *action = m_window.action(commands[std::size_t(event.below(3, int(commands.size())))]);
    if (!action->isEnabled())
        action = m_window.action("Open data folder...");
    if (event.below(4, 4) != 0)
        m_steps.push_back([this, event] { answer(event); });
    if (event.below(5, 2) == 0) // often before the reinversion, or another one, has ended
        QTimer::singleShot(event.numbers[5] / 10, m_window.window.get(),
                           [cancel = m_window.action("Cancel reinversion")] {
                               if (!QApplication::activeModalWidget())
                                   cancel->trigger();
                           });
    action->trigger();
}

void MonkeyHand::moveDock(const MonkeyEvent &event)
{
    if (QApplication::activeModalWidget())
        return;
    MorvantideMainWindow &window = *m_window.window;
    const auto docks = window.findChildren<QDockWidget *>();
    QDockWidget *const dock = docks[event.below(0, docks.size())], *const other = docks[event.below(1, docks.size())];
    static constexpr Qt::DockWidgetArea areas[] = {Qt::LeftDockWidgetArea, Qt::RightDockWidgetArea,
                                                   Qt::TopDockWidgetArea, Qt::BottomDockWidgetArea};
    switch (event.below(2, 5)) {
    case 0:
        return dock->setFloating(!dock->isFloating());
    case 1:
        return dock->toggleViewAction()->trigger();
    case 2:
        return window.addDockWidget(areas[event.below(3, 4)], dock);
    case 3:
        if (dock != other)
            window.tabifyDockWidget(other, dock);
        return;
    default:
        dock->setVisible(true);
        dock->raise();
    }
}

void MonkeyHand::resize(const MonkeyEvent &event)
{
    QWidget *const window = target(event)->window();
    switch (event.below(2, 6)) {
    case 0:
        return window->showMaximized();
    case 1:
        return window->showNormal();
    default:
        window->resize(200 + event.below(0, 1400), 100 + event.below(1, 1000));
    }
}

// ---- dialogs

void MonkeyHand::answer(const MonkeyEvent &event)
{
    QWidget *const modal = QApplication::activeModalWidget();
    if (!modal)
        return fillExport(event);
    if (event.below(0, 4) == 0)
        return pressKey(modal->windowHandle(), Qt::Key_Escape, {}, {});
    if (auto *files = qobject_cast<QFileDialog *>(modal))
        return answerFileDialog(*files, event);
    if (answerOwnDialog(*modal, event))
        return;
    QList<QPushButton *> buttons;
    for (auto *one : modal->findChildren<QPushButton *>())
        if (one->isVisible() && one->isEnabled())
            buttons << one;
    if (!buttons.isEmpty())
        buttons[event.below(1, buttons.size())]->click();
}

void MonkeyHand::answerFileDialog(QFileDialog &dialog, const MonkeyEvent &event)
{
    dialog.setDirectory(m_window.path({}));
    QString name = QString("made/file%1").arg(event.below(1, 5));
    if (dialog.acceptMode() == QFileDialog::AcceptOpen && dialog.fileMode() != QFileDialog::Directory) {
        QStringList names = QDir(m_window.path("inverters")).entryList(QDir::Files);
        for (QString &one : names)
            one.prepend("inverters/");
        names << names << QDir(m_window.path({})).entryList({"made/*", "*"}, QDir::Files);
        name = names[event.below(1, names.size())];
    }
    if (auto *line = dialog.findChild<QLineEdit *>("fileNameEdit"))
        line->setText(dialog.fileMode() == QFileDialog::Directory ? m_window.path("made") : m_window.path(name));
    pressKey(dialog.windowHandle(), Qt::Key_Return, {}, {});
}

/// Whether it is one that is told what to do.
bool MonkeyHand::answerOwnDialog(QWidget &dialog, const MonkeyEvent &event)
{
    if (auto *chooser = qobject_cast<DataChooserDialog *>(&dialog)) {
        static constexpr const char *folders[] = {"demo", "other", "growing", "made"};
        const QString variant = event.below(2, 8) ? "block" : "block-reinv";
        chooser->setChoice({{"folderName", m_window.path(folders[event.below(1, 4)])},
                            {"variant", variant},
                            {"limitBegin", false},
                            {"limitEnd", false},
                            {"legacyFiles", false}});
        chooser->accept();
        return true;
    }
    if (auto *saver = qobject_cast<DataSaverDialog *>(&dialog)) {
        saver->findChild<QLineEdit *>("folderEdit")->setText(m_window.path("made"));
        saver->saveData();
        return true;
    }
    return false;
}

/// Without a dialog that is to be answered: the one that makes tables stays open by itself.
void MonkeyHand::fillExport(const MonkeyEvent &event)
{
    auto *dialog = m_window.window->findChild<DataExportDialog *>();
    if (!dialog || !dialog->isVisible())
        return giveCommand(event);
    QVariantList spectra;
    for (const auto &info : m_window.window->uiInfo()->spectrumInfos())
        spectra << info->hash;
    const QString file = m_window.path(QString("made/table%1.txt").arg(event.below(1, 5)));
    dialog->setSetup({{"general", QVariantMap{{"output_file", file}}},
                      {"fields", QVariantList{QVariantMap{{"type", "spectrum"}, {"spectra", spectra}},
                                              QVariantMap{{"type", "electrometer"}}}}});
    Q_EMIT dialog->requestExport(dialog->setup());
}

} // namespace Faults
