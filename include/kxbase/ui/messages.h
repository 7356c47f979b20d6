/// \file
/// Message helpers that need a window system: the password dialog, mouse-message mapping
/// between widgets, the object validity probe and messages to the main window.
///
/// ZelDialogMsg and ZelStatusMsg themselves live in the core (<kxbase/widgets/messages.h>);
/// this library draws them (see <kxbase/ui/ui.h>). Message box styles understood there:
/// MB_OK, MB_OKCANCEL, MB_ABORTRETRYIGNORE, MB_YESNOCANCEL, MB_YESNO, MB_RETRYCANCEL,
/// MB_CANCELTRYCONTINUE (low 4 bits); the icons MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING,
/// MB_ICONINFORMATION; the default button MB_DEFBUTTON1..3. Results: IDOK, IDCANCEL, IDABORT,
/// IDRETRY, IDIGNORE, IDYES, IDNO, IDTRYAGAIN, IDCONTINUE. Escape (or closing the box) gives
/// IDCANCEL when the box has a Cancel button, IDOK for MB_OK, and is refused otherwise.
///
/// Thread-safety: call everything from the application's thread, except AMsgSend, which
/// exists to be called from worker threads.
#pragma once

#include <QEvent>

#include <kxbase/platform/cstring.h>
#include <kxbase/platform/object.h>
#include <kxbase/platform/types.h>
#include <kxbase/ui/export.h>
#include <kxbase/widgets/messages.h>

class QWidget;

#ifndef MB_ABORTRETRYIGNORE
#define MB_ABORTRETRYIGNORE 0x00000002u  ///< Abort, Retry and Ignore buttons
#define MB_RETRYCANCEL 0x00000005u  ///< Retry and Cancel buttons
#define MB_CANCELTRYCONTINUE 0x00000006u  ///< Cancel, Try Again and Continue buttons
#define MB_TYPEMASK 0x0000000Fu  ///< the bits that choose the buttons
#define MB_ICONMASK 0x000000F0u  ///< the bits that choose the icon
#define MB_DEFBUTTON1 0x00000000u  ///< the first button is the default
#define MB_DEFBUTTON2 0x00000100u  ///< the second button is the default
#define MB_DEFBUTTON3 0x00000200u  ///< the third button is the default
#define MB_DEFMASK 0x00000F00u  ///< the bits that choose the default button
#endif
#ifndef IDABORT
#define IDABORT 3  ///< Abort was chosen
#define IDRETRY 4  ///< Retry was chosen
#define IDIGNORE 5  ///< Ignore was chosen
#define IDTRYAGAIN 10  ///< Try Again was chosen
#define IDCONTINUE 11  ///< Continue was chosen
#endif

using WPARAM = UINT_PTR;  ///< first message parameter (unsigned, pointer-wide)
using LPARAM = INT_PTR;  ///< second message parameter (signed, pointer-wide)
using LRESULT = INT_PTR;  ///< result of a message (signed, pointer-wide)
/// A window is a widget.
using HWND = QWidget*;

/// A window message: target window, number, two parameters, time and screen point.
struct MSG {
    HWND hwnd;  ///< target window
    UINT message;  ///< message number (WM_...)
    WPARAM wParam;  ///< first parameter
    LPARAM lParam;  ///< second parameter; for mouse messages the point (see MAKELPARAM_POINT)
    DWORD time;  ///< when the message was made, in milliseconds
    POINT pt;  ///< the cursor position in screen co-ordinates
};

#ifndef WM_MOUSEFIRST
#define WM_MOUSEFIRST 0x0200u  ///< first mouse message number
#define WM_MOUSEMOVE 0x0200u  ///< the mouse moved
#define WM_LBUTTONDOWN 0x0201u  ///< the left button went down
#define WM_LBUTTONUP 0x0202u  ///< the left button went up
#define WM_LBUTTONDBLCLK 0x0203u  ///< double click of the left button
#define WM_MOUSELAST 0x020Eu  ///< last mouse message number
#define WM_USER 0x0400u  ///< first message number free for a window class's own messages
#define WM_APP 0x8000u  ///< first message number free for the application's own messages
#endif

/// The point of a mouse message's lParam: signed 16-bit x in the low half, y in the high half.
inline LPARAM MAKELPARAM_POINT(int x, int y) {
    return static_cast<LPARAM>(static_cast<DWORD>(static_cast<WORD>(x)) |
                               (static_cast<DWORD>(static_cast<WORD>(y)) << 16));
}
///@{
/// The x (low half) and y (high half) of a mouse message's lParam, sign-extended from 16 bits.
inline int GET_X_LPARAM(LPARAM lp) {
    return static_cast<short>(static_cast<WORD>(lp & 0xFFFF));
}
inline int GET_Y_LPARAM(LPARAM lp) {
    return static_cast<short>(static_cast<WORD>((lp >> 16) & 0xFFFF));
}
///@}

/// Runs the modal password dialog: the prompt "Input password.", a password entry and a
/// confirming entry (shown only when confirmMode is nonzero), OK and Cancel. password is
/// cleared first (and *confirm set to the same empty text). On OK (result 1) the first entry
/// goes into password and the second into *confirm. With confirmMode nonzero, OK first
/// checks: unless allowEmpty, an empty entry answers ZelDialogMsg("Invalid parameter!");
/// differing entries answer ZelDialogMsg("Two input information does not match , please
/// re-enter !"); the dialog then stays open. Returns 1 for OK, 0 otherwise (also without a
/// QApplication).
KXBASE_UI_API int ZelPasswordDlg(CString& password, CString* confirm, int confirmMode,
                                 int allowEmpty);

/// When wnd is given, differs from msg.hwnd, msg.hwnd is given and msg.message is a mouse
/// message (0x200..0x20E), maps the lParam point from msg.hwnd's client co-ordinates through
/// the screen to wnd's, writes it back in the same packing and makes wnd the message's
/// window. When pt is given it receives the (possibly mapped) point of lParam. Returns the
/// message.
KXBASE_UI_API MSG ZelMapPoint(MSG msg, QWidget* wnd, POINT* pt);

/// 1 when obj is not null, its first 8 bytes are writable memory, its table of virtual
/// functions is readable and the whole object, of the size its run-time class records, is
/// readable; else 0. The probes never fault; the one virtual call (GetRuntimeClass) is made
/// only after the table and its entry were found readable and the entry executable.
KXBASE_UI_API int ZelValidObject(const CObject* obj);

/// A message delivered to the main window by AMsgSend. The window (or an event filter on it)
/// handles it in event(); the value it stores with setResult is what ToMain returns.
class KXBASE_UI_API KxMessageEvent : public QEvent {
public:
    /// An event of EventType() carrying the message number and its two parameters; result 0.
    KxMessageEvent(UINT message, WPARAM wParam, LPARAM lParam);
    /// The event type, registered once.
    static QEvent::Type EventType();

    ///@{
    /// The message number and parameters given to AMsgSend.
    UINT message() const { return m_message; }
    WPARAM wParam() const { return m_wParam; }
    LPARAM lParam() const { return m_lParam; }
    ///@}
    /// The result the handler stored (0 until setResult).
    LRESULT result() const { return m_result; }
    /// Stores the result AMsgSend::ToMain returns.
    void setResult(LRESULT r) { m_result = r; }

private:
    UINT m_message;
    WPARAM m_wParam;
    LPARAM m_lParam;
    LRESULT m_result = 0;
};

/// Messages from any thread to the application's main window (KxGetMainWindow).
class KXBASE_UI_API AMsgSend {
public:
    /// Delivers a KxMessageEvent to the main window and returns its result. On the
    /// application's thread the event is sent directly; from another thread the caller
    /// blocks until the application's thread has delivered it. 0 when there is no
    /// QApplication or no main window. A worker calling this while the application's thread
    /// waits for that worker deadlocks, as a synchronous send does.
    static LRESULT ToMain(UINT message, WPARAM wParam, LPARAM lParam);
    /// Queues a KxMessageEvent for the main window and returns at once. On the
    /// application's thread: 1 when queued, 0 without a main window. From another thread the
    /// window is looked up when the application's thread delivers the message (which is
    /// dropped if there is none then): 1. 0 without a QApplication.
    static int PostToMain(UINT message, WPARAM wParam, LPARAM lParam);
};
