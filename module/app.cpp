// The application object's start-up and exit.
#include "module/app_p.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <kxbase/base/messages.h>
#include <kxbase/compress/compress.h>
#include <kxbase/mathopt/amathopt.h>
#include <kxbase/platform/module.h>
#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/cost_time.h>
#include <kxbase/runtime/doc_obj.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/runtime/error_info.h>

#include "platform/sys.h"

namespace {
// Plain storage, constant-initialised: it is written during other globals' start-up.
char g_note[600];
}  // namespace

namespace kxbase::detail {

void SetProductTreeNote(const char* text) {
    std::snprintf(g_note, sizeof g_note, "%s", text ? text : "");
}

std::string PlaceProductTree(CAppPath& paths, bool namedByHost) {
    const char* folder = paths.m_strAppPath.GetString();
    if (namedByHost) {
        const int made = ADocObj::CreateDirectoryA(folder);
        paths.CreatePath();
        return std::string("named by " KXBASE_PRODUCT_DIR_ENV "; ") +
               (made ? "tree created" : "tree not created: the folder cannot be made");
    }
    if (folder[0] == '\0') return "library file unknown; tree not created";
    if (CAppPath::IsSystemFolder(folder))
        return "library folder is a system folder; tree not created (set " KXBASE_PRODUCT_DIR_ENV
               ")";
    if (!kxbase::sys::IsWritableFolder(folder))
        return "library folder is not writable; tree not created (set " KXBASE_PRODUCT_DIR_ENV ")";
    paths.CreatePath();
    return "library folder; tree created";
}

void SetUpProductTree(HINSTANCE module, const char* productDirEnv) {
    try {
        const bool named = productDirEnv != nullptr && productDirEnv[0] != '\0';
        if (named)
            g_AppPath.InitFromFolder(productDirEnv);
        else
            g_AppPath.Init(module);
        SetProductTreeNote(PlaceProductTree(g_AppPath, named).c_str());
    } catch (...) {
        SetProductTreeNote("out of memory; tree not created");
    }
}

}  // namespace kxbase::detail

const char* KxProductTreeNote() {
    return g_note;
}

namespace kxbase::detail {

namespace {
constexpr UINT kSocketStartFailedText = 101;  // string table: the socket layer did not start
bool g_startUpFailed = false;
}  // namespace

int StartUpSockets(HINSTANCE module, bool started) {
    if (started) return 1;
    ZelDialogMsg(module, kSocketStartFailedText, 0, MB_OK | MB_ICONERROR, nullptr);
    return 0;
}

bool StartUpFailed() {
    return g_startUpFailed;
}

void SetStartUpFailed(bool failed) {
    g_startUpFailed = failed;
}

}  // namespace kxbase::detail

int CkxBaseCommonApp::InitInstance() {
    const DWORD savedError = kxbase::sys::LastSystemError();
    m_hInstance = KxLibraryHandle();
    // The one step that can fail the start-up: a library whose host cannot use the network
    // is refused at load, with the reason shown, rather than failing in every later call.
    if (!kxbase::detail::StartUpSockets(m_hInstance, kxbase::sys::StartSockets())) {
        kxbase::sys::SetLastSystemError(savedError);
        return 0;
    }
    CCostTime::PerformanceCounter_Init();
    g_Error.ClearError();
    g_EnvObj.Init(1);
    g_strAppVersion.Empty();
    // A host running with raised rights must not let its caller choose where folders appear.
    kxbase::detail::SetUpProductTree(m_hInstance,
                                     kxbase::sys::TrustedEnvironment(KXBASE_PRODUCT_DIR_ENV));
    AMathOpt::Init();
    ACompress::Init();
    kxbase::sys::SetLastSystemError(savedError);
    return 1;
}

int CkxBaseCommonApp::ExitInstance() {
    AMathOpt::Exit();
    ACompress::Exit();
    kxbase::sys::StopSockets();
    return 0;
}
