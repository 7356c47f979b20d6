// Start-up of the user-interface library: the core's dialog, status and screen hooks, the
// main window and the splash window.
#include <kxbase/ui/ui.h>

#include <mutex>
#include <vector>

#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QThread>

#include <kxbase/runtime/env_obj.h>
#include <kxbase/ui/messages.h>
#include <kxbase/widgets/messages.h>

#include "ui_p.h"

namespace {

// The registered main window. The pointer is read under the lock from any thread; it is
// only dereferenced on the application's thread, and the destroyed() connection clears it.
std::mutex g_windowLock;
QWidget* g_mainWindow = nullptr;
QPointer<QWidget> g_splash;

struct Button {
    QMessageBox::StandardButton standard;  // NoButton: a button with its own text
    const char* text;
    QMessageBox::ButtonRole role;
    int id;
};

std::vector<Button> ButtonsOf(UINT type) {
    using B = QMessageBox;
    switch (type & MB_TYPEMASK) {
        case MB_OKCANCEL:
            return {{B::Ok, nullptr, B::AcceptRole, IDOK},
                    {B::Cancel, nullptr, B::RejectRole, IDCANCEL}};
        case MB_ABORTRETRYIGNORE:
            return {{B::Abort, nullptr, B::RejectRole, IDABORT},
                    {B::Retry, nullptr, B::AcceptRole, IDRETRY},
                    {B::Ignore, nullptr, B::AcceptRole, IDIGNORE}};
        case MB_YESNOCANCEL:
            return {{B::Yes, nullptr, B::YesRole, IDYES},
                    {B::No, nullptr, B::NoRole, IDNO},
                    {B::Cancel, nullptr, B::RejectRole, IDCANCEL}};
        case MB_YESNO:
            return {{B::Yes, nullptr, B::YesRole, IDYES}, {B::No, nullptr, B::NoRole, IDNO}};
        case MB_RETRYCANCEL:
            return {{B::Retry, nullptr, B::AcceptRole, IDRETRY},
                    {B::Cancel, nullptr, B::RejectRole, IDCANCEL}};
        case MB_CANCELTRYCONTINUE:
            return {{B::Cancel, nullptr, B::RejectRole, IDCANCEL},
                    {B::NoButton, "Try Again", B::AcceptRole, IDTRYAGAIN},
                    {B::NoButton, "Continue", B::AcceptRole, IDCONTINUE}};
        default:
            return {{B::Ok, nullptr, B::AcceptRole, IDOK}};
    }
}

QMessageBox::Icon IconOf(UINT type) {
    switch (type & MB_ICONMASK) {
        case MB_ICONERROR:
            return QMessageBox::Critical;
        case MB_ICONQUESTION:
            return QMessageBox::Question;
        case MB_ICONWARNING:
            return QMessageBox::Warning;
        case MB_ICONINFORMATION:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

int ShowMessageBox(const CString& text, UINT type) {
    if (!kxui_detail::OnWidgetThread()) return 0;
    QMessageBox box(IconOf(type), QApplication::applicationName(),
                    QString::fromUtf8(text.GetString()), QMessageBox::NoButton, KxGetMainWindow());
    std::vector<std::pair<QAbstractButton*, int>> ids;
    for (const Button& b : ButtonsOf(type)) {
        QAbstractButton* made = b.standard != QMessageBox::NoButton
                                    ? static_cast<QAbstractButton*>(box.addButton(b.standard))
                                    : box.addButton(QString::fromLatin1(b.text), b.role);
        ids.emplace_back(made, b.id);
        if (b.id == IDCANCEL) box.setEscapeButton(made);
    }
    const std::size_t def = (type & MB_DEFMASK) >> 8;
    if (def < ids.size()) box.setDefaultButton(static_cast<QPushButton*>(ids[def].first));

    QPointer<QWidget> splash = g_splash;
    if (splash) splash->hide();
    box.exec();
    if (splash) splash->show();

    for (const auto& [button, id] : ids)
        if (box.clickedButton() == button) return id;
    return ids.size() == 1 ? ids.front().second : IDCANCEL;
}

void ShowStatus(const CString& text) {
    if (!kxui_detail::OnWidgetThread()) return;
    if (auto* frame = qobject_cast<QMainWindow*>(KxGetMainWindow()))
        frame->statusBar()->showMessage(QString::fromUtf8(text.GetString()));
}

bool MeasureScreen(KxScreenMetrics* out) {
    if (out == nullptr || !kxui_detail::OnGuiThread()) return false;
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return false;
    const qreal ratio = screen->devicePixelRatio();
    const QSize pixels = screen->geometry().size() * ratio;
    out->bitsPixel = screen->depth();
    out->horzRes = pixels.width();
    out->vertRes = pixels.height();
    out->logPixelsX = qRound(screen->logicalDotsPerInchX());
    out->logPixelsY = qRound(screen->logicalDotsPerInchY());
    out->horzSize = qRound(screen->physicalSize().width());
    out->vertSize = qRound(screen->physicalSize().height());
    return true;
}

// Hooks are std::functions, so "still ours" is told by this flag rather than by comparing them.
bool g_installed = false;

void StartUp() {
    KxUiInit();
    // While QGuiApplication is still being built the screens may not exist yet; measure again
    // once its event loop runs.
    if (QGuiApplication::primaryScreen() == nullptr && QCoreApplication::instance() != nullptr)
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] { g_EnvObj.Init(1); }, Qt::QueuedConnection);
}

// At load the hooks go in at once (they answer "no window" until an application exists);
// the start-up routine runs again when the host creates its QCoreApplication, and measures
// the screen then.
void InstallAtLoad() {
    KxUiInit();
}

}  // namespace

Q_CONSTRUCTOR_FUNCTION(InstallAtLoad)
Q_COREAPP_STARTUP_FUNCTION(StartUp)

namespace kxui_detail {

bool OnGuiThread() {
    const QCoreApplication* app = QCoreApplication::instance();
    return app != nullptr && QThread::currentThread() == app->thread() &&
           qobject_cast<const QGuiApplication*>(app) != nullptr;
}

bool OnWidgetThread() {
    return OnGuiThread() &&
           qobject_cast<const QApplication*>(QCoreApplication::instance()) != nullptr;
}

QWidget* RegisteredMainWindow() {
    std::lock_guard<std::mutex> guard(g_windowLock);
    return g_mainWindow;
}

}  // namespace kxui_detail

int KxUiInit() {
    KxSetDialogHook(ShowMessageBox);
    KxSetStatusHook(ShowStatus);
    KxSetScreenProvider(MeasureScreen);
    g_installed = true;
    if (kxui_detail::OnGuiThread()) g_EnvObj.Init(1);
    return 1;
}

int KxUiShutdown() {
    if (g_installed) {
        KxSetDialogHook({});
        KxSetStatusHook({});
        // A provider someone installed after us stays.
        const KxScreenProvider current = KxSetScreenProvider(nullptr);
        if (current != MeasureScreen) KxSetScreenProvider(current);
        g_installed = false;
    }
    return 1;
}

QWidget* KxSetMainWindow(QWidget* window) {
    static QMetaObject::Connection watch;
    QObject::disconnect(watch);
    QWidget* previous;
    {
        std::lock_guard<std::mutex> guard(g_windowLock);
        previous = g_mainWindow;
        g_mainWindow = window;
    }
    if (window != nullptr)
        watch = QObject::connect(window, &QObject::destroyed, [window] {
            std::lock_guard<std::mutex> guard(g_windowLock);
            if (g_mainWindow == window) g_mainWindow = nullptr;
        });
    return previous;
}

QWidget* KxGetMainWindow() {
    if (QWidget* w = kxui_detail::RegisteredMainWindow()) return w;
    if (!kxui_detail::OnWidgetThread()) return nullptr;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        const bool hiddenOnPurpose =
            w->isHidden() && w->testAttribute(Qt::WA_WState_ExplicitShowHide);
        if (qobject_cast<QMainWindow*>(w) != nullptr && !hiddenOnPurpose) return w;
    }
    return nullptr;
}

void ACommonWnd::SetSplashHandle(QWidget* splash) {
    g_splash = splash;
}

QWidget* ACommonWnd::GetSplashHandle() {
    return g_splash.data();
}
