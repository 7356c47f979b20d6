// CSortListCtrl::SortItemsEx on the shared rows.
#include <benchmark/benchmark.h>

#include <kxbase/ui/list_ctrl.h>

#include "sort_rows.h"

static void BM_SortList_SortItemsEx(benchmark::State& state) {
    CSortListCtrl list;
    list.InsertColumn(0, "text");
    list.InsertColumn(1, "key");
    const auto& rows = bench_rows::Rows();
    for (int i = 0; i < bench_rows::kRows; ++i) {
        list.InsertItem(i, rows[static_cast<std::size_t>(i)].first.c_str());
        list.SetItemText(i, 1, rows[static_cast<std::size_t>(i)].second.c_str());
        list.SetItemData(i, static_cast<DWORD_PTR>(i + 1));
    }
    for (auto _ : state) {
        state.PauseTiming();
        list.SetSortParam(0, 1, nullptr);
        list.SortItemsEx();
        list.SetSortParam(0, 0, nullptr);
        state.ResumeTiming();
        list.SortItemsEx();
    }
    state.SetItemsProcessed(state.iterations() * bench_rows::kRows);
}
BENCHMARK(BM_SortList_SortItemsEx)->Unit(benchmark::kMillisecond)->Iterations(5);
