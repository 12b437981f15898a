#include "gui/common/recordviews/vargridview.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/logcatcher.h"
#include "support/realvector.h"

#include <QActionGroup>
#include <QHeaderView>
#include <QLabel>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

VarGridLayout layout(const QString &name, const QStringList &formats, bool hasHeader)
{
    VarGridLayout made;
    made.name = name;
    made.firstColumnIsHeader = hasHeader;
    made.columns = {{"a", "What", {}, 0}, {"b", "Value", "00000000", 0}, {"c", "Empty", {}, 55}};
    for (const QString &format : formats) {
        QMap<QString, VarGridCell> cells;
        cells["a"].text = "text of " + format;
        cells["b"].text = format;
        cells["b"].variables = QStringList{"t", "p"};
        made.rows.push_back(std::make_shared<const QMap<QString, VarGridCell>>(cells));
    }
    return made;
}

struct View {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    RecordViews::VarGridView view{ui};
    QTableView *table = view.findChild<QTableView *>();

    explicit View(const std::vector<VarGridLayout> &layouts)
    {
        ui->setData(testMetadata({"ions"}, {}, {"t", "p"}), {});
        ui->setGridLayouts(layouts);
        ui->publish();
        view.resize(400, 300);
        view.show();
        settle();
    }
    void show(const RealVector &values)
    {
        auto record = std::make_shared<Record>();
        record->variables = values;
        view.showRecord(record);
    }
    QString text(int row, int column) const { return table->model()->index(row, column).data().toString(); }
};

} // namespace

TEST(VarGridView, ShowsTheValuesOfTheRecord)
{
    View v({layout("L", {"{:.1f} of {:.0f}", "{:x}", "{:y}"}, true)});
    LogCatcher log;
    EXPECT_EQ(v.table->model()->columnCount(), 2) << "the first column heads the rows";
    EXPECT_EQ(v.table->model()->headerData(0, Qt::Vertical).toString(), "text of {:.1f} of {:.0f}");
    EXPECT_EQ(v.table->model()->headerData(0, Qt::Horizontal).toString(), "Value");
    EXPECT_EQ(v.table->columnWidth(1), 55);
    EXPECT_EQ(v.table->columnWidth(0), v.table->fontMetrics().horizontalAdvance("00000000") + 10);
    EXPECT_EQ(v.text(0, 0), "") << "no record";
    QSignalSpy resets(v.table->model(), &QAbstractItemModel::modelReset);
    v.show(realVector({1.25, 7}));
    EXPECT_EQ(v.text(0, 0), "1.2 of 7");
    EXPECT_FALSE(v.table->model()->index(0, 1).data().isValid()) << "no cell";
    v.show(realVector({none}));
    EXPECT_EQ(v.text(0, 0), "nan of nan") << "a vector shorter than told";
    EXPECT_EQ(v.text(1, 0), "?");
    EXPECT_EQ(v.text(2, 0), "?");
    EXPECT_EQ(log.entries().size(), 1) << "once a layout";
    EXPECT_EQ(resets.count(), 0);

    v.ui->setHighlights({"p"}, {});
    EXPECT_EQ(v.table->model()->index(0, 0).data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
    EXPECT_TRUE(v.table->model()->index(0, 0).data(Qt::FontRole).value<QFont>().underline());
    v.ui->setHighlights({}, {});
    EXPECT_FALSE(v.table->model()->index(0, 0).data(Qt::ForegroundRole).isValid());
    EXPECT_FALSE(v.table->model()->index(0, 0).data(Qt::FontRole).value<QFont>().underline());

    QSignalSpy requests(v.ui.get(), &UiInfo::requestVariableScatterplot);
    v.table->setCurrentIndex(v.table->model()->index(0, 0));
    QTest::keyClick(v.table, Qt::Key_Return);
    ASSERT_EQ(requests.count(), 2);
    EXPECT_EQ(requests[1][0].toString(), "p");
    v.view.activateParameter(v.table->model()->index(0, 1));
    v.view.activateParameter({});
    EXPECT_EQ(requests.count(), 2);
}

TEST(VarGridView, KeepsTheChosenLayoutAlsoWhereTheDataHaveNone)
{
    View v({layout("A & B", {"{}"}, false), layout("C", {"{}", "{}"}, false)});
    auto *group = v.view.findChild<QActionGroup *>();
    EXPECT_EQ(v.table->model()->rowCount(), 1);
    group->actions()[1]->trigger();
    EXPECT_EQ(v.table->model()->rowCount(), 2);
    EXPECT_EQ(v.view.setup(), (QVariantMap{{"selected_layout", "C"}}));

    v.ui->setGridLayouts({});
    v.ui->publish();
    EXPECT_FALSE(v.table->isVisible());
    EXPECT_TRUE(v.view.findChild<QLabel *>()->text().contains("var_grid_layouts.yaml"));
    EXPECT_EQ(v.view.setup(), (QVariantMap{{"selected_layout", "C"}}));
    v.ui->setGridLayouts({layout("A & B", {"{}"}, false), layout("C", {"{}", "{}"}, false)});
    v.ui->publish();
    EXPECT_EQ(v.table->model()->rowCount(), 2);
    v.view.restoreSetup({{"selected_layout", "A & B"}});
    EXPECT_EQ(v.table->model()->rowCount(), 1);
    v.view.restoreSetup({{"selected_layout", "C"}});
    v.view.restoreSetup({{"selected_layout", 3}});
    EXPECT_EQ(v.table->model()->rowCount(), 1) << "the first, as in a new view";
}
