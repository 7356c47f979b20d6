// AMsgSend from worker threads: ToMain blocks until the application's thread answered,
// PostToMain queues in order; the handler always runs on the application's thread.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include <QCoreApplication>
#include <QMainWindow>
#include <QThread>

#include <kxbase/ui/messages.h>
#include <kxbase/ui/ui.h>

#include "ui_test_util.h"

TEST(MsgSend, FromWorkerThreads) {
    MessageWindow w;
    KxSetMainWindow(&w);
    constexpr int kSends = 50;
    std::vector<LRESULT> answers(kSends);
    std::atomic<int> posted{0};
    std::atomic<bool> done{false};
    std::thread worker([&] {
        for (int i = 0; i < kSends; ++i) {
            answers[static_cast<std::size_t>(i)] =
                AMsgSend::ToMain(WM_APP, static_cast<WPARAM>(i), i);
            posted += AMsgSend::PostToMain(WM_APP + 1, 0, 0);
        }
        done = true;
    });
    // Serve the worker's requests until it finished and every posted message arrived.
    while (!done || static_cast<int>(w.received.size()) < 2 * kSends)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    worker.join();
    for (int i = 0; i < kSends; ++i) EXPECT_EQ(answers[static_cast<std::size_t>(i)], 2 * i);
    EXPECT_EQ(posted.load(), kSends);
    EXPECT_TRUE(w.onOwnThread);
    // Each ToMain is answered before the worker posts, so the kinds alternate.
    for (std::size_t i = 0; i < w.received.size(); ++i)
        EXPECT_EQ(w.received[i], (i % 2 == 0) ? WM_APP : WM_APP + 1) << i;
    KxSetMainWindow(nullptr);
}
