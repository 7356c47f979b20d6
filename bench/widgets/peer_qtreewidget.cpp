// Peer: QTreeWidget::sortItems (QTreeWidgetItem::operator<, QString comparison).
#include <benchmark/benchmark.h>

#include <QTreeWidget>

#include "sort_rows.h"

static void BM_QTreeWidget_sortItems(benchmark::State& state) {
    QTreeWidget tree;
    tree.setColumnCount(2);
    tree.setUniformRowHeights(true);
    QList<QTreeWidgetItem*> items;
    for (const auto& [text, key] : bench_rows::Rows())
        items.append(
            new QTreeWidgetItem(QStringList{QString::fromUtf8(text), QString::fromUtf8(key)}));
    tree.addTopLevelItems(items);
    for (auto _ : state) {
        state.PauseTiming();
        tree.sortItems(1, Qt::AscendingOrder);
        state.ResumeTiming();
        tree.sortItems(0, Qt::AscendingOrder);
    }
    state.SetItemsProcessed(state.iterations() * bench_rows::kRows);
}
BENCHMARK(BM_QTreeWidget_sortItems)->Unit(benchmark::kMillisecond)->Iterations(5);
