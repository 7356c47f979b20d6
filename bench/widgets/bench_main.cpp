// Google Benchmark inside a QApplication (the list widgets need one); no window is shown.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include <QApplication>

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
