// Helpers of the user-interface tests: driving modal dialogs from a polling timer.
#pragma once

#include <functional>
#include <vector>

#include <QApplication>
#include <QMainWindow>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <kxbase/runtime/env_obj.h>
#include <kxbase/ui/messages.h>

// Steps run in order, each on the modal widget that is up when it is reached: a step returns
// false while the widget in front is not yet the one it expects. The timer polls (so no
// assertion depends on timing) and stops when every step ran or the object is destroyed.
class ModalDriver {
public:
    using Step = std::function<bool(QWidget* modal)>;
    explicit ModalDriver(std::vector<Step> steps) : m_steps(std::move(steps)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Poll(); });
        m_timer.start(5);
    }
    bool Done() const { return m_next == m_steps.size(); }

private:
    void Poll() {
        if (Done()) return m_timer.stop();
        QWidget* modal = QApplication::activeModalWidget();
        if (modal != nullptr && m_steps[m_next](modal)) ++m_next;
    }
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    QTimer m_timer;
};

// What the helpers answered before the QApplication existed (filled by ui_main.cpp).
struct NoApplicationAnswers {
    int dialog = -1;
    int password = -1;
    long long toMain = -1;
    int postToMain = -1;
    bool mainWindowNull = false;
    AEnvObj env;
};
extern NoApplicationAnswers g_noApplication;

// A main window that answers the library's messages with wParam + lParam, recording each
// message and whether every one arrived on the window's own thread.
class MessageWindow : public QMainWindow {
public:
    bool event(QEvent* e) override {
        if (e->type() != KxMessageEvent::EventType()) return QMainWindow::event(e);
        auto* m = static_cast<KxMessageEvent*>(e);
        onOwnThread = onOwnThread && QThread::currentThread() == thread();
        received.push_back(m->message());
        m->setResult(static_cast<LRESULT>(m->wParam()) + m->lParam());
        return true;
    }
    std::vector<UINT> received;  // only touched on the application's thread
    bool onOwnThread = true;
};
