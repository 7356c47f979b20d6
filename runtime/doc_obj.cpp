// ADocObj folder creation through the system backend.
#include <kxbase/runtime/doc_obj.h>

#include "platform/sys.h"

int ADocObj::CreateDirectoryA(const char* path) {
    if (path == nullptr || path[0] == '\0') {
        kxbase::sys::SetLastSystemError(kxbase::sys::ErrorNoSuchFile());
        return 0;
    }
    return kxbase::sys::MakeFolder(path) ? 1 : 0;
}
