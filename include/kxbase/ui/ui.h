/// \file
/// kxBaseCommon's user-interface library (Qt 6 Widgets): start-up and the windows it knows.
///
/// Loading the library runs KxUiInit once, and registers a start-up routine with Qt that runs
/// it again when the host creates its QApplication (or at once, when one already exists).
/// KxUiInit
///   - installs the core's dialog hook (ZelDialogMsg shows a QMessageBox),
///   - installs the core's status hook (ZelStatusMsg writes to the main window's status bar),
///   - installs the core's screen provider and measures g_EnvObj again from the primary
///     QScreen (size in pixels and millimetres, logical DPI, colour depth).
/// A host that links the static library, or that wants the hooks before its QApplication
/// exists, calls KxUiInit itself; calling it again is harmless.
///
/// Without a QApplication (or from a thread other than the application's) every helper acts
/// as the core does without a window: ZelDialogMsg returns 0, ZelStatusMsg does nothing, the
/// screen numbers stay 0, AMsgSend returns 0. Nothing crashes.
#pragma once

#include <kxbase/ui/export.h>

class QWidget;

/// Installs the hooks and, when a QGuiApplication exists, measures the screen into g_EnvObj.
/// Returns 1. Call from the thread that created the application.
KXBASE_UI_API int KxUiInit();

/// Removes the hooks this library installed (the ones it finds still in place). Returns 1.
KXBASE_UI_API int KxUiShutdown();

/// Makes `window` the application's main window (the one ZelStatusMsg and AMsgSend talk to)
/// and returns the previous one; null returns to the default. The default is the first
/// top-level QMainWindow that is not hidden explicitly. The registration ends by itself when
/// the window is destroyed. Call from the application's thread.
KXBASE_UI_API QWidget* KxSetMainWindow(QWidget* window);

/// The application's main window, or null (also without a QApplication, and from threads
/// other than the application's when none was registered).
KXBASE_UI_API QWidget* KxGetMainWindow();

/// The splash window hidden while a message box is up.
class KXBASE_UI_API ACommonWnd {
public:
    /// Registers the splash window (null: none). The registration ends by itself when the
    /// widget is destroyed. ZelDialogMsg hides it before the box and shows it after.
    static void SetSplashHandle(QWidget* splash);
    /// The registered splash window, or null.
    static QWidget* GetSplashHandle();
};
