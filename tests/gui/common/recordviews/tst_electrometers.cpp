#include "gui/common/recordviews/electrometercorrection.h"
#include "gui/common/recordviews/electrometersview.h"
#include "gui/common/recordviews/electrometertext.h"
#include "support/commands.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QBrush>
#include <QClipboard>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace RecordViews;

namespace {

/// Two electrometers of a record, with values that aren't there.
struct Data {
    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions"}, {"neg 1", "<b>"});
    std::shared_ptr<Record> record = std::make_shared<Record>();

    Data()
    {
        record->opmode = 0;
        record->beginTime = recordTimeFromTicks(1568412000 * ticksPerSecond + 1'234'000);
        record->endTime = record->beginTime + Ticks(60 * ticksPerSecond);
        record->beginUtcOffset = record->endUtcOffset = 7200;
        record->currents = realVector({noValue, 1234567.5});
        record->currentVariances = realVector({4, -1});
        record->voltages = realVector({-0.0004, 12.5});
        record->rawCurrents = realVector({0.1234567});
    }
};

struct Shown : Data {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    ElectrometersView view{ui};
    QTreeView *tree = view.findChild<QTreeView *>();
    QAbstractItemModelTester tester{tree->model(), QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy plots{ui.get(), &UiInfo::requestElectrometerScatterplot};

    Shown()
    {
        ui->setData(metadata, {});
        view.show();
        view.updateSetup();
        view.showRecord(record);
        settle();
    }
    QVariant cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return tree->model()->index(row, column).data(role);
    }
    QString row(int row) const
    {
        QStringList cells;
        for (int column = 0; column < tree->model()->columnCount(); ++column)
            cells << cell(row, column).toString();
        return cells.join('|');
    }
    void trigger(const QString &action) const { commandOf(tree->actions(), action)->trigger(); }
};

} // namespace

TEST(ElectrometersText, HasAColumnForEachElectrometer)
{
    Data data;
    const QString begin = "opmode,ions\nbegin_time,2019-09-14 00:00:00.123400+02:00,14. September 2019 00:00:00\n";
    const QString values = "electrometer,neg 1,<b>\ncurrent,,1.23457e+06\nerror,2,\nvoltage,-0.0004,12.5\n"
                           "raw_current,0.123457,\n";
    EXPECT_EQ(electrometersText(*data.record, *data.metadata),
              begin + "end_time,2019-09-14 00:01:00.123400+02:00,14. September 2019 00:01:00\n" + values);
    data.record->endTime = {};
    data.record->currents = realVector({noValue, 1234567.5, 3}); // more than the metadata say
    EXPECT_EQ(electrometersText(*data.record, *data.metadata), begin + values);
}

TEST(Correction, MultipliesOnlyWhatItFits)
{
    const ElectrometerValues values{realVector({1, -2}), realVector({3, noValue}), realVector({4, 9})};
    ElectrometerValues corrected = values;
    EXPECT_TRUE(correctElectrometers(corrected, {2, -3}));
    EXPECT_EQ(corrected.currents[1], 6);
    EXPECT_EQ(corrected.rawCurrents[0], 6);
    EXPECT_EQ(corrected.variances[0], 8) << "required: once, not squared";
    EXPECT_EQ(corrected.variances[1], -27);
    for (const std::vector<double> &unfit : {std::vector<double>(), {2}, {2, 3, 4}}) {
        corrected = values;
        EXPECT_FALSE(correctElectrometers(corrected, unfit));
        EXPECT_EQ(corrected.currents[0], 1);
    }
    corrected.rawCurrents = realVector({3});
    EXPECT_FALSE(correctElectrometers(corrected, {2, 3}));
    EXPECT_EQ(corrected.currents[0], 1);
}

TEST(Correction, ReadsNumbers)
{
    const struct {
        const char *text;
        const char *result; ///< the numbers, or the part that is none
    } cases[] = {{"", ""},
                 {" , ,", ""},
                 {"1", "1"},
                 {" 1.5,2e-3\t-3 ,\n4", "1.5 0.002 -3 4"},
                 {"1 x 2 y", "! x"},
                 {"1,5.5.5", "! 5.5.5"},
                 {"0.12345678", "0.123457"}};
    for (const auto &testCase : cases) {
        const Coefficients read = parseCoefficients(testCase.text);
        EXPECT_EQ(read.wrongPart.isEmpty() ? coefficientTexts(read.values).join(' ') : "! " + read.wrongPart,
                  testCase.result)
            << testCase.text;
    }
}

TEST(ElectrometersView, ShowsARowForEach)
{
    Shown shown;
    EXPECT_EQ(shown.row(0), "neg 1|-0.000|0.123||2.000");
    EXPECT_EQ(shown.row(1), "<b>|12.500||1234567.500|");
    EXPECT_EQ(shown.cell(1, 0, Qt::TextAlignmentRole), 129);
    EXPECT_EQ(shown.cell(1, 4, Qt::TextAlignmentRole), 130);
    const QAbstractItemModel *const model = shown.tree->model();
    EXPECT_EQ(model->headerData(4, Qt::Horizontal).toString(), QString(QChar(0xcf)) + QChar(0x192) + " I (fA)");
    EXPECT_EQ(model->headerData(4, Qt::Horizontal, Qt::ToolTipRole), "Standard deviation of the current");

    QSignalSpy resets(model, &QAbstractItemModel::modelReset), changes(model, &QAbstractItemModel::dataChanged);
    shown.view.showRecord(std::make_shared<Record>());
    EXPECT_EQ(shown.row(1), "<b>||||");
    shown.ui->publish();
    EXPECT_EQ(resets.size(), 0);
    EXPECT_EQ(changes.size(), 2);
    shown.ui->setHighlights({}, {-1, 1, 7});
    EXPECT_EQ(shown.cell(1, 2, Qt::ForegroundRole).value<QBrush>(), QBrush(Qt::red));
    EXPECT_TRUE(shown.cell(1, 2, Qt::FontRole).value<QFont>().underline()); // not by colour alone
    EXPECT_EQ(shown.cell(0, 2, Qt::ForegroundRole), QVariant());

    shown.metadata = testMetadata({}, {"only"});
    shown.metadata->totalElectrometers = 3; // more than there are names
    shown.ui->setData(shown.metadata, {});
    shown.ui->publish();
    EXPECT_EQ(shown.row(2), "||||");
    shown.view.showRecord(nullptr);
    EXPECT_EQ(shown.row(0), "only||||");
    shown.ui->clear();
    shown.ui->publish();
    EXPECT_EQ(model->rowCount(), 0);
}

TEST(ElectrometersView, CopiesAndPlots)
{
    Shown shown;
    QClipboard *const clipboard = QGuiApplication::clipboard();
    shown.trigger("Copy all currents to clipboard");
    EXPECT_EQ(clipboard->text(), electrometersText(*shown.record, *shown.metadata));
    QTest::keyClick(shown.tree, Qt::Key_C, Qt::ControlModifier); // nothing is selected
    EXPECT_TRUE(clipboard->text().startsWith("opmode"));
    shown.tree->selectAll();
    QTest::keyClick(shown.tree, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard->text(), "neg 1\t-0.000\t0.123\t\t2.000\n<b>\t12.500\t\t1234567.500\t\n");
    QTest::keyClick(shown.tree, Qt::Key_Return);
    ASSERT_EQ(shown.plots.size(), 2);
    EXPECT_EQ(shown.plots[1][0], 1);
    EXPECT_FALSE(shown.tree->selectionModel()->hasSelection());

    const QPoint second = shown.tree->visualRect(shown.tree->model()->index(1, 0)).center();
    QTest::mouseClick(shown.tree->viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(shown.ui->value("elmview_selected_parameter"), 1);
    QTest::mouseDClick(shown.tree->viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(shown.plots.size(), 3);

    shown.tree->header()->resizeSection(4, 77);
    Shown other;
    other.view.restoreSetup(shown.view.setup());
    EXPECT_EQ(other.tree->header()->sectionSize(4), 77);
    for (Shown *each : {&other, &shown}) {
        each->ui->setData(testMetadata({}, {"a name of some length"}), {});
        each->ui->publish();
        EXPECT_EQ(each->tree->header()->sectionSize(0), Shown().tree->header()->sectionSize(0)) << "the user's widths";
    }
    const int width = other.tree->fontMetrics().horizontalAdvance("neg 1");
    EXPECT_GT(Shown().tree->header()->sectionSize(0), width) << "names are readable";
    clipboard->clear();
    shown.view.showRecord(nullptr);
    shown.view.copyToClipboard();
    EXPECT_EQ(clipboard->text(), "");
}
