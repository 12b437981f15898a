#include "spectraviewwindow.h"

#include <QScrollBar>
#include <QTest>

#include <functional>

// Separate plots of as many spectra as somebody has inverted again: those in sight alone cost time.

namespace {

constexpr int many = 40;

struct ManySpectra : Window {
    SpectMath::SpectrumPointerList spectra;
    QScrollArea *area = view.findChild<RecordViews::ResultPlots *>();

    ManySpectra()
    {
        showTimes(1);
        view.setSinglePlot(false);
        show(spectra);
        settle();
    }
    /// Another record, with that many times as much of everything.
    void showTimes(double factor, int count = many)
    {
        spectra.clear();
        for (int i = 0; i < count; ++i)
            spectra.push_back(spectrum(testInfo(QString("inverted %1").arg(i, 2, 10, QChar('0')), {1, 10, 100},
                                                DistributionScale::radius, "a"),
                                       realVector({(i + 1) * factor, 2 * factor, 3 * factor})));
        show(spectra);
    }
    /// From there to the end, so that all on the way are made.
    void scrollFrom(double part) const
    {
        QScrollBar *const bar = area->verticalScrollBar();
        for (double to = part; to <= 1; to += 0.05)
            bar->setValue(int(bar->maximum() * to));
    }
    void scrollBack() const { area->verticalScrollBar()->setValue(0); }
    QImage picture() const
    {
        action("Copy picture")->trigger();
        return QApplication::clipboard()->image();
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

TEST(ResultPlots, APlotKeepsTheKeyboardThoughItsWindowIsntActive)
{
    ManySpectra w;
    w.view.activateWindow();
    ResultPlot *const first = w.plots()[0];
    first->setFocus();
    QWidget other;
    other.show();
    other.activateWindow();
    settle();
    ASSERT_FALSE(first->hasFocus());
    w.scrollFrom(1);
    w.showTimes(2);
    w.view.activateWindow();
    settle();
    EXPECT_EQ(QApplication::focusWidget(), first);
}

TEST(ResultPlots, APictureHoldsThoseOutOfSightToo)
{
    const struct {
        const char *what;
        std::function<void(ManySpectra &)> prepare;
    } cases[] = {{"as they came", [](ManySpectra &) {}},
                 {"some without a spectrum", [](ManySpectra &w) { w.showTimes(1, many - 9); }},
                 {"locked to another record", [](ManySpectra &w) {
                      w.action("Lock axes")->setChecked(true);
                      w.showTimes(2);
                  }}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        ManySpectra w;
        c.prepare(w);
        const QImage image = w.picture();
        EXPECT_LT(w.plotCount(), 8);
        ASSERT_GT(image.height(), many * 50);
        EXPECT_GT(inkAtTheEnd(image, 100), 100);
        w.scrollFrom(0);
        EXPECT_EQ(w.plotCount(), many);
        EXPECT_EQ(w.picture(), image) << "one that was seen looks as one that wasn't";
    }
}

// Higher than the toolkit draws at a time.
TEST(ResultPlots, APictureOfVeryManyIsDrawnToItsEnd)
{
    ManySpectra w;
    w.showTimes(1, 3 * many);
    const QImage image = w.picture();
    ASSERT_GT(image.height(), 33'000);
    for (const int height : {20'000, 31'000, image.height()})
        EXPECT_GT(inkAtTheEnd(image.copy(0, 0, image.width(), height), 400), 100) << height;
}

// Some plots were seen before, some with the record of the lock, and some come into sight later.
TEST(ResultPlots, LockedAxesAreOfOneRecord)
{
    ManySpectra w;
    w.scrollFrom(0.5);
    w.scrollBack();
    w.showTimes(100);
    w.action("Lock axes")->setChecked(true);
    w.showTimes(1);
    const auto expectAxesOf = [&w](double factor) {
        int count = 0;
        for (int y = 0; y <= 20; ++y) {
            w.area->verticalScrollBar()->setValue(w.area->verticalScrollBar()->maximum() * y / 20);
            for (const ResultPlot *plot : w.plots()) {
                const int i = plot->title().text().section("inverted ", 1).left(2).toInt();
                const double greatest = std::max(3, i + 1) * factor;
                const double upper = plot->axisScaleDiv(QwtPlot::yLeft).upperBound();
                EXPECT_GE(upper, greatest) << i;
                EXPECT_LE(upper, 2 * greatest) << i;
                ++count;
            }
        }
        EXPECT_GT(count, many);
        w.scrollBack();
    };
    expectAxesOf(100);
    w.showTimes(10'000);
    w.action("Fit axes")->trigger();
    w.showTimes(1);
    expectAxesOf(10'000);
    w.action("Lock axes")->setChecked(false);
    expectAxesOf(1);
}

TEST(ResultPlots, ThoseOutOfSightHoldNothingOfARecordThatWent)
{
    ManySpectra w;
    w.scrollFrom(0);
    w.scrollBack();
    w.action("Lock axes")->setChecked(true);
    std::vector<std::weak_ptr<SpectMath::Spectrum>> seen(w.spectra.begin(), w.spectra.end());
    w.spectra.clear();
    w.view.showRecord(nullptr);
    EXPECT_TRUE(std::all_of(seen.begin(), seen.end(), [](const auto &spectrum) { return spectrum.expired(); }));
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
