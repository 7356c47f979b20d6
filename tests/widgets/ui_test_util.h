// Helpers of the user-interface tests: driving modal dialogs from a polling timer.
#pragma once

#include <functional>
#include <vector>

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <kxbase/runtime/env_obj.h>

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
