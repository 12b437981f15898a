#include "spectraviewwindow.h"

#include <QScrollBar>
#include <QTest>

// Separate plots of as many spectra as somebody has inverted again: those in sight alone cost time.

namespace {

constexpr int many = 40;

struct ManySpectra : Window {
    SpectMath::SpectrumPointerList spectra;
    QScrollArea *area = view.findChild<RecordViews::ResultPlots *>();

    ManySpectra()
    {
        for (int i = 0; i < many; ++i)
            spectra.push_back(spectrum(testInfo(QString("inverted %1").arg(i, 2, 10, QChar('0')), {1, 10, 100},
                                                DistributionScale::radius, "a"),
                                       realVector({1.0 + i, 2, 3})));
        view.setSinglePlot(false);
        show(spectra);
        settle();
    }
    int plotCount() const { return view.findChildren<ResultPlot *>().size(); }
    /// The number in the title of the plot that is seen there, or -1.
    int spectrumAt(int y) const
    {
        for (const ResultPlot *plot : plots()) {
            const QRect rect(plot->mapTo(area->viewport(), QPoint()), plot->size());
            if (rect.contains(rect.x(), y))
                return plot->title().text().section("inverted ", 1).left(2).toInt();
        }
        return -1;
    }
};

/// Pixels in the lowest lines that aren't of the first one's colour.
int inkAtTheEnd(const QImage &image, int lines)
{
    int count = 0;
    for (int y = image.height() - lines; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) != image.pixel(0, 0);
    }
    return count;
}

} // namespace

TEST(ResultPlots, OnlyThoseInSightAreMade)
{
    ManySpectra w;
    const int few = w.plotCount();
    EXPECT_LT(few, 8);
    EXPECT_EQ(w.spectrumAt(5), 0);
    QScrollBar *const bar = w.area->verticalScrollBar();
    bar->setValue(bar->maximum());
    EXPECT_EQ(w.spectrumAt(w.area->viewport()->height() - 5), many - 1);
    EXPECT_LT(w.plotCount(), 16);
    w.spectra.front()->concentrations[0] = 50;
    w.show(w.spectra);
    bar->setValue(0);
    EXPECT_EQ(w.spectrumAt(5), 0);
    EXPECT_EQ(w.curves()[0]->sample(0).y(), 50) << "filled with the record that came meanwhile";
    w.view.setSinglePlot(true);
    ASSERT_EQ(w.plots().size(), 1);
    EXPECT_EQ(w.plots()[0]->height(), w.area->viewport()->height());
}

TEST(ResultPlots, StandBelowEachOtherAtEachSize)
{
    ManySpectra w;
    for (const QSize size : {QSize(300, 300), QSize(500, 900), QSize(200, 150)}) {
        w.view.resize(size);
        settle();
        int bottom = 0;
        for (const ResultPlot *plot : w.plots()) {
            EXPECT_GE(plot->y(), bottom);
            EXPECT_LT(plot->y() - bottom, 20);
            EXPECT_EQ(plot->width(), w.area->viewport()->width());
            bottom = plot->geometry().bottom();
        }
        EXPECT_GE(bottom, w.area->viewport()->height());
    }
}

TEST(ResultPlots, KeysGoThroughAllOfThem)
{
    ManySpectra w;
    w.view.activateWindow();
    w.plots()[0]->setFocus();
    for (int i = 1; i < many; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    auto *const last = qobject_cast<ResultPlot *>(QApplication::focusWidget());
    ASSERT_TRUE(last);
    EXPECT_TRUE(last->title().text().contains(QString::number(many - 1)));
    QScrollBar *const bar = w.area->verticalScrollBar();
    EXPECT_EQ(bar->value(), bar->maximum());
    bar->setValue(0);
    EXPECT_EQ(QApplication::focusWidget(), last) << "scrolling takes the focus from no plot";
}

TEST(ResultPlots, APictureHoldsThoseOutOfSightToo)
{
    ManySpectra w;
    QAction *const copy = w.action("Copy picture");
    copy->trigger();
    EXPECT_LT(w.plotCount(), 8);
    const QImage image = QApplication::clipboard()->image();
    ASSERT_GT(image.height(), many * 50);
    EXPECT_GT(inkAtTheEnd(image, 100), 100);

    QScrollBar *const bar = w.area->verticalScrollBar();
    for (int i = 0; i <= 20; ++i)
        bar->setValue(bar->maximum() * i / 20);
    EXPECT_EQ(w.plotCount(), many);
    copy->trigger();
    EXPECT_EQ(QApplication::clipboard()->image(), image) << "one that was seen looks as one that wasn't";
}

TEST(ResultPlots, ATitleOfManyNamesLeavesTheCurvesRoom)
{
    ManySpectra w;
    w.view.setSinglePlot(true);
    for (const QSize size : {QSize(420, 500), QSize(250, 400), QSize(1200, 900)}) {
        w.view.resize(size);
        settle();
        const ResultPlot *const plot = w.plots()[0];
        EXPECT_GT(plot->canvas()->height(), plot->height() / 3) << size.width();
        EXPECT_TRUE(plot->title().text().contains("inverted 00"));
        EXPECT_TRUE(plot->title().text().contains(QChar(0x2026))) << "some are missing";
    }
    EXPECT_TRUE(w.plots()[0]->title().text().contains("inverted 19")) << "of the last size";
}
