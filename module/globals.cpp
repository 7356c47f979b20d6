// The library's global objects. They live in this one translation unit so that they are
// constructed in this order at load and destroyed in the reverse order at unload; the
// application object's start-up runs after the last of them is constructed and its exit
// before the first is destroyed.
#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/doc_obj.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/runtime/error_info.h>

#include "module/app_p.h"

CString ADocObj::m_strCacheDirectory;
AEnvObj g_EnvObj;
CErrorInfo g_Error;
CAppPath g_AppPath;
CString g_strAppVersion;
static CkxBaseCommonApp theApp;

namespace {
// Runs the start-up at load and the exit at unload, around the globals above.
struct AppLifetime {
    // Nothing may escape into the loader: a failed step leaves the rest of the library usable.
    AppLifetime() {
        bool started = false;
        try {
            started = theApp.InitInstance() != 0;
        } catch (...) {
        }
        kxbase::detail::SetStartUpFailed(!started);
    }
    ~AppLifetime() {
        try {
            theApp.ExitInstance();
        } catch (...) {
        }
    }
    AppLifetime(const AppLifetime&) = delete;
    AppLifetime& operator=(const AppLifetime&) = delete;
};
AppLifetime g_lifetime;
}  // namespace
