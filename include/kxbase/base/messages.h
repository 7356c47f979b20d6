/// \file
/// Message helpers: string resources, message boxes and the host's status bar.
///
/// The core library has no user interface. ZelDialogMsg and ZelStatusMsg build their text here
/// and hand it to hooks that the host (or the UI library, which draws a real message box and
/// status bar) installs with KxSetDialogHook / KxSetStatusHook. Without a hook nothing is
/// shown: ZelDialogMsg then returns 0 ("no box was shown"; a caller waiting for IDOK or IDYES
/// takes that as "not confirmed") and ZelStatusMsg does nothing.
///
/// Hiding and re-showing the splash window around a message box is the dialog hook's job,
/// since only the UI layer knows the splash window.
///
/// Thread-safety: the hooks may be installed from any thread; a hook runs on the thread that
/// calls the message function (the host's UI thread, by contract of the callers).
#pragma once

#include <functional>

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

// Message box styles and results, with the platform's values.
#ifndef MB_OK
#define MB_OK 0x00000000u  ///< an OK button
#define MB_OKCANCEL 0x00000001u  ///< OK and Cancel buttons
#define MB_YESNOCANCEL 0x00000003u  ///< Yes, No and Cancel buttons
#define MB_YESNO 0x00000004u  ///< Yes and No buttons
#define MB_ICONERROR 0x00000010u  ///< the error icon
#define MB_ICONQUESTION 0x00000020u  ///< the question icon
#define MB_ICONWARNING 0x00000030u  ///< the warning icon
#define MB_ICONINFORMATION 0x00000040u  ///< the information icon
#endif
#ifndef IDOK
#define IDOK 1  ///< OK was chosen
#define IDCANCEL 2  ///< Cancel was chosen, or the box was closed
#define IDYES 6  ///< Yes was chosen
#define IDNO 7  ///< No was chosen
#endif

/// Shows `text` in a modal message box of style `type` (MB_... flags) and returns the box's
/// result (IDOK, IDYES, ...).
using KxDialogHook = std::function<int(const CString& text, UINT type)>;
/// Shows `text` as the message text of the host's main frame window, when it has one.
using KxStatusHook = std::function<void(const CString& text)>;

/// Installs (or, with an empty function, removes) the message box hook. Returns the
/// previous hook so that a caller can restore it.
KXBASE_API KxDialogHook KxSetDialogHook(KxDialogHook hook);
/// Installs (or removes) the status bar hook. Returns the previous hook.
KXBASE_API KxStatusHook KxSetStatusHook(KxStatusHook hook);

/// String resource `id` of `module`, at most 1000 characters (cut there, never inside a
/// multi-byte character). Empty when id is 0, when the string does not exist, or when
/// `module` is not a module that has a string table. A null module means this library.
KXBASE_API CString ZelLoadString(HINSTANCE module, unsigned int id);

/// Returns 0 at once when format is null. Otherwise formats the text printf-style and shows
/// it in a message box with the information icon (MB_ICONINFORMATION); returns the box's
/// result, or 0 when no dialog hook is installed.
KXBASE_API int ZelDialogMsg(const char* format, ...) KXBASE_PRINTF_FORMAT(1, 2);

/// Shows a message box of style `type` whose text is, in order: string `headId` of `module`
/// (when headId != 0), the formatted text (when format is not null), and, when tailId != 0,
/// string `headId` once more. The tail deliberately repeats the head string and never
/// loads `tailId`; hosts rely on this. Returns the box's result, or 0 without a dialog hook.
KXBASE_API int ZelDialogMsg(HINSTANCE module, unsigned int headId, unsigned int tailId,
                            unsigned int type, const char* format, ...)
    KXBASE_PRINTF_FORMAT(5, 6);

/// Formats the text (empty when format is null) and sets it as the status text of the
/// host's main frame; nothing happens without a status hook.
KXBASE_API void ZelStatusMsg(const char* format, ...) KXBASE_PRINTF_FORMAT(1, 2);

/// Status text = string headId (when != 0) + formatted text (when format is not null) +
/// string tailId (when != 0), shown as above.
KXBASE_API void ZelStatusMsg(HINSTANCE module, unsigned int headId, unsigned int tailId,
                             const char* format, ...) KXBASE_PRINTF_FORMAT(4, 5);
