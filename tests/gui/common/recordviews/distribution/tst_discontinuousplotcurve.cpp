#include "gui/common/recordviews/distribution/discontinuousplotcurve.h"
#include "gui/common/recordviews/distribution/resultdata.h"
#include "support/realvector.h"
#include "support/seeds.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <cmath>

namespace {

using RecordViews::DiscontinuousPlotCurve;

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
const QRectF box(0, 0, 10, 10);

/// "0,5 10,5; 3,3": pieces and their points.
QString textOf(const QVector<QPolygonF> &pieces)
{
    QStringList texts;
    for (const QPolygonF &piece : pieces) {
        QStringList points;
        for (const QPointF &p : piece)
            points << QString("%1,%2").arg(p.x()).arg(p.y());
        texts << points.join(' ');
    }
    return texts.join("; ");
}

double distance(const QPointF &p, const QPointF &a, const QPointF &b)
{
    const QPointF way = b - a;
    const double length = QPointF::dotProduct(way, way);
    const double part = length > 0 ? qBound(0.0, QPointF::dotProduct(p - a, way) / length, 1.0) : 0;
    const QPointF gap = p - (a + part * way);
    return std::hypot(gap.x(), gap.y());
}

/// From a point to the nearest of some lines.
double distance(const QPointF &p, const QVector<QPolygonF> &lines)
{
    double least = inf;
    for (const QPolygonF &line : lines) {
        for (int i = 0; i + 1 < line.size(); ++i)
            least = std::min(least, distance(p, line[i], line[i + 1]));
    }
    return least;
}

class RandomLines : public Seeded<> {};

} // namespace

TEST(DiscontinuousPlotCurve, BreaksAtMissingValuesAndAtTheEdges)
{
    const struct {
        const char *name;
        QPolygonF points;
        const char *pieces;
    } cases[] = {
        {"nothing", {}, ""},
        {"one point", QVector<QPointF>{{1, 1}}, "1,1"},
        {"one point outside", QVector<QPointF>{{11, 1}}, ""},
        {"inside", QVector<QPointF>{{1, 1}, {2, 2}, {3, 1}}, "1,1 2,2 3,1"},
        {"a gap", QVector<QPointF>{{1, 1}, {2, 2}, {3, none}, {4, 4}, {none, 5}, {6, 6}, {7, 7}},
         "1,1 2,2; 4,4; 6,6 7,7"},
        {"endless", QVector<QPointF>{{1, 1}, {2, inf}, {3, 3}, {-inf, 3}}, "1,1; 3,3"},
        {"all missing", QVector<QPointF>{{none, none}, {1, none}}, ""},
        {"leaves and enters", QVector<QPointF>{{5, 5}, {5, 15}, {7, 15}, {7, 5}}, "5,5 5,10; 7,10 7,5"},
        {"enters by a corner's side", QVector<QPointF>{{-5, -10}, {5, 10}}, "0,0 5,10"},
        {"through", QVector<QPointF>{{-10, 5}, {20, 5}}, "0,5 10,5"},
        {"passes a corner by", QVector<QPointF>{{-3, 1}, {1, -9}}, ""},
        {"above", QVector<QPointF>{{-3, 12}, {12, 12}}, ""},
        {"far away", QVector<QPointF>{{5, 5}, {5, 1e300}}, "5,5 5,10"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(textOf(DiscontinuousPlotCurve::visiblePieces(c.points, box)), c.pieces) << c.name;
}

TEST_P(RandomLines, PiecesAreWhatOfTheLineLiesInTheRectangle)
{
    QPolygonF line;
    for (int i = pick(0, 12); i > 0; --i)
        line << (pick(0, 9) ? QPointF(pick(-200, 300) / 10.0, pick(-200, 300) / 10.0) : QPointF(none, 0));
    const QVector<QPolygonF> pieces = DiscontinuousPlotCurve::visiblePieces(line, box);
    for (int i = 0; i + 1 < line.size(); ++i) {
        if (std::isnan(line[i].x()) || std::isnan(line[i + 1].x()))
            continue;
        for (int k = 0; k <= 100; ++k) {
            const QPointF p = line[i] + k / 100.0 * (line[i + 1] - line[i]);
            if (box.adjusted(0.01, 0.01, -0.01, -0.01).contains(p)) {
                EXPECT_LT(distance(p, pieces), 1e-9);
            }
        }
    }
    for (const QPolygonF &piece : pieces) {
        for (int i = 0; i + 1 < piece.size(); ++i) {
            const QPointF middle = (piece[i] + piece[i + 1]) / 2;
            EXPECT_TRUE(box.adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(middle));
            double least = inf;
            for (int j = 0; j + 1 < line.size(); ++j) {
                if (!std::isnan(line[j].x()) && !std::isnan(line[j + 1].x()))
                    least = std::min(least, distance(middle, line[j], line[j + 1]));
            }
            EXPECT_LT(least, 1e-9) << "nothing that isn't there";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomLines, ::testing::ValuesIn(seeds(100)));

TEST(DiscontinuousPlotCurve, MissingValuesDontEndTheAutoscale)
{
    QwtPlot plot;
    DiscontinuousPlotCurve curve;
    curve.setItemAttribute(QwtPlotItem::AutoScale);
    curve.setSamples(QVector<QPointF>{{1, none}, {2, 20}, {none, 5}, {4, inf}, {6, 40}});
    curve.attach(&plot);
    EXPECT_EQ(curve.boundingRect(), QRectF(2, 20, 4, 20));
    plot.replot();
    EXPECT_EQ(plot.axisScaleDiv(QwtPlot::yLeft).upperBound(), 40);
    curve.setSamples(QVector<QPointF>{{1, none}});
    EXPECT_LT(curve.boundingRect().width(), 0) << "unknown to Qwt";
    curve.detach();
}

TEST(DiscontinuousPlotCurve, DrawsDotsGapsAndDashesInItsPen)
{
    DiscontinuousPlotCurve curve;
    curve.setPen(Qt::red, 1);
    curve.setSamples(QVector<QPointF>{{10, 10}, {30, 10}, {40, none}, {60, 10}, {70, none}});
    QImage image(100, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QwtScaleMap map;
    map.setPaintInterval(0, 100);
    map.setScaleInterval(0, 100);
    curve.draw(&painter, map, map, QRectF(0, 0, 100, 20));
    const auto isRed = [&](int x) { return image.pixelColor(x, 10) == QColor(Qt::red); };
    EXPECT_TRUE(isRed(20));
    EXPECT_FALSE(isRed(45) || isRed(65));
    EXPECT_TRUE(isRed(60)) << "a point without neighbours";
}

TEST(ResultData, GivesPointsAndBars)
{
    const RecordViews::ResultData points(realVector({1, 2, 3}), realVector({10, none, 30}));
    EXPECT_EQ(points.size(), 3u);
    EXPECT_EQ(points.sample(2), QPointF(3, 30));
    EXPECT_EQ(points.boundingRect(), QRectF(1, 10, 2, 20));
    EXPECT_EQ(RecordViews::ResultData(realVector({1, 2, 3}), realVector({1})).size(), 1u);

    const RecordViews::IntervalResultData bars(realVector({4, 2, 1, none}), realVector({10, none, 30, 40}));
    EXPECT_EQ(bars.size(), 3u);
    EXPECT_EQ(bars.sample(0).interval, QwtInterval(2, 4)) << "from the smaller to the larger";
    EXPECT_EQ(bars.sample(0).value, 10);
    EXPECT_FALSE(bars.sample(1).interval.isValid() || bars.sample(2).interval.isValid());
    EXPECT_EQ(bars.boundingRect(), QRectF(2, 10, 2, 0));
    EXPECT_EQ(RecordViews::IntervalResultData(realVector({1}), realVector({1})).size(), 0u);
}
