#include "browserfixture.h"
#include "gui/browser/controls/plotmenu.h"
#include "support/files.h"
#include "support/logcatcher.h"
#include "support/savedialog.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

using Tsb::View;

class ViewStack : public BrowserTest {
protected:
    static QVariantMap entry(const QString &type, const QVariant &settings = QVariant())
    {
        QVariantMap map{{"type", type}};
        if (settings.isValid())
            map.insert("settings", settings);
        return map;
    }
    QWidget *addPlotRow() const { return browser->findChild<QToolButton *>()->parentWidget(); }
    /// Drags downwards to those distances from the start, one after the other.
    static void drag(QWidget *widget, const QPoint &start, const QVector<int> &steps)
    {
        QVector<QPoint> way;
        for (const int dy : steps)
            way << start + QPoint(0, dy);
        dragMouse(widget, start, way);
        settle();
    }
};

TEST_F(ViewStack, SetupGoesRoundAndIsTakenByValue)
{
    const QVariantMap settings{{"height", 90}, {"note", "kept"}};
    const QVariantMap strip = entry("spectrogram"), tall = entry("spectrogram", settings), plain = entry("plain");
    addStrip();
    browser->setSetup(QVariantList{tall, entry("scatterplot"), plain, 17, strip});
    const QVariant expected = QVariantList{tall, plain, strip};
    EXPECT_EQ(browser->setup(), expected) << "before the old views are gone, too";
    settle();
    EXPECT_EQ(browser->setup(), expected);
    EXPECT_EQ(browser->views().size(), 3);
    EXPECT_EQ(browser->views().first()->height(), 90);
    browser->views().last()->setTemporary(true);
    EXPECT_EQ(browser->setup().toList().size(), 2) << "temporary views aren't kept";
    for (const QVariant &nonsense : {QVariant(), QVariant(5), QVariant("x"), QVariant(QVariantMap{{"type", 3}}),
                                     QVariant(QVariantList{QVariantList{1}, QVariant()})}) {
        browser->setSetup(nonsense);
        settle();
        EXPECT_FALSE(browser->hasViews());
    }
    QVariantList endless;
    for (int i = 0; i < 10'000; ++i)
        endless.append(plain);
    const LogCatcher log;
    browser->setSetup(endless);
    EXPECT_EQ(browser->views().size(), 200);
    EXPECT_EQ(log.entries().size(), 1);
    EXPECT_EQ(log.complaints().size(), 1);
}

TEST_F(ViewStack, AbsurdHeightsAreHeld)
{
    const struct {
        QVariant given;
        int height;
    } cases[] = {{0, 60},       {-5, 60},   {QStringLiteral("high"), 60}, {qQNaN(), 60}, {3, 16}, {qInf(), 60},
                 {1e300, 4096}, {200, 200}, {QVariantList{1}, 60},        {true, 60}};
    for (const auto &c : cases) {
        StripView view;
        view.setSettings(QVariantMap{{QStringLiteral("height"), c.given}});
        EXPECT_EQ(view.minimumHeight(), c.height) << c.given.toString().toStdString();
    }
}

TEST_F(ViewStack, ClosingViews)
{
    StripView *const first = addStrip(), *const second = addStrip(), *const third = addStrip();
    StripView foreign;
    browser->closeView(&foreign);
    EXPECT_FALSE(foreign.isDiscarded());
    second->setTemporary(true);
    QTest::mouseClick(second->findChild<QToolButton *>(), Qt::LeftButton);
    EXPECT_FALSE(second->isTemporary()) << "the first click makes it lasting";
    QTest::mouseClick(second->findChild<QToolButton *>(), Qt::LeftButton);
    settle();
    EXPECT_EQ(browser->views(), (QVector<View *>{first, third}));
    StripView *const fourth = addStrip();
    Q_EMIT third->requestCloseBelow(third);
    EXPECT_EQ(browser->views(), (QVector<View *>{first}));
    fourth->fittedWidths.clear();
    browser->allFitScale();
    EXPECT_TRUE(fourth->fittedWidths.isEmpty()) << "what is closing is passed over";
    settle();
    addStrip()->setTemporary(true);
    browser->closeTempViews();
    settle();
    EXPECT_EQ(browser->views(), (QVector<View *>{first}));
    browser->viewActions()[1]->trigger();
    settle();
    EXPECT_FALSE(browser->hasViews());
}

TEST_F(ViewStack, PicturesHoldAllViewsHoweverFarTheyAreScrolled)
{
    const QAction *const save = browser->viewActions()[2], *const copy = browser->viewActions()[3];
    EXPECT_FALSE(save->isEnabled() || copy->isEnabled()) << "without views";
    for (int i = 0; i < 12; ++i)
        addStrip();
    EXPECT_TRUE(save->isEnabled() && copy->isEnabled());
    const auto image = [this](double ratio) { return PictureFile::imageOf(browser->drawing(), ratio); };
    const QImage whole = image(1);
    EXPECT_GT(whole.height(), browser->height());
    QScrollBar *const bar = browser->findChild<QScrollArea *>()->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    bar->setValue(bar->maximum());
    settle();
    EXPECT_EQ(image(1), whole);
    EXPECT_EQ(image(4).size(), 4 * whole.size());
    const Tsb::Plot *const last = browser->views().last()->findChild<Tsb::Plot *>();
    // The last plot stands at the lower end, above the margin and its view's own.
    const QImage plot = last->image().convertToFormat(QImage::Format_RGB32);
    const QPoint corner = last->mapTo(browser->views().last(), last->contentsRect().topLeft());
    const QRect frame = browser->drawing().frame;
    const int top = whole.height() - 4 - browser->views().last()->height() + corner.y();
    const int left = last->mapTo(browser.get(), last->contentsRect().topLeft()).x() - frame.left();
    EXPECT_EQ(whole.copy(QRect(QPoint(left, top), plot.size())).convertToFormat(QImage::Format_RGB32), plot);

    browser->viewActions()[3]->trigger();
    EXPECT_EQ(QApplication::clipboard()->image().size(), 2 * whole.size());
    browser->setEnabled(false);
    EXPECT_FALSE(save->isEnabled() || copy->isEnabled());
    browser->setEnabled(true);
    browser->closeAllViews();
    settle();
    EXPECT_FALSE(save->isEnabled() || copy->isEnabled());
}

TEST_F(ViewStack, PicturesAreSavedAsTheChosenKindAndFailuresAreTold)
{
    addStrip();
    const QTemporaryDir folder;
    const auto saveAs = [&](const QString &name, const QString &filter) {
        return saveByDialog(browser->viewActions()[2], folder.filePath(name), filter);
    };
    const QSize size = browser->drawing().frame.size();
    EXPECT_EQ(saveAs("1.png", "pixels (*.png)") + saveAs("2.png", "2 times") + saveAs("4.png", "4 times"), "");
    for (const int ratio : {1, 2, 4})
        EXPECT_EQ(QImage(folder.filePath(QString("%1.png").arg(ratio))).size(), ratio * size) << ratio;
    EXPECT_EQ(saveAs("a.svg", ".svg") + saveAs("a.pdf", ".pdf"), "");
    EXPECT_TRUE(contentOf(folder.filePath("a.svg")).contains("<text"));
    EXPECT_TRUE(contentOf(folder.filePath("a.pdf")).endsWith("%%EOF\n"));
    ASSERT_TRUE(QDir(folder.path()).mkdir("b.png"));
    const auto drawn = PictureFile::draw(browser->drawing(), "b.png", 1);
    EXPECT_FALSE(PictureFile::write(drawn, folder.filePath("b.png")).isEmpty());
}

TEST_F(ViewStack, DraggingAViewReordersTheStack)
{
    StripView *const first = addStrip(), *const second = addStrip(), *const third = addStrip();
    for (StripView *view : {first, second, third})
        view->kept = QVariant::fromValue(int(view == first ? 1 : view == second ? 2 : 3));
    const auto order = [this] {
        QVector<int> numbers;
        for (const QVariant &value : browser->setup().toList())
            numbers << value.toMap()["settings"].toInt();
        return numbers;
    };
    QWidget *const grip = first->findChild<QToolButton *>()->parentWidget();
    drag(grip, {8, 50}, {40, 200, 2000});
    EXPECT_EQ(order(), (QVector<int>{2, 3, 1}));
    EXPECT_LT(first->geometry().bottom(), addPlotRow()->y()) << "never below the row that adds plots";
    EXPECT_GT(first->y(), third->y());
    EXPECT_EQ(browser->views(), (QVector<View *>{first, second, third})) << "the order of creation stays";
    drag(grip, {8, 50}, {-30, -35, -62});
    EXPECT_EQ(order(), (QVector<int>{2, 1, 3}));
    drag(grip, {8, 50}, {5});
    EXPECT_EQ(order(), (QVector<int>{2, 1, 3})) << "a small movement changes nothing";
}

TEST_F(ViewStack, TabGoesFromTopToBottom)
{
    const auto focusedWidgets = [this] {
        QVector<QWidget *> found;
        QWidget *const start = addPlotRow()->findChild<QToolButton *>();
        start->setFocus();
        do {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            found << QApplication::focusWidget();
        } while (found.last() != start && found.size() < 30);
        return found;
    };
    const auto wanted = [this](const QVector<StripView *> &views) {
        QVector<QWidget *> widgets;
        for (StripView *view : views)
            widgets << view->findChild<QToolButton *>() << view->plot();
        return widgets << addPlotRow()->findChild<QToolButton *>();
    };
    browser->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(browser.get()));
    StripView *const first = addStrip(), *const second = addStrip(), *const third = addStrip();
    EXPECT_EQ(focusedWidgets(), wanted({first, second, third}));
    drag(first->findChild<QToolButton *>()->parentWidget(), {8, 50}, {40, 200, 2000});
    EXPECT_EQ(focusedWidgets(), wanted({second, third, first}));
    StripView *const late = addStrip();
    drag(late->findChild<QToolButton *>()->parentWidget(), {8, 50}, {-2000});
    EXPECT_EQ(focusedWidgets(), wanted({late, second, third, first}));
    delete second;
    settle();
    EXPECT_EQ(focusedWidgets(), wanted({late, third, first}));
}

TEST_F(ViewStack, AViewMayCloseWhileItIsDragged)
{
    StripView *const first = addStrip();
    addStrip();
    QWidget *const holder = first->parentWidget();
    const QPoint inside = first->pos() + QPoint(8, 50);
    sendMouse(holder, QEvent::MouseButtonPress, inside);
    EXPECT_EQ(browser->setup().toList().size(), 2) << "the dragged view counts at its place";
    browser->setSetup(QVariantList{entry("plain")});
    settle();
    sendMouse(holder, QEvent::MouseMove, inside);
    sendMouse(holder, QEvent::MouseButtonRelease, inside);
    settle();
    EXPECT_EQ(browser->setup().toList().size(), 1);
    EXPECT_LE(browser->views().first()->y(), 5) << "no gap is left";
}

TEST_F(ViewStack, AViewKeepsItsPlaceWhenOthersCloseDuringItsDrag)
{
    for (int closed = 0; closed < 4; ++closed) {
        browser->closeAllViews();
        settle();
        QVector<StripView *> views;
        for (int i = 0; i < 4; ++i) {
            views << addStrip();
            views.last()->kept = i;
        }
        QWidget *const holder = views[2]->parentWidget();
        const QPoint inside = views[2]->pos() + QPoint(8, 50);
        sendMouse(holder, QEvent::MouseButtonPress, inside);
        views[closed]->discard();
        settle();
        sendMouse(holder, QEvent::MouseButtonRelease, inside);
        settle();
        QVariantList expected{0, 1, 2, 3}, order;
        expected.removeAt(closed);
        for (const QVariant &entry : browser->setup().toList())
            order << entry.toMap()["settings"];
        EXPECT_EQ(order, expected);
        for (const View *view : browser->views())
            EXPECT_LT(view->y(), addPlotRow()->y());
    }
}

TEST_F(ViewStack, SpectrogramsFromTheMenu)
{
    auto *const action = browser->addPlotActions().first();
    EXPECT_EQ(action->menu(), nullptr) << "no spectra, no submenu";
    const auto strip = [this](int index) { return dynamic_cast<StripView *>(browser->views()[index]); };
    uiInfo->setData(nullptr, {testInfo("ions", {})});
    uiInfo->publish();
    action->trigger();
    EXPECT_EQ(strip(0)->spectra, QSet<QString>{"id-ions"});
    EXPECT_EQ(strip(0)->fittedWidths.size(), 1);
    uiInfo->setData(nullptr, {testInfo("particles pos", {}), testInfo("ions", {}), testInfo("particles neg", {})});
    uiInfo->publish();
    ASSERT_NE(action->menu(), nullptr);
    ASSERT_EQ(action->menu()->actions().size(), 2);
    EXPECT_EQ(action->menu()->actions()[0]->text(), QStringLiteral("Ions"));
    action->menu()->actions()[1]->trigger();
    const QSet<QString> particles{"id-particles pos", "id-particles neg"};
    EXPECT_EQ(strip(1)->spectra, particles);
    action->trigger();
    EXPECT_TRUE(strip(2)->spectra.isEmpty());
    browser->closeAllViews();
    settle();
    browser->addDefaultStack();
    ASSERT_EQ(browser->views().size(), 2);
    EXPECT_EQ(strip(0)->spectra, particles);
    browser->setEnabled(false);
    EXPECT_FALSE(action->isEnabled());
}

TEST_F(ViewStack, ClickingAnActionWithASubmenuTriggersIt)
{
    Tsb::PlotMenu menu;
    QMenu submenu;
    submenu.addAction(QStringLiteral("inner"));
    QAction *const action = menu.addAction(QStringLiteral("outer"));
    action->setMenu(&submenu);
    QSignalSpy triggered(action, &QAction::triggered);
    menu.popup(QPoint(100, 100));
    const QPoint inside = menu.actionGeometry(action).center();
    QTest::mouseRelease(&menu, Qt::LeftButton, Qt::NoModifier, inside);
    EXPECT_EQ(triggered.count(), 0) << "the release of the click that opened the menu";
    EXPECT_TRUE(menu.isVisible());
    QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, inside);
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_FALSE(menu.isVisible());
    EXPECT_FALSE(submenu.isVisible());
}

TEST_F(ViewStack, ARequestedViewIsScrolledIntoSight)
{
    for (int i = 0; i < 20; ++i)
        addStrip();
    StripView *const last = addStrip();
    browser->ensureViewVisible(last);
    settle();
    EXPECT_FALSE(last->visibleRegion().isEmpty());
    auto *const doomed = new QWidget;
    browser->ensureViewVisible(doomed);
    delete doomed;
    settle();
}

TEST_F(ViewStack, AViewMayGoBehindItsContextMenu)
{
    StripView *const view = addStrip();
    bool hadMenu = false;
    QTimer::singleShot(100, browser.get(), [&] {
        hadMenu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        browser->setSetup(QVariantList()); // as where other data are shown
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, view->mapToGlobal({5, 5}));
    QApplication::sendEvent(view, &event);
    QTest::qWait(200);
    EXPECT_TRUE(hadMenu);
    EXPECT_FALSE(QApplication::activePopupWidget());
}

} // namespace
