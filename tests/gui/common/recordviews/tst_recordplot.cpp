#include "gui/common/recordviews/panzoomhelper.h"
#include "gui/common/recordviews/plotpicture.h"
#include "gui/common/recordviews/recordplot.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "support/gestures.h"
#include "support/savedialog.h"

#include <QAction>
#include <QClipboard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <qwt_plot_curve.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_widget.h>

#include <cmath>

namespace {

using RecordViews::PanZoomHelper;
using RecordViews::PlotPicture;
using RecordViews::RecordPlot;

/// A plot of one curve, from which the read-out takes its points too.
struct CurvePlot : RecordPlot {
    QVector<QPointF> points{{1, 10}, {2, 20}, {4, 40}};
    QwtPlotCurve *curve = new QwtPlotCurve;
    int replots = 0;

    CurvePlot()
    {
        curve->setItemAttribute(QwtPlotItem::AutoScale);
        curve->attach(this);
        resize(400, 300);
        show();
        setPoints(points);
    }
    void setPoints(const QVector<QPointF> &to)
    {
        points = to;
        curve->setSamples(points);
        replot();
        settle();
    }
    void replot() override
    {
        ++replots;
        RecordPlot::replot();
    }
    QVector<RecordViews::PlotReadout::Series> readoutSeries() const override { return {{"one", Qt::red, points, {}}}; }
    QPointF span(int axis) const { return {axisScaleDiv(axis).lowerBound(), axisScaleDiv(axis).upperBound()}; }
};

void expectNear(const QPointF &a, const QPointF &b, const char *what)
{
    EXPECT_NEAR(a.x(), b.x(), 1e-9 * std::abs(b.x()) + 1e-12) << what;
    EXPECT_NEAR(a.y(), b.y(), 1e-9 * std::abs(b.y()) + 1e-12) << what;
}

} // namespace

TEST(PanZoomHelper, DragsAndWheelMoveTheAxisAsTheyMoveOverIt)
{
    const struct {
        const char *name;
        int axis;
        bool isLog;
        QPoint drag; ///< of the mouse
        int along;   ///< pixels towards greater values
        int across;  ///< pixels of zoom
    } cases[] = {
        {"x right", QwtPlot::xBottom, false, {30, 0}, 30, 0},   {"x up", QwtPlot::xBottom, false, {0, -40}, 0, 40},
        {"x log", QwtPlot::xBottom, true, {-30, -40}, -30, 40}, {"y up", QwtPlot::yLeft, false, {0, -50}, 50, 0},
        {"y left", QwtPlot::yLeft, false, {-20, 0}, 0, -20},    {"y log", QwtPlot::yLeft, true, {20, 30}, -30, 20},
    };
    for (const auto &c : cases) {
        CurvePlot plot;
        if (c.isLog)
            plot.setAxisScaleEngine(c.axis, new QwtLogScaleEngine);
        plot.setPoints({{1, 1}, {1000, 1000}});
        QwtScaleWidget *const widget = plot.axisWidget(c.axis);
        const QPoint from(widget->width() / 2, widget->height() / 3);
        const auto scale = [&](double value) { return c.isLog ? std::log10(value) : value; };
        const double low = scale(plot.span(c.axis).x()), high = scale(plot.span(c.axis).y());
        const double perPixel = (high - low) / plot.axisScaleDraw(c.axis)->length();
        const QwtScaleMap map = plot.axisScaleDraw(c.axis)->scaleMap();
        const double center = scale(map.invTransform(c.axis == QwtPlot::yLeft ? from.y() : from.x()));
        // By way of another point: what counts is the way from the press.
        dragMouse(widget, from, {from + QPoint(7, 7), from + c.drag});
        const double factor = std::pow(0.995, c.across);
        const auto moved = [&](double end) { return (end - center - c.along * perPixel) * factor + center; };
        const QPointF span = plot.span(c.axis);
        expectNear({scale(span.x()), scale(span.y())}, {moved(low), moved(high)}, c.name);
    }
    CurvePlot plot;
    QwtScaleWidget *const widget = plot.axisWidget(QwtPlot::xBottom);
    const double before = plot.span(QwtPlot::xBottom).y() - plot.span(QwtPlot::xBottom).x();
    turnWheel(widget, widget->rect().center(), {0, 240});
    EXPECT_NEAR(plot.span(QwtPlot::xBottom).y() - plot.span(QwtPlot::xBottom).x(), 0.81 * before, 1e-9);
}

TEST(PanZoomHelper, RefusesScalesThatCantBeShown)
{
    const auto ends = [](double first, double last, double shift, double factor, bool isLog = false) {
        QwtScaleMap map;
        if (isLog)
            map.setTransformation(new QwtLogTransform);
        map.setPaintInterval(0, 100);
        map.setScaleInterval(first, last);
        return PanZoomHelper::movedEnds(map, 50, shift, factor).has_value();
    };
    const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
    EXPECT_TRUE(ends(0, 1, 10, 0.5) && ends(1, 0, 10, 0.5) && ends(1e-99, 1, 0, 1, true));
    for (double bad : {inf, nan, 0.0})
        EXPECT_FALSE(ends(0, 1, 0, bad)) << bad;
    EXPECT_FALSE(ends(0, 1, nan, 1));
    EXPECT_TRUE(ends(1e6, 1e6 + 1e-5, 0, 1));
    EXPECT_FALSE(ends(1e6, 1e6 + 1e-7, 0, 1)) << "below 1e-12 of its ends";
    EXPECT_FALSE(ends(-1e308, 1e308, 0, 2)) << "a span without end";
    EXPECT_FALSE(ends(1e-99, 1, 10, 1, true)) << "below 1e-100";
    EXPECT_FALSE(ends(1, 1e99, -10, 1, true)) << "above 1e100";

    CurvePlot plot;
    QwtScaleWidget *const widget = plot.axisWidget(QwtPlot::xBottom);
    const QPointF before = plot.span(QwtPlot::xBottom);
    turnWheel(widget, widget->rect().center(), {0, -120 * 1000000});
    EXPECT_EQ(plot.span(QwtPlot::xBottom), before);
    plot.setPoints({{1, 1}, {9, 9}});
    EXPECT_EQ(plot.span(QwtPlot::xBottom).y(), 9) << "what was refused ends no autoscale";
}

TEST(PanZoomHelper, OutsideOfAutoModeItSwitchesTheAutoscaleItself)
{
    QwtPlot plot;
    PanZoomHelper helper(&plot, QwtPlot::yLeft);
    plot.resize(300, 200);
    plot.show();
    QSignalSpy wishes(&helper, &PanZoomHelper::setAutoScaleEnabled);
    turnWheel(plot.axisWidget(QwtPlot::yLeft), {5, 50}, {0, 120});
    EXPECT_FALSE(plot.axisAutoScale(QwtPlot::yLeft));
    QTest::mouseDClick(plot.axisWidget(QwtPlot::yLeft), Qt::LeftButton);
    EXPECT_TRUE(plot.axisAutoScale(QwtPlot::yLeft));
    EXPECT_EQ(wishes.count(), 0);
}

TEST(RecordPlot, AxesFollowTheContentsUntilTheyAreMovedOrLocked)
{
    CurvePlot plot;
    const auto spanFor = [&](double greatest) {
        plot.setPoints({{0, 0}, {greatest, greatest}});
        return QPointF(plot.span(QwtPlot::xBottom).y(), plot.span(QwtPlot::yLeft).y());
    };
    QwtScaleWidget *const x = plot.axisWidget(QwtPlot::xBottom);
    EXPECT_EQ(spanFor(10), QPointF(10, 10));
    dragMouse(x, x->rect().center(), {x->rect().center() + QPoint(20, 0)});
    const double moved = plot.span(QwtPlot::xBottom).y();
    EXPECT_EQ(spanFor(100), QPointF(moved, 100)) << "the other axis follows on";
    QTest::mouseClick(x, Qt::RightButton);
    EXPECT_EQ(spanFor(10), QPointF(10, 10));
    plot.setAxesLocked(true);
    EXPECT_EQ(spanFor(100), QPointF(10, 10));
    QTest::mouseDClick(x, Qt::LeftButton);
    EXPECT_EQ(spanFor(1000), QPointF(100, 10)) << "it was fitted once, and is still locked";
    for (const int height : {100, 700, 300}) { // with fewer and more ticks
        plot.resize(plot.width(), height);
        EXPECT_EQ(plot.span(QwtPlot::yLeft), QPointF(0, 10)) << height;
    }
    plot.setAxesLocked(false);
    EXPECT_EQ(spanFor(100), QPointF(100, 100));

    plot.curve->setVisible(false);
    plot.replot();
    EXPECT_EQ(plot.span(QwtPlot::yLeft).y(), 100) << "an empty plot keeps its axes";
    CurvePlot fresh;
    fresh.setPoints({});
    fresh.fitAxes();
    fresh.setAxesLocked(true);
    fresh.setPoints({{0, 0}, {7, 8}});
    fresh.setPoints({{0, 0}, {70, 80}});
    EXPECT_EQ(fresh.span(QwtPlot::yLeft).y(), 8) << "a plot that was empty fits its first contents";
}

TEST(RecordPlot, KeysDoWhatTheMouseDoes)
{
    CurvePlot plot;
    plot.setPoints({{0, 0}, {10, 10}});
    plot.points = {{0, 0}, {5, std::nan("")}, {10, 10}};
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&plot, key, modifiers);
    };
    press(Qt::Key_Plus);
    expectNear(plot.span(QwtPlot::xBottom), {1, 9}, "zoomed");
    press(Qt::Key_Right, Qt::ShiftModifier);
    expectNear(plot.span(QwtPlot::xBottom), {1.8, 9.8}, "panned");
    press(Qt::Key_Up, Qt::ShiftModifier);
    expectNear(plot.span(QwtPlot::yLeft), {1.8, 9.8}, "panned");
    press(Qt::Key_Home);
    expectNear(plot.span(QwtPlot::xBottom), {0, 10}, "fitted");
    press(Qt::Key_Period);
    EXPECT_EQ(plot.readout()->text().left(4), "one\n");
    press(Qt::Key_Comma);
    EXPECT_EQ(plot.readout()->text(), "one\n0, 0");
    press(Qt::Key_Comma);
    press(Qt::Key_PageDown);
    press(Qt::Key_Period);
    EXPECT_EQ(plot.readout()->text(), "one\n10, 10") << "a point that isn't finite is passed over";
    press(Qt::Key_Escape);
    EXPECT_EQ(plot.readout()->text(), "");
}

TEST(RecordPlot, TheReadoutTellsTheNearestPointAndCostsNoReplot)
{
    CurvePlot plot;
    plot.readout()->setUnits("nm", "1/cm^3");
    const int replots = plot.replots;
    const auto at = [&](double x, double y) {
        return QPoint(qRound(plot.transform(QwtPlot::xBottom, x)), qRound(plot.transform(QwtPlot::yLeft, y)));
    };
    sendMouse(plot.canvas(), QEvent::MouseMove, at(2.1, 21), Qt::NoButton);
    EXPECT_EQ(plot.readout()->text(), "one\n2 nm, 20 1/cm^3");
    sendMouse(plot.canvas(), QEvent::MouseMove, at(3.5, 36), Qt::NoButton);
    EXPECT_EQ(plot.readout()->text(), "one\n4 nm, 40 1/cm^3");
    settle();
    EXPECT_EQ(plot.replots, replots);
    plot.setPoints({{1, 10}, {4, 38}});
    EXPECT_EQ(plot.readout()->text(), "one\n4 nm, 38 1/cm^3") << "the contents changed under the pointer";
    plot.setPoints({});
    EXPECT_EQ(plot.readout()->text(), "");
    sendMouse(plot.canvas(), QEvent::MouseMove, {50, 50}, Qt::NoButton);
    EXPECT_EQ(plot.readout()->text(), "");
}

TEST(RecordPlot, ColoursAreThePalettes)
{
    CurvePlot plot;
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(10, 20, 30));
    dark.setColor(QPalette::Text, Qt::white);
    plot.setPalette(dark);
    settle();
    EXPECT_EQ(plot.canvas()->grab().toImage().pixelColor(plot.canvas()->rect().center() / 8), QColor(10, 20, 30));
}

TEST(RecordPlot, TitlesAreNoMarkup)
{
    CurvePlot plot;
    const QString markup = "<b>a</b>";
    plot.setPlainTitle(markup);
    plot.setPlainAxisTitle(QwtPlot::xBottom, markup);
    QFont font = plot.font();
    font.setPointSize(font.pointSize() + 3);
    plot.setFont(font);
    const double rich = QwtText(markup, QwtText::RichText).textSize(font).width();
    for (const QwtText &title : {plot.title(), plot.axisTitle(QwtPlot::xBottom)})
        EXPECT_GT(title.textSize(font).width(), 2 * rich);
}

TEST(RecordPlot, TheWheelOverAnAxisScrollsNothingElse)
{
    CurvePlot plot; // which gets what the axis lets pass
    EXPECT_TRUE(turnWheel(&plot, plot.axisWidget(QwtPlot::xBottom)->geometry().center(), {0, 120}));
    EXPECT_FALSE(turnWheel(&plot, plot.canvas()->geometry().center(), {0, 120}));
}

TEST(PlotPicture, AsksForAFileAndTellsOfFailures)
{
    const QTemporaryDir folder;
    CurvePlot plot;
    PlotPicture picture(&plot);
    const auto saveAs = [&](const QString &path) { return saveByDialog(picture.saveAction(), path); };
    EXPECT_EQ(saveAs(folder.filePath("a.svg")), "");
    EXPECT_EQ(saveAs(folder.filePath("b")), "");
    EXPECT_EQ(filesIn(folder.path()), (QStringList{"a.svg", "b.png"}));
    EXPECT_TRUE(saveAs(folder.filePath("<b>.xyz")).contains("<b>.xyz"));
    picture.copyAction()->trigger();
    EXPECT_EQ(QApplication::clipboard()->image().size(), 2 * plot.size());
}

TEST(PlotPicture, DrawsThePlotsThatAreSeenAsEachKindOfFile)
{
    const QTemporaryDir folder;
    QWidget widget;
    widget.resize(300, 200);
    auto *seen = new CurvePlot, *hidden = new CurvePlot;
    for (CurvePlot *plot : {seen, hidden}) {
        plot->curve->setPen(QPen(plot == seen ? Qt::red : Qt::green, 8));
        plot->setParent(&widget);
        plot->resize(300, 200);
    }
    seen->show();
    hidden->hide();
    widget.show();
    QApplication::setActiveWindow(&widget);
    seen->setFocus();
    ASSERT_TRUE(seen->hasFocus());
    const auto drawing = PlotPicture::drawingOf(&widget);
    const QImage image = PictureFile::imageOf(drawing, 2);
    EXPECT_EQ(image.size(), QSize(600, 400));
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colors << image.pixel(x, y);
    EXPECT_TRUE(colors.contains(QColor(Qt::red).rgb()));
    EXPECT_FALSE(colors.contains(QColor(Qt::green).rgb()));
    const QColor focus = seen->palette().color(QPalette::Highlight);
    EXPECT_FALSE(colors.contains(focus.rgb())) << "the keyboard focus is nothing for a picture";
    EXPECT_EQ(seen->canvas()->palette().color(QPalette::WindowText), focus) << "and is seen again behind it";

    bool isCancelled = false;
    const auto write = [&](const QString &name) {
        return PictureFile::write(PictureFile::draw(drawing, name, 2), folder.filePath(name),
                                  [&] { return isCancelled; });
    };
    for (const char *name : {"a.png", "a.SVG", "a.pdf"})
        EXPECT_EQ(write(name), QString()) << name;
    EXPECT_EQ(QImage(folder.filePath("a.png")), image.convertToFormat(QImage::Format_ARGB32));
    EXPECT_TRUE(contentOf(folder.filePath("a.SVG")).contains("<svg"));
    EXPECT_TRUE(contentOf(folder.filePath("a.SVG")).contains("#ff0000"));
    EXPECT_TRUE(contentOf(folder.filePath("a.pdf")).startsWith("%PDF"));
    EXPECT_FALSE(write("a.xyz").isEmpty());

    const QByteArray before = contentOf(folder.filePath("a.png"));
    {
        const FullDisk disk(100);
        EXPECT_FALSE(write("a.png").isEmpty());
    }
    isCancelled = true;
    seen->curve->setPen(QPen(Qt::blue, 8));
    for (const char *name : {"a.png", "b.png", "b.svg"})
        write(name);
    EXPECT_EQ(contentOf(folder.filePath("a.png")), before) << "the old file stands";
    EXPECT_EQ(filesIn(folder.path()).size(), 3);
}
