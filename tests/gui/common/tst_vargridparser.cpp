#include "gui/common/vargridparser.h"
#include "llama/qyaml.h"
#include "support/files.h"
#include "support/instrument.h"
#include "support/logcatcher.h"

#include <QFont>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const auto metadata = testMetadata({"ions"}, {}, {"t", "p"});

std::vector<VarGridLayout> parsed(const QByteArray &text)
{
    return VarGridParser::parse(Llama::Node(Llama::yamlLoad(text).value(0), "grid"), *metadata);
}

QString errorOf(const QByteArray &text)
{
    try {
        parsed(text);
    } catch (const Llama::NodeError &error) {
        return error.message();
    }
    return {};
}

const QByteArray good = "cols: {what: {}, value: {title: Value, width: 70}}\n"
                        "rows: {r: {what: {text: T}, value: {text: '{:.1f}', variables: [t], align: right, "
                        "font_weight: bold, color: red}}}\n"
                        "layouts: [{name: L, rows: [r, r], cols: [what, value], first_column_is_header: true}]\n";

} // namespace

TEST(VarGridParser, ReadsCellsColumnsAndLayouts)
{
    const auto layouts = parsed(good);
    ASSERT_EQ(layouts.size(), 1u);
    const VarGridLayout &layout = layouts[0];
    EXPECT_EQ(layout.name, "L");
    EXPECT_TRUE(layout.firstColumnIsHeader);
    ASSERT_EQ(layout.rows.size(), 2u) << "an id may repeat";
    ASSERT_EQ(layout.columns.size(), 2u);
    EXPECT_EQ(layout.columns[1].title, "Value");
    EXPECT_EQ(layout.columns[1].width, 70);
    const VarGridCell *cell = layout.cell(1, 1);
    EXPECT_EQ(cell->variables, QStringList("t"));
    EXPECT_EQ(cell->alignment, Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(cell->fontWeight, QFont::Bold);
    EXPECT_EQ(cell->color, QColor(Qt::red));
    EXPECT_FALSE(layout.cell(0, 0)->color.isValid());
    EXPECT_TRUE(parsed("{}").empty());
}

TEST(VarGridParser, StopsAtTheFirstErrorAndTellsItsPlace)
{
    const auto list = [](const char *word, int count) {
        QByteArray text = "cols: {a: {}}\nrows: {r: {a: {}}}\nlayouts: [{name: L, rows: [";
        text += word[0] == 'r' ? QByteArray("r,").repeated(count) + "], cols: ["
                               : "], cols: [" + QByteArray("a,").repeated(count);
        return text + "]}]";
    };
    const struct {
        QByteArray text;
        const char *error;
    } table[] = {
        {"cols: 3", "'grid → cols' must be QVariantMap, but was int"},
        {"cols: {a: {title: 3}}", "'grid → cols → a → title' must be QString, but was int"},
        {"rows: {r: {a: {variables: [x]}}}",
         "Invalid variable \"x\" specified at grid → rows → r → a → variables → [0]"},
        {"rows: {r: {a: {align: middle}}}", "Invalid value \"middle\" for grid → rows → r → a → align"},
        {"rows: {r: {a: {font_weight: thin}}}", "Invalid value \"thin\" for grid → rows → r → a → font_weight"},
        {"rows: {r: {a: {color: nocolor}}}", "Invalid value \"nocolor\" for grid → rows → r → a → color"},
        {"layouts: [{name: L, rows: [q], cols: []}]",
         "Invalid row \"q\" specified at grid → layouts → [0] → rows → [0]"},
        {"layouts: [{name: L, rows: [], cols: [c]}]",
         "Invalid column \"c\" specified at grid → layouts → [0] → cols → [0]"},
        {list("rows", 1001), "'grid → layouts → [0] → rows' has more than 1000 entries"},
        {list("cols", 101), "'grid → layouts → [0] → cols' has more than 100 entries"},
        {"rows: {r: {a: {variables: [" + QByteArray("t,").repeated(51) + "]}}}",
         "'grid → rows → r → a → variables' has more than 50 entries"},
    };
    for (const auto &row : table)
        EXPECT_EQ(errorOf(row.text), QString::fromUtf8(row.error));
    EXPECT_EQ(errorOf(list("rows", 1000)), "");
}

TEST(VarGridParser, TheDatasFileComesFirstAndADamagedOneIsToldOnce)
{
    QTemporaryDir data, program;
    const QStringList folders{data.path(), program.path()};
    LogCatcher log;
    EXPECT_TRUE(VarGridParser::load(folders, *metadata).empty());
    EXPECT_EQ(log.entries().size(), 0) << "no file is nothing to tell";
    writeFile(program.filePath("var_grid_layouts.yaml"), good);
    EXPECT_EQ(VarGridParser::load(folders, *metadata).size(), 1u);
    writeFile(data.filePath("var_grid_layouts.yaml"), "cols: [");
    EXPECT_TRUE(VarGridParser::load(folders, *metadata).empty());
    ASSERT_EQ(log.entries().size(), 1);
    EXPECT_EQ(log.entries()[0].level, Log::Error);
}
