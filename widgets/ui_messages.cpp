// The password dialog, mouse-message mapping, the object validity probe and AMsgSend.
#include <kxbase/ui/messages.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <future>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QThread>
#include <QVBoxLayout>
#include <QWidget>

#include <kxbase/platform/memory_probe.h>
#include <kxbase/platform/module.h>
#include <kxbase/runtime/resource_handle.h>
#include <kxbase/ui/ui.h>

#include "ui_p.h"

namespace {

// The modal password entry. Object names ("password", "confirm") let scripted tests and
// accessibility tools find the entries.
class CPasswordDlg : public QDialog {
public:
    CPasswordDlg(int confirmMode, int allowEmpty, QWidget* parent)
        : QDialog(parent), m_confirmMode(confirmMode), m_allowEmpty(allowEmpty) {
        setObjectName("CPasswordDlg");
        setWindowTitle(QApplication::applicationName());
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(QStringLiteral("Input password."), this));
        m_first = new QLineEdit(this);
        m_first->setObjectName("password");
        m_first->setEchoMode(QLineEdit::Password);
        layout->addWidget(m_first);
        m_second = new QLineEdit(this);
        m_second->setObjectName("confirm");
        m_second->setEchoMode(QLineEdit::Password);
        m_second->setVisible(confirmMode != 0);
        layout->addWidget(m_second);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        layout->addWidget(buttons);
        connect(buttons, &QDialogButtonBox::accepted, this, &CPasswordDlg::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    }

    void accept() override {
        if (m_confirmMode) {
            const QString a = m_first->text(), b = m_second->text();
            if (!m_allowEmpty && (a.isEmpty() || b.isEmpty())) {
                ZelDialogMsg("Invalid parameter!");
                return;
            }
            if (a != b) {
                ZelDialogMsg("Two input information does not match , please re-enter !");
                return;
            }
        }
        QDialog::accept();
    }

    CString First() const { return CString(m_first->text().toStdString()); }
    CString Second() const { return CString(m_second->text().toStdString()); }

private:
    int m_confirmMode;
    int m_allowEmpty;
    QLineEdit* m_first;
    QLineEdit* m_second;
};

// Permissions of the mapping that holds address p, from the process's mapping table; false
// when p lies in no mapping or the table cannot be read. r/x tell readable and executable.
bool MappingOf(const void* p, std::size_t size, bool* readable, bool* executable) {
    FILE* maps = std::fopen("/proc/self/maps", "re");
    if (maps == nullptr) return false;
    const auto want = reinterpret_cast<std::uintptr_t>(p);
    const std::uintptr_t end = want + size;
    if (end < want) {
        std::fclose(maps);
        return false;
    }
    std::uintptr_t covered = want;
    bool allRead = true, allExec = true, found = false;
    char line[512];
    while (std::fgets(line, sizeof line, maps) != nullptr) {
        unsigned long long lo = 0, hi = 0;
        char perms[5] = {};
        if (std::sscanf(line, "%llx-%llx %4s", &lo, &hi, perms) != 3) continue;
        if (hi <= covered || lo > covered) continue;
        found = true;
        allRead = allRead && perms[0] == 'r';
        allExec = allExec && perms[2] == 'x';
        covered = static_cast<std::uintptr_t>(hi);
        if (covered >= end) break;
    }
    std::fclose(maps);
    if (!found || covered < end) return false;
    *readable = allRead;
    *executable = allExec;
    return true;
}

bool Readable(const void* p, std::size_t size) {
    bool r = false, x = false;
    return MappingOf(p, size, &r, &x) && r;
}

bool Executable(const void* p) {
    bool r = false, x = false;
    return MappingOf(p, 1, &r, &x) && x;
}

void Deliver(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    QWidget* window = KxGetMainWindow();
    if (window == nullptr) return;
    KxMessageEvent event(message, wParam, lParam);
    QCoreApplication::sendEvent(window, &event);
    if (result != nullptr) *result = event.result();
}

bool OnApplicationThread() {
    const QCoreApplication* app = QCoreApplication::instance();
    return app != nullptr && QThread::currentThread() == app->thread();
}

}  // namespace

int ZelPasswordDlg(CString& password, CString* confirm, int confirmMode, int allowEmpty) {
    password.Empty();
    if (confirm != nullptr) *confirm = password;
    if (!kxui_detail::OnWidgetThread()) return 0;
    CResourceHandle resources;
    resources.Lock(KxLibraryHandle());
    CPasswordDlg dialog(confirmMode, allowEmpty, KxGetMainWindow());
    if (dialog.exec() != QDialog::Accepted) return 0;
    password = dialog.First();
    if (confirm != nullptr) *confirm = dialog.Second();
    return 1;
}

MSG ZelMapPoint(MSG msg, QWidget* wnd, POINT* pt) {
    POINT at{GET_X_LPARAM(msg.lParam), GET_Y_LPARAM(msg.lParam)};
    if (wnd != nullptr && msg.hwnd != nullptr && wnd != msg.hwnd && msg.message >= 0x200u &&
        msg.message <= 0x20Eu) {
        const QPoint global = msg.hwnd->mapToGlobal(QPoint(at.x, at.y));
        const QPoint local = wnd->mapFromGlobal(global);
        at = {local.x(), local.y()};
        msg.lParam = MAKELPARAM_POINT(at.x, at.y);
        msg.hwnd = wnd;
    }
    if (pt != nullptr) *pt = at;
    return msg;
}

int ZelValidObject(const CObject* obj) {
    if (obj == nullptr || !KxIsWritableRange(obj, 8)) return 0;
    const void* const* table = *reinterpret_cast<const void* const* const*>(obj);
    // The table's third entry is GetRuntimeClass in the Itanium C++ ABI (the first two are the
    // destructors); it must lie in code before it is called.
    constexpr std::size_t kGetRuntimeClassSlot = 2;
    if (!Readable(table, sizeof(void*) * (kGetRuntimeClassSlot + 1)) ||
        !Executable(table[kGetRuntimeClassSlot]))
        return 0;
    const CRuntimeClass* cls = obj->GetRuntimeClass();
    if (cls == nullptr || !Readable(cls, sizeof(CRuntimeClass)) || cls->m_nObjectSize <= 0)
        return 0;
    return Readable(obj, static_cast<std::size_t>(cls->m_nObjectSize)) ? 1 : 0;
}

KxMessageEvent::KxMessageEvent(UINT message, WPARAM wParam, LPARAM lParam)
    : QEvent(EventType()), m_message(message), m_wParam(wParam), m_lParam(lParam) {}

QEvent::Type KxMessageEvent::EventType() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

LRESULT AMsgSend::ToMain(UINT message, WPARAM wParam, LPARAM lParam) {
    QCoreApplication* app = QCoreApplication::instance();
    if (app == nullptr) return 0;
    LRESULT result = 0;
    if (OnApplicationThread()) {
        Deliver(message, wParam, lParam, &result);
        return result;
    }
    // The answer comes back through a promise rather than through Qt's blocking call alone,
    // so that the hand-over is a synchronisation the thread checkers can see.
    std::promise<LRESULT> answer;
    std::future<LRESULT> ready = answer.get_future();
    QMetaObject::invokeMethod(
        app,
        [message, wParam, lParam, &answer] {
            LRESULT r = 0;
            Deliver(message, wParam, lParam, &r);
            answer.set_value(r);
        },
        Qt::BlockingQueuedConnection);
    return ready.wait_for(std::chrono::seconds(0)) == std::future_status::ready ? ready.get() : 0;
}

int AMsgSend::PostToMain(UINT message, WPARAM wParam, LPARAM lParam) {
    QCoreApplication* app = QCoreApplication::instance();
    if (app == nullptr) return 0;
    if (OnApplicationThread()) {
        QWidget* window = KxGetMainWindow();
        if (window == nullptr) return 0;
        QCoreApplication::postEvent(window, new KxMessageEvent(message, wParam, lParam));
        return 1;
    }
    QMetaObject::invokeMethod(
        app, [=] { Deliver(message, wParam, lParam, nullptr); }, Qt::QueuedConnection);
    return 1;
}
