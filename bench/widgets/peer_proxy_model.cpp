// Peer: QSortFilterProxyModel::sort over a QStandardItemModel, shown in a QTreeView.
#include <benchmark/benchmark.h>

#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>

#include "sort_rows.h"

static void BM_QSortFilterProxyModel_sort(benchmark::State& state) {
    QStandardItemModel model(0, 2);
    for (const auto& [text, key] : bench_rows::Rows())
        model.appendRow({new QStandardItem(QString::fromUtf8(text)),
                         new QStandardItem(QString::fromUtf8(key))});
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setModel(&proxy);
    for (auto _ : state) {
        state.PauseTiming();
        proxy.sort(1, Qt::AscendingOrder);
        state.ResumeTiming();
        proxy.sort(0, Qt::AscendingOrder);
    }
    state.SetItemsProcessed(state.iterations() * bench_rows::kRows);
}
BENCHMARK(BM_QSortFilterProxyModel_sort)->Unit(benchmark::kMillisecond)->Iterations(5);
