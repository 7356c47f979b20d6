// A worker thread: derive from kxBaseThread, put the work in Run and poll IsNeedExit there,
// so that Terminate can stop it cooperatively.
#include <atomic>
#include <cstdio>
#include <thread>

#include <kxbase/runtime.h>

namespace {

// Sums 1..limit in the background; the result is read once the thread has finished.
class SumWorker : public kxBaseThread {
public:
    explicit SumWorker(UINT64 limit) : m_limit(limit) {}
    // Stop the body while this object still exists (the base destructor runs too late).
    ~SumWorker() override { Terminate(1000); }

    DWORD Run() override {
        UINT64 sum = 0;
        for (UINT64 i = 1; i <= m_limit; ++i) {
            if ((i & 0xFFFF) == 0 && IsNeedExit()) return 1;  // asked to stop: leave early
            sum += i;
        }
        m_sum.store(sum);
        return 0;
    }

    UINT64 Sum() const { return m_sum.load(); }

private:
    UINT64 m_limit;
    std::atomic<UINT64> m_sum{0};
};

}  // namespace

int main() {
    SumWorker worker(10'000'000);
    // Create starts the thread suspended; Resume lets it enter Run.
    if (!worker.Create(nullptr)) return 1;
    std::printf("thread %u created\n", worker.GetThreadId());
    worker.Resume();

    // The owner does its own work meanwhile; here it just waits for the body to return.
    while (!worker.IsTerminated()) std::this_thread::yield();
    worker.Terminate(1000);  // joins the finished thread

    const UINT64 expected = 10'000'000ull * 10'000'001ull / 2;
    std::printf("sum = %llu\n", static_cast<unsigned long long>(worker.Sum()));
    return worker.Sum() == expected ? 0 : 1;
}
