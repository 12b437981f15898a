#include "gui/common/recordviews/diagnosticmodel.h"
#include "gui/common/recordviews/diagnosticview.h"
#include "gui/common/recordviews/headerstate.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <gtest/gtest.h>

#include <random>

using RecordViews::DiagnosticModel;
using RecordViews::DiagnosticView;

namespace {

/// A view of some variables with values, shown.
struct Shown {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    Spectrometer::RecordMetadataPointer metadata;
    std::shared_ptr<Record> record = std::make_shared<Record>();
    DiagnosticView view{ui};
    QTreeView *tree = view.findChild<QTreeView *>();
    QLineEdit *filter = view.findChild<QLineEdit *>();
    QAbstractItemModelTester tester{tree->model(), QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy plots{ui.get(), &UiInfo::requestVariableScatterplot};

    explicit Shown(const QStringList &names, const RealVector &values = {})
    {
        metadata = testMetadata({}, {}, names);
        for (const auto &variable : qAsConst(metadata->variables))
            variable->humanname = "The " + variable->name;
        record->variables = values;
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
    QStringList names() const { return column(0, Qt::DisplayRole); }
    QStringList column(int column, int role) const
    {
        QStringList texts;
        for (int row = 0; row < tree->model()->rowCount(); ++row)
            texts << cell(row, column, role).toString();
        return texts;
    }
    void select(int row, QItemSelectionModel::SelectionFlags how = QItemSelectionModel::Select)
    {
        tree->selectionModel()->select(tree->model()->index(row, 0), how | QItemSelectionModel::Rows);
    }
    /// The selected rows, as Ctrl+C in the list copies them.
    QString copied()
    {
        QGuiApplication::clipboard()->setText("before");
        QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text();
    }
    /// Answers the question that the work asks; empty if it asks none.
    template<typename Work>
    QString questionOf(const Work &work, QMessageBox::StandardButton answer) const
    {
        QString text;
        QTimer::singleShot(0, &view, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                text = box->text();
                box->button(answer)->click();
            }
        });
        work();
        settle();
        return text;
    }
};

QStringList numbered(const QString &name, int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names << name + QString::number(i);
    return names;
}

} // namespace

TEST(DiagnosticView, ShowsAGroupARow)
{
    Shown shown({"t.mean", "t.stddev", "p", "t_target.mean", "<b>&%1"},
                realVector({21.4321, 0.5, 1013.25, 20, noValue}));
    shown.metadata->variables[0]->unit = "<°C>";
    EXPECT_EQ(shown.names(), QStringList({"The t.mean (<°C>)", "The p", "The <b>&%1"}));
    EXPECT_EQ(shown.column(1, Qt::DisplayRole), QStringList({"21.43", "1e+03", ""}));
    EXPECT_EQ(shown.cell(0, 0, Qt::TextAlignmentRole), 129);
    EXPECT_EQ(shown.cell(0, 1, Qt::TextAlignmentRole), 130);
    const QString line = "<div style=\"white-space: nowrap;\"><b>The %1</b>: %2</div>";
    EXPECT_EQ(shown.cell(0, 0, Qt::ToolTipRole),
              line.arg("t.mean", "21.43 (&lt;°C&gt;)") + line.arg("t_target.mean", "20"));
    EXPECT_EQ(shown.cell(2, 1, Qt::ToolTipRole).toString().count("The &lt;b&gt;&amp;%1</b>: </div>"), 1);

    shown.record->variables = realVector({5}); // shorter than the metadata say
    shown.view.showRecord(shown.record);
    EXPECT_EQ(shown.column(1, Qt::DisplayRole), QStringList({"5", "", ""}));
    shown.metadata->variables[2]->valueIndex = -1;
    shown.view.showRecord(nullptr);
    EXPECT_EQ(shown.column(1, Qt::DisplayRole), QStringList({"", "", ""}));
}

TEST(DiagnosticView, StepsChangeValuesAlone)
{
    Shown shown({"a", "b"}, realVector({1, 2}));
    const QAbstractItemModel *const model = shown.tree->model();
    QSignalSpy resets(model, &QAbstractItemModel::modelReset), changes(model, &QAbstractItemModel::dataChanged);
    shown.select(1);
    shown.view.showRecord(std::make_shared<Record>());
    shown.ui->publish(); // other spectra
    settle();
    EXPECT_EQ(resets.size(), 0);
    ASSERT_EQ(changes.size(), 2) << "one for each";
    EXPECT_EQ(changes[0][0].toModelIndex().column(), 1);
    EXPECT_EQ(shown.tree->selectionModel()->selectedRows().size(), 1);

    shown.view.hide();
    for (int i = 0; i < 3; ++i)
        shown.view.showRecord(shown.record);
    shown.ui->setHighlights({"a"}, {});
    settle();
    EXPECT_EQ(changes.size(), 2) << "nobody sees it";
    shown.view.show();
    settle();
    EXPECT_EQ(shown.cell(0, 1), "1");
    EXPECT_EQ(shown.cell(0, 1, Qt::ForegroundRole).value<QBrush>(), QBrush(Qt::red));
    EXPECT_TRUE(shown.cell(0, 1, Qt::FontRole).value<QFont>().underline()); // not by colour alone
    EXPECT_EQ(shown.cell(1, 1, Qt::ForegroundRole), QVariant());

    shown.metadata->variables << testMetadata({}, {}, {"c"})->variables; // the same object, grown
    shown.view.updateSetup();
    EXPECT_EQ(resets.size(), 1);
    EXPECT_EQ(model->rowCount(), 3);
}

TEST(DiagnosticView, CopiesAndPlotsWhatIsSelected)
{
    Shown shown({"a.mean", "a.stddev", "b", "c"}, realVector({1.234567, 0.5, noValue, 1e-7}));
    shown.metadata->variables[3]->unit = "V";
    EXPECT_EQ(shown.copied(), "before");
    shown.select(2);
    shown.select(0);
    EXPECT_EQ(shown.copied(), "The c\tV\t1e-07\nThe a.mean\t\t1.2346\n");
    shown.filter->setFocus();
    shown.filter->setText("The");
    shown.filter->selectAll();
    QTest::keyClick(shown.filter, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "The");

    shown.tree->setFocus();
    QTest::keyClick(shown.tree, Qt::Key_Return);
    ASSERT_EQ(shown.plots.size(), 2);
    EXPECT_EQ(shown.plots[0][0], "c");
    const QPoint second = shown.tree->visualRect(shown.tree->model()->index(1, 0)).center();
    QTest::mouseClick(shown.tree->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(shown.tree->viewport(), Qt::LeftButton, {}, second);
    ASSERT_EQ(shown.plots.size(), 3);
    EXPECT_EQ(shown.plots[2][0], "b");
    EXPECT_EQ(shown.ui->value("diagview_selected_parameter"), "b");
    shown.view.activateParameter({});
}

TEST(DiagnosticView, AsksBeforeItPlotsMoreThanTwenty)
{
    Shown shown(numbered("v", 21));
    const auto plot = [&] { shown.view.showSelectedPlots(); };
    shown.tree->selectAll();
    EXPECT_EQ(shown.questionOf(plot, QMessageBox::No), "Add 21 plots to the browser?");
    EXPECT_EQ(shown.plots.size(), 0);
    EXPECT_NE(shown.questionOf(plot, QMessageBox::Yes), "");
    EXPECT_EQ(shown.plots.size(), 21);
    shown.select(0, QItemSelectionModel::Deselect);
    EXPECT_EQ(shown.questionOf(plot, QMessageBox::Yes), "");
    EXPECT_EQ(shown.plots.size(), 41);
}

TEST(DiagnosticView, FilterKeepsTheSelection)
{
    Shown shown({"flow", "temperature", "pressure", "voltage"});
    auto *clear = shown.filter->actions().value(0);
    const auto *button = shown.filter->findChild<QToolButton *>();
    EXPECT_FALSE(button->isVisible());
    shown.tree->selectAll();
    shown.view.setFilter("re");
    EXPECT_TRUE(button->isVisible());
    EXPECT_EQ(shown.names(), QStringList({"The temperature", "The pressure"}));
    EXPECT_EQ(shown.copied(), "The temperature\t\t\nThe pressure\t\t\n") << "all rows were selected";

    shown.select(1, QItemSelectionModel::ClearAndSelect); // from now on it alone
    QTest::keyClicks(shown.filter, " !press");
    EXPECT_EQ(shown.names(), QStringList("The temperature"));
    EXPECT_EQ(shown.copied(), "before");
    shown.select(0);
    clear->trigger();
    EXPECT_EQ(shown.filter->text(), "");
    EXPECT_EQ(shown.names().size(), 4);
    EXPECT_EQ(shown.copied(), "The temperature\t\t\nThe pressure\t\t\n");
    shown.view.setFilter("nothing of that kind");
    EXPECT_EQ(shown.names(), QStringList());
    shown.view.showRecord(shown.record);
    shown.ui->setHighlights({"flow"}, {});

    shown.ui->setData(testMetadata({}, {}, {"one", "of that kind: nothing"}), {});
    shown.ui->publish();
    EXPECT_EQ(shown.names(), QStringList("of that kind: nothing")) << "the filter stays with other data";
    shown.view.clearFilter();
    EXPECT_EQ(shown.copied(), "before");
}

TEST(DiagnosticView, LongNamesAreCut)
{
    Shown shown({QString(10000, '<') + ".mean", QString(10000, '<') + ".stddev"});
    EXPECT_EQ(shown.names().size(), 1);
    EXPECT_LT(shown.cell(0, 0, Qt::ToolTipRole).toString().size(), 1000);
    EXPECT_FALSE(shown.view.grab().isNull());
}

TEST(DiagnosticView, HeaderComesBack)
{
    Shown first({"a"}), second({"a"});
    QSignalSpy changes(&first.view, &RecordViews::RecordView::setupChanged);
    first.tree->header()->moveSection(1, 0);
    first.tree->header()->resizeSection(1, 91);
    EXPECT_GT(changes.size(), 1);
    second.view.restoreSetup(first.view.setup());
    EXPECT_EQ(second.tree->header()->sectionSize(1), 91);
    EXPECT_EQ(second.tree->header()->visualIndex(1), 0);
    for (const QVariant &unsound : {QVariant(), QVariant("zz"), QVariant(QString(1'000'000, 'f')), QVariant(3)}) {
        second.view.restoreSetup({{"headerstate", unsound}});
        EXPECT_EQ(second.tree->header()->sectionSize(1), 91);
    }
}

TEST(HeaderState, DamagedOnesAreRefusedOrHarmless)
{
    QHeaderView header(Qt::Horizontal);
    DiagnosticModel model;
    header.setModel(&model);
    const QByteArray sound = header.saveState();
    const auto restore = [&header](const QByteArray &state) {
        return RecordViews::restoreHeaderState(header, {{"headerstate", QString(state.toHex())}});
    };
    ASSERT_TRUE(restore(sound)) << "of a program that knew no checksums";
    EXPECT_FALSE(restore(sound.left(sound.size() / 2)));
    QVariantMap sealed;
    RecordViews::storeHeaderState(sealed, header);
    ASSERT_TRUE(RecordViews::restoreHeaderState(header, sealed));
    sealed["headerstatechecksum"] = "00";
    EXPECT_FALSE(RecordViews::restoreHeaderState(header, sealed));
    std::mt19937 random(17);
    for (int round = 0; round < 20000; ++round) {
        QByteArray damaged = sound;
        for (int i = 0; i <= round % 4; ++i)
            damaged[int(random() % unsigned(damaged.size()))] = char(random());
        restore(damaged);
        ASSERT_EQ(header.count(), 2);
        for (int column = 0; column < 2; ++column)
            ASSERT_LE(header.sectionSize(column), 10'000);
    }
}
