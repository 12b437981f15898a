#include "gui/common/recordviews/diagnosticmodel.h"
#include "support/measuring.h"

#include <QSortFilterProxyModel>
#include <QStandardItemModel>

using RecordViews::DiagnosticModel;

namespace {

std::shared_ptr<Spectrometer::RecordMetadata> makeMetadata(int count, const QStringList &endings)
{
    const QStringList quantities{"sheath_flow", "sample_flow", "temperature", "filter_voltage", "pressure"};
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    for (int i = 0; i < count; ++i) {
        auto variable = std::make_shared<Spectrometer::SystemVariable>();
        const int quantity = i / endings.size();
        const QString stem = quantities[quantity % quantities.size()] + QString::number(quantity);
        variable->name = stem + endings[i % endings.size()];
        variable->humanname = QStringLiteral("The %1 of the analyser").arg(stem);
        variable->unit = QStringLiteral("l/min");
        variable->index = variable->valueIndex = metadata->variableCount++;
        metadata->variables.append(variable);
    }
    return metadata;
}

/// The time of 4000 variables by that of 2000, and no more rows than quantities.
void growthOfGrouping(benchmark::State &state)
{
    const QStringList endings{".mean", ".stddev", "_target.mean", "_target.stddev", "_raw.mean"};
    const auto some = makeMetadata(2000, endings), twice = makeMetadata(4000, endings);
    int rows = 0;
    const auto groupAndFilter = [&rows](const auto &metadata) {
        DiagnosticModel model;
        model.setMetadata(metadata);
        rows = model.rowCount();
        model.setFilter(QStringLiteral("flow !1"));
    };
    compare(
        state, [&] { groupAndFilter(some); }, [&] { groupAndFilter(twice); });
    state.counters["rows_of_4000"] = rows;
}
BENCHMARK(growthOfGrouping)->Iterations(100)->Unit(benchmark::kMillisecond);

/// The keys of a filter on 2000 rows, typed and deleted, against a plain proxy over a plain model.
void filterKeys(benchmark::State &state)
{
    const auto metadata = makeMetadata(2000, {""});
    DiagnosticModel model;
    model.setMetadata(metadata);
    QStandardItemModel plain;
    for (const auto &variable : qAsConst(metadata->variables))
        plain.appendRow({new QStandardItem(variable->humanname), new QStandardItem(QStringLiteral("21.43"))});
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&plain);
    proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
    const QStringList texts{"f", "fl", "flo", "flow", "flow1", "flow", "fl", ""};
    int rows = 0, proxyRows = 0;
    compare(
        state,
        [&] {
            for (const QString &text : texts) {
                model.setFilter(text);
                rows += model.rowCount();
            }
        },
        [&] {
            for (const QString &text : texts) {
                proxy.setFilterFixedString(text);
                proxyRows += proxy.rowCount();
            }
        });
    state.counters["rows/rows"] = double(rows) / proxyRows; // 1: both found the same
}
BENCHMARK(filterKeys)->Iterations(100)->Unit(benchmark::kMillisecond);

} // namespace
