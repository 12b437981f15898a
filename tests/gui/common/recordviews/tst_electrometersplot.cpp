#include "gui/common/recordviews/channelplot.h"
#include "gui/common/recordviews/electrometersplot.h"
#include "support/commands.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QAction>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTimer>

#include <gtest/gtest.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_intervalcurve.h>
#include <qwt_scale_widget.h>

#include <limits>

using RecordViews::ElectrometersPlot;

namespace {

const double infinity = std::numeric_limits<double>::infinity();

/// A plot of four electrometers, shown.
struct Shown {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    std::shared_ptr<Record> record = std::make_shared<Record>();
    ElectrometersPlot view{ui};
    RecordViews::RecordPlot *plot = view.findChild<RecordViews::RecordPlot *>();

    Shown()
    {
        record->currents = realVector({10, -20, noValue, 40});
        record->rawCurrents = realVector({11, 21, 31, 41});
        record->currentVariances = realVector({4, noValue, 9, 1});
        ui->setData(testMetadata({"ions"}, {"a", "b", "c", "d"}), {});
        view.resize(500, 400);
        view.show();
        view.updateSetup();
        show();
    }
    void show()
    {
        view.showRecord(record);
        settle();
    }
    template<typename Item>
    QList<Item *> items() const
    {
        QList<Item *> found;
        for (QwtPlotItem *item : plot->itemList()) {
            if (auto *one = dynamic_cast<Item *>(item))
                found << one;
        }
        return found;
    }
    QString barEnds() const
    {
        const auto *bars = items<QwtPlotIntervalCurve>().first();
        QStringList texts;
        for (int i = 0; i < int(bars->dataSize()); ++i)
            texts << QStringLiteral("%1..%2")
                         .arg(bars->sample(i).interval.minValue())
                         .arg(bars->sample(i).interval.maxValue());
        return texts.join(' ');
    }
    /// The points of a curve that is seen, with their channels.
    QString points(const QString &name) const
    {
        QStringList texts;
        for (const QwtPlotCurve *curve : items<QwtPlotCurve>()) {
            for (int i = 0; curve->title().text() == name && curve->isVisible() && i < int(curve->dataSize()); ++i)
                texts << QStringLiteral("%1:%2").arg(curve->sample(i).x()).arg(curve->sample(i).y());
        }
        return texts.join(' ');
    }
    double top() const { return plot->axisScaleDiv(QwtPlot::yLeft).upperBound(); }
    QAction *action(const QString &text) const { return commandOf(view.actions(), text); }
    /// Enters these texts into the dialogs that the command opens, one after the other; null is Cancel. The labels that
    /// were seen.
    QStringList enter(QStringList texts)
    {
        QStringList labels;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &view, [&] {
            auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            labels << dialog->labelText() + '|' + dialog->textValue();
            const QString text = texts.isEmpty() ? QString() : texts.takeFirst();
            dialog->setTextValue(text);
            text.isNull() ? dialog->reject() : dialog->accept();
        });
        timer.start(0);
        action("Set coefficients...")->trigger();
        return labels;
    }
};

} // namespace

TEST(ElectrometersPlot, ShowsCurrentsAndTheLevelOfNoise)
{
    Shown shown;
    EXPECT_EQ(shown.points("Current"), "1:10 2:-20 4:40");
    EXPECT_EQ(shown.points("Raw current"), "1:11 2:21 3:31 4:41");
    EXPECT_EQ(shown.barEnds(), "-4..4 -inf..inf -6..6 -2..2");
    EXPECT_GE(shown.top(), 41);
    EXPECT_LE(shown.top(), 60) << "an endless bar doesn't stretch the axis";
    EXPECT_EQ(shown.plot->axisTitle(QwtPlot::yLeft).text(), "Current (fA)");
    EXPECT_EQ(shown.plot->axisTitle(QwtPlot::xBottom).text(), "Channel number");

    shown.record->rawCurrents = realVector({noValue, noValue});
    shown.record->currents = realVector({infinity, 1e308, -1e308, 5});
    shown.record->currentVariances = RealVector();
    shown.show();
    EXPECT_EQ(shown.points("Raw current"), "");
    EXPECT_EQ(shown.points("Current"), "4:5");
    shown.record->currentVariances = RealVector(4, noValue);
    shown.record->currents = RealVector();
    shown.show();
    EXPECT_EQ(shown.barEnds(), "-inf..inf -inf..inf -inf..inf -inf..inf");
    EXPECT_LT(shown.top(), 1000) << "Qwt's scale for what it can't fit";

    shown.view.showRecord(nullptr);
    for (const QwtPlotSeriesItem *item : shown.items<QwtPlotSeriesItem>())
        EXPECT_FALSE(item->isVisible());
}

TEST(ElectrometersPlot, AnEndlessBarGoesOverTheWholeCanvas)
{
    Shown shown;
    for (QwtPlotCurve *curve : shown.items<QwtPlotCurve>())
        curve->setVisible(false);
    shown.plot->replot();
    settle();
    const QWidget *const canvas = shown.plot->canvas();
    const QImage image = shown.plot->grab().toImage();
    const QPoint origin = canvas->pos();
    const auto darkRows = [&](int channel) {
        const int x = origin.x() + qRound(shown.plot->transform(QwtPlot::xBottom, channel));
        int dark = 0;
        for (int y = origin.y() + 2; y < origin.y() + canvas->height() - 2; ++y) {
            bool isDark = false;
            for (int dx = -1; dx <= 1; ++dx)
                isDark |= image.pixelColor(x + dx, y).lightness() < 160;
            dark += isDark;
        }
        return dark;
    };
    EXPECT_EQ(darkRows(2), canvas->height() - 4);
    EXPECT_LT(darkRows(1), canvas->height() / 2);
    EXPECT_GT(darkRows(1), 10);
}

TEST(ElectrometersPlot, ReadoutNamesTheElectrometer)
{
    Shown shown;
    const QPoint at(qRound(shown.plot->transform(QwtPlot::xBottom, 4)),
                    qRound(shown.plot->transform(QwtPlot::yLeft, 40)) + 2);
    sendMouse(shown.plot->canvas(), QEvent::MouseMove, at);
    EXPECT_EQ(shown.plot->readout()->text(), "Current\n4 (d), 40 fA");
}

TEST(ElectrometersPlot, OffersItsCommandsOverThePlotAndNotOverTheAxes)
{
    Shown shown;
    EXPECT_FALSE(menuOver(shown.plot->canvas()).isEmpty());
    EXPECT_TRUE(menuOver(shown.plot->axisWidget(QwtPlot::yLeft)).isEmpty()) << "there the right button fits the axis";
}

TEST(ElectrometersPlot, DoesNotHoldTheWindowOpen)
{
    Shown shown;
    shown.view.resize(150, 160);
    EXPECT_EQ(shown.view.size(), QSize(150, 160));
}

TEST(ElectrometersPlot, CorrectsWithTheUsersCoefficients)
{
    Shown shown;
    QSignalSpy settings(&shown.view, &RecordViews::RecordView::setupChanged);
    QAction *const use = shown.action("Use correction");
    const QString misfit = "<font color='darkred'>Correction not used! Vector size does not match.</font>";
    use->trigger();
    EXPECT_EQ(settings.size(), 1);
    EXPECT_EQ(shown.plot->axisTitle(QwtPlot::yLeft).text(), "<b>Corrected current</b> (fA)");
    EXPECT_EQ(shown.plot->title().text(), misfit) << "there are no coefficients";
    EXPECT_EQ(shown.points("Current"), "1:10 2:-20 4:40");

    EXPECT_EQ(
        shown.enter({"1 2 <b> x", "1,2,3,4"}),
        QStringList({"Correction coefficients:|",
                     "<b>\"&lt;b&gt;\" is not a number. Please fix!</b> <br>Correction coefficients:|1 2 <b> x"}));
    EXPECT_EQ(shown.plot->title().text(), "");
    EXPECT_EQ(shown.points("Current"), "1:10 2:-40 4:160");
    EXPECT_EQ(shown.points("Raw current"), "1:11 2:42 3:93 4:164");
    EXPECT_EQ(shown.barEnds(), "-4..4 -inf..inf -10.3923..10.3923 -4..4");
    EXPECT_EQ(settings.size(), 2);
    EXPECT_EQ(shown.enter({QString()}), QStringList("Correction coefficients:|1 2 3 4"));
    EXPECT_EQ(shown.view.coefficients().size(), 4u) << "Cancel keeps them";

    Shown other;
    other.view.restoreSetup(shown.view.setup());
    EXPECT_EQ(other.points("Current"), "1:10 2:-40 4:160");
    EXPECT_TRUE(other.action("Use correction")->isChecked());
    for (const QVariantMap &map : {QVariantMap(), QVariantMap{{"coefficients", 3}, {"useCoefficients", "no"}}}) {
        other.view.restoreSetup(shown.view.setup());
        other.view.restoreSetup(map);
        EXPECT_EQ(other.view.setup(), Shown().view.setup()) << "as in a new view";
    }
    other.view.restoreSetup({{"coefficients", QStringList({"1", "zwei"})}, {"useCoefficients", true}});
    EXPECT_EQ(other.plot->title().text(), misfit);

    shown.enter({" "});
    EXPECT_EQ(shown.plot->title().text(), misfit);
    shown.view.setUseCorrection(false);
    EXPECT_FALSE(use->isChecked());
    EXPECT_EQ(shown.plot->title().text(), "");
    EXPECT_EQ(shown.plot->axisTitle(QwtPlot::yLeft).text(), "Current (fA)");
    EXPECT_EQ(shown.points("Current"), "1:10 2:-20 4:40");
}
