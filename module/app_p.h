// The library's application object: its start-up runs once the globals exist, its exit runs
// before they are destroyed (see globals.cpp).
#pragma once

#include <string>

#include <kxbase/platform/types.h>
#include <kxbase/runtime/app_path.h>

class CkxBaseCommonApp {
public:
    /// Start-up, in this order: start the socket layer (see StartUpSockets; when it fails,
    /// the start-up stops there and returns 0, which fails the load of the DLL on Windows), read
    /// the counter frequency, clear g_Error, measure the environment into g_EnvObj, empty
    /// g_strAppVersion, fill g_AppPath and create the product folder tree (with the
    /// install-location rules documented in <kxbase/runtime/app_path.h>), create the numeric
    /// toolkit's lock, build the codec tables. Returns 1.
    int InitInstance();
    /// Exit: deletes the numeric toolkit's lock, runs the codecs' exit, stops the socket layer.
    /// Returns 0 (the process exit code it would give).
    int ExitInstance();

    /// This library's module handle.
    HINSTANCE m_hInstance = nullptr;
};

namespace kxbase::detail {
/// What the start-up did with the product folder tree; empty before start-up.
void SetProductTreeNote(const char* text);
/// The start-up's product-folder step: fills g_AppPath from `productDirEnv` (the
/// KXBASE_PRODUCT_DIR value; null or empty when unset) or else from `module`'s folder, then
/// places the tree and records the note.
void SetUpProductTree(HINSTANCE module, const char* productDirEnv);
/// Creates the tree of already-filled `paths` where the install rules allow it and returns
/// the note saying what happened. `namedByHost`: the product folder came from the
/// environment (it is then created itself, one level, before the tree).
std::string PlaceProductTree(CAppPath& paths, bool namedByHost);
/// The start-up's socket step, given whether the system's socket layer `started`: 1 when it
/// did; otherwise shows `module`'s string 101 through the dialog hook (an error box) and
/// returns 0.
int StartUpSockets(HINSTANCE module, bool started);
/// True when the last start-up returned 0 (the Windows DLL entry point then fails the load).
bool StartUpFailed();
void SetStartUpFailed(bool failed);
}  // namespace kxbase::detail
