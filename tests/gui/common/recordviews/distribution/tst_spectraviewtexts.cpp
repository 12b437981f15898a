#include "gui/common/recordviews/distribution/spectraviewdialog.h"
#include "spectraviewwindow.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>

#include <qwt_scale_widget.h>

TEST(SpectraView, CopiesTheSpectraInOrderAsText)
{
    Window w;
    EXPECT_EQ(w.copied(), "No data");
    w.view.hide(); // the text doesn't need the plots
    w.show({spectrum(w.pos, realVector({1, 2, 3})), testSpectrum(w.neg, 1, 2), nullptr,
            std::make_shared<SpectMath::Spectrum>()});
    const QString text = w.copied();
    EXPECT_EQ(text, "### particles neg (a) at 02. April 1970 00:00:00 ###\n# Inversion failed\n\n"
                    "### particles pos (b) at 02. April 1970 00:00:00 ###\n"
                    "diameter (nm)\t2\t20\t200\nnumber concentration density (1)\t1\t2\t3\nuncertainty (1)\t1\t1\t1");
    EXPECT_EQ(w.summary(), "") << "while hidden, nothing is written";
}

TEST(SpectraView, TellsEachCurveInALine)
{
    Window w;
    w.show({spectrum(w.neg, realVector({0, 100, 0})), testSpectrum(w.pos, 1, 2)});
    EXPECT_EQ(w.summary(), "particles neg (a): total 100 1, GMD 20 nm, GSD 1, mode 20 nm\n"
                           "particles pos (b): inversion failed");
    auto *const text = w.view.findChild<QPlainTextEdit *>();
    settle();
    const QRect place = text->geometry();
    w.show({});
    settle();
    EXPECT_EQ(w.summary(), "");
    EXPECT_EQ(text->geometry(), place) << "a record without spectra moved the plot";
    EXPECT_TRUE(text->isVisible()) << "and took the keyboard focus away";
    w.view.showRecord(nullptr);
    EXPECT_FALSE(text->isVisible());
}

TEST(SpectraView, InALowDockTheTextGivesWayToAPlotThatIsSeenWhole)
{
    Window w;
    QFont font = w.view.font();
    font.setPointSizeF(20);
    w.view.setFont(font);
    w.show({spectrum(w.neg, realVector({0, 100, 0})), spectrum(w.pos, realVector({1, 2, 3}))});
    const ResultPlot *plot = w.plots()[0];
    const auto *text = w.view.findChild<QPlainTextEdit *>();
    const int line = plot->fontMetrics().lineSpacing();
    const auto canvasAt = [&](int height) {
        w.view.resize(400, height);
        settle();
        return plot->canvas()->height();
    };
    const int least = w.view.minimumSizeHint().height(), low = canvasAt(least + 5);
    EXPECT_EQ(plot->visibleRegion().boundingRect(), plot->rect());
    EXPECT_GT(low, line);
    EXPECT_LE(plot->axisScaleDiv(QwtPlot::yLeft).ticks(QwtScaleDiv::MajorTick).size(), 4);
    EXPECT_FALSE(text->isVisible());
    for (const int height : {400, least + 8 * line, 900})
        EXPECT_GT(canvasAt(height), std::max(low, 3 * line)) << height;
    EXPECT_TRUE(text->isVisible());
    EXPECT_GE(text->height(), 2 * line);
}

TEST(SpectraView, ChosenSpectraAreShown)
{
    Window w;
    w.view.setSinglePlot(false);
    w.show({spectrum(w.neg, realVector({1, 2, 3})), spectrum(w.pos, realVector({1, 2, 3}))});
    ASSERT_EQ(w.spectrumActions().size(), 5);
    w.spectrumActions()[0]->setChecked(false);
    EXPECT_EQ(w.plots().size(), 1) << "no empty plot is left";
    EXPECT_TRUE(w.summary().startsWith("particles pos"));
    EXPECT_TRUE(w.copied().contains("particles neg")) << "the record's spectra";
    w.spectrumActions().last()->trigger();
    EXPECT_EQ(w.plots().size(), 2);
}

TEST(SpectraView, AMenuOpensOverAPlotAndAnAxisHasNone)
{
    Window w;
    EXPECT_EQ(menuOver(w.plots()[0]),
              (QStringList{"Spectra", "Hold curves", "Lock axes", "Fit axes", "", "Copy to clipboard", "Copy picture",
                           "Save picture...", "Settings"}));
    EXPECT_EQ(menuOver(w.plots()[0]->axisWidget(QwtPlot::xBottom)), QStringList());
}

TEST(SpectraView, SettingsComeBackWithoutBeingStoredAgain)
{
    Window w;
    QSignalSpy stored(&w.view, &SpectraView::setupChanged);
    w.view.setDistributionType(DistributionType::fraction);
    w.view.setHorizontalQuantity(false, DistributionScale::diameter);
    w.view.setHorizontalQuantity(false, DistributionScale::mobility);
    w.view.setSinglePlot(false);
    w.view.setSinglePlot(false);
    EXPECT_EQ(stored.count(), 4);
    EXPECT_EQ(w.view.setup().size(), 7);
    w.spectrumActions()[1]->setChecked(false);
    EXPECT_EQ(stored.count(), 5);
    const QVariantMap setup = w.view.setup();
    EXPECT_EQ(setup["hidden_spectra"], QStringList(w.pos->hash));
    Window other;
    other.view.showDialog();
    QSignalSpy again(&other.view, &SpectraView::setupChanged);
    other.view.restoreSetup(setup);
    EXPECT_EQ(other.view.setup(), setup);
    EXPECT_FALSE(other.spectrumActions()[1]->isChecked());
    EXPECT_EQ(again.count(), 0);
    for (const QVariantMap &map : {QVariantMap(), QVariantMap{{"single_plot", "perhaps"}, {"distribution_type", 7}}}) {
        other.view.restoreSetup(setup);
        other.view.restoreSetup(map);
        EXPECT_EQ(other.view.setup(), Window().view.setup()) << "what is missing or makes no sense is as in a new view";
    }
    EXPECT_EQ(w.view.viewName(), "spectraView");
    w.view.setVerticalQuantity(ConcentrationType::radius);
    EXPECT_EQ(w.view.setup(), setup) << "a radius isn't shown";
}

TEST(SpectraViewDialog, ButtonsAreTheViewsChoices)
{
    Window w;
    w.view.setSmoothingCoef(2.5);
    w.action("Settings")->trigger();
    auto *const dialog = w.view.findChild<SpectraViewDialog *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    EXPECT_EQ(dialog->windowTitle(), "Distribution plot settings");
    auto *const slider = dialog->findChild<QSlider *>();
    EXPECT_EQ(slider->value(), 2) << "truncated";
    EXPECT_EQ(w.view.options().smoothingCoef, 2.5) << "and kept as it is";
    EXPECT_EQ(slider->maximum(), 20);
    QMap<QString, QRadioButton *> buttons;
    for (auto *one : dialog->findChildren<QRadioButton *>())
        buttons.insert(one->text(), buttons.value(one->text(), one));
    const struct {
        const char *text, *key;
        QVariant value;
        int id;
    } cases[] = {
        {"Fraction distribution", "distribution_type", "fraction", 1},
        {"Density distribution", "distribution_type", "density", 0},
        {"Diameter", "vertical_quantity", "diameter", 2},
        {"Surface", "vertical_quantity", "surface", 3},
        {"Volume", "vertical_quantity", "volume", 4},
        {"Number", "vertical_quantity", "number", 0},
        {"Logarithmic", "vertical_scale_log", true, 1},
        {"Linear", "vertical_scale_log", false, 0},
        {"Mobility", "horizontal_quantity", "mobility", 0},
        {"Automatic", "horizontal_quantity_auto", true, -2},
        {"Separate plots for spectra", "single_plot", false, 0},
        {"Single plot", "single_plot", true, 1},
    };
    for (const auto &c : cases) {
        auto *const button = buttons[c.text];
        ASSERT_TRUE(button) << c.text;
        button->click();
        EXPECT_EQ(w.view.setup()[c.key], c.value) << c.text;
        EXPECT_EQ(button->group()->id(button), c.id) << c.text;
    }
    slider->setValue(7);
    EXPECT_EQ(w.view.options().smoothingCoef, 7);
    QSignalSpy signal(dialog, &SpectraViewDialog::smoothingCoefChanged);
    w.view.restoreSetup({{"smoothing_coef", 1e9}, {"vertical_scale_log", true}});
    EXPECT_EQ(slider->value(), 20);
    EXPECT_TRUE(buttons["Logarithmic"]->isChecked());
    EXPECT_EQ(signal.count(), 0);
}
