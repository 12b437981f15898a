#include "gui/common/recordviews/recordreport.h"
#include "gui/common/recordviews/reportview.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

namespace {

using RecordViews::recordReport;

/// Two electrometers of a group of four, each seeing one class.
SpectMath::InverterPointer inverter(const QString &name, const QString &mode, const QString &group)
{
    SpectMath::InverterSettings settings;
    settings.instrumentMatrix = RealMatrix(2, 2, 0.0);
    settings.instrumentMatrix(0, 0) = settings.instrumentMatrix(1, 1) = 1;
    settings.totalWeights = realVector({1, 1});
    return std::make_shared<SpectMath::Inverter>(
        settings, testInfo(mode + ' ' + group, {1, 2}, SpectMath::DistributionScale::radius, name));
}

struct Data {
    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "offset"}, {"a", "b", "c", "d"});
    std::shared_ptr<Record> record = std::make_shared<Record>();

    Data()
    {
        metadata->electrometerGroups = {{"neg", {0, 2}}, {"pos", {2, 4}}};
        record->opmode = 0;
        record->currents = realVector({11, 12, 13, 14});
        record->currentVariances = realVector({1, 1, 1, 1});
    }
};

} // namespace

TEST(RecordReport, OneSectionForEachInverterOfTheMode)
{
    Data data;
    const SpectMath::InverterList list{inverter("a<b", "ions", "pos"), inverter("c", "offset", "neg"),
                                       inverter("d", "ions", "neg")};
    const QString report = recordReport(list, *data.record, data.metadata.get());
    const int first = report.indexOf("<h2>ions pos (a&lt;b)</h2><h4>"), second = report.indexOf("<h2>ions neg (d)");
    ASSERT_GE(first, 0) << qPrintable(report);
    EXPECT_GT(second, first);
    EXPECT_FALSE(report.contains("offset"));
    EXPECT_TRUE(report.mid(first, second - first).contains("<td>0</td><td>13</td>")) << "its own group's channels";
    EXPECT_TRUE(report.mid(second).contains("<td>0</td><td>11</td>"));

    data.record->currentVariances = realVector({0, 1, 1, 1}); // nothing can be solved: status 2
    EXPECT_TRUE(recordReport(list, *data.record, data.metadata.get()).endsWith("<h2>ions neg (d)</h2>"));
}

TEST(RecordReport, SaysWhyThereIsNone)
{
    Data data;
    const SpectMath::InverterList list{inverter("a", "ions", "pos")};
    EXPECT_EQ(recordReport({}, *data.record, data.metadata.get()), "");
    EXPECT_EQ(recordReport(list, *data.record, nullptr), "");
    data.record->opmode = 1;
    EXPECT_EQ(recordReport(list, *data.record, data.metadata.get()),
              "<h3>No results</h3><p>No inverters for the selected record are available.</p>");
    for (int mode : {-1, 2}) {
        data.record->opmode = mode;
        EXPECT_EQ(recordReport(list, *data.record, data.metadata.get()), "Record has invalid opmode.");
    }
    data.record->opmode = 0;
    data.metadata->electrometerGroups["pos"] = {1, 4};
    EXPECT_TRUE(
        recordReport(list, *data.record, data.metadata.get()).startsWith("<h2>ions pos (a)</h2><p>Inversion error: "));
}

TEST(ReportView, ComputesOnTheButtonAlone)
{
    const Data data;
    auto ui = std::make_shared<UiInfo>();
    ui->setData(data.metadata, {});
    RecordViews::ReportView view(ui);
    view.show();
    EXPECT_EQ(view.windowTitle(), "Inversion report");
    auto *button = view.findChild<QPushButton *>();
    auto *browser = view.findChild<QTextBrowser *>();
    EXPECT_EQ(button->text(), "Click to analyze selected record");
    EXPECT_FALSE(button->isEnabled()) << "there is nothing to report with or on";
    view.showRecord(data.record);
    EXPECT_FALSE(button->isEnabled());
    view.setInverters({inverter("a", "ions", "pos")});
    EXPECT_TRUE(button->isEnabled());
    EXPECT_EQ(browser->toPlainText(), "");

    const auto press = [&] {
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_TRUE(browser->isVisible());
        EXPECT_TRUE(browser->toPlainText().startsWith("ions pos (a)\n"));
    };
    const auto isBack = [&] { return button->isVisible() && browser->toPlainText().isEmpty(); };
    press();
    view.showRecord(data.record);
    EXPECT_FALSE(isBack()) << "the same record, with new spectra";
    ui->publish();
    EXPECT_FALSE(isBack());
    view.showRecord(std::make_shared<Record>(*data.record));
    EXPECT_TRUE(isBack());
    press();
    view.setInverters({inverter("a", "ions", "pos"), inverter("b", "ions", "pos")});
    EXPECT_TRUE(isBack());
    press();
    view.showRecord(nullptr);
    EXPECT_TRUE(isBack());
    EXPECT_FALSE(button->isEnabled());
}
