// Module handles over the dynamic loader: a handle is the base address dladdr reports.
#include <kxbase/platform/module.h>

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Any symbol of this library serves as the anchor for dladdr.
void library_anchor() {}

bool module_path(HINSTANCE module, std::string& out) {
    if (module == nullptr) {
        char buf[PATH_MAX];
        const ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
        if (n <= 0) return false;
        out.assign(buf, static_cast<std::size_t>(n));
        return true;
    }
    Dl_info info{};
    if (dladdr(module, &info) == 0 || info.dli_fbase != module || info.dli_fname == nullptr)
        return false;
    // The main executable may be reported by its invocation name; resolve it to a full path.
    char resolved[PATH_MAX];
    if (info.dli_fname[0] != '\0' && realpath(info.dli_fname, resolved) != nullptr) {
        out = resolved;
        return true;
    }
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&library_anchor), &self) != 0 && self.dli_fbase == module)
        return module_path(nullptr, out);
    return false;
}

}  // namespace

HINSTANCE KxLibraryHandle() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&library_anchor), &info) == 0) return nullptr;
    return info.dli_fbase;
}

bool KxIsModuleHandle(HINSTANCE h) {
    if (h == nullptr) return false;
    Dl_info info{};
    return dladdr(h, &info) != 0 && info.dli_fbase == h;
}

DWORD KxModuleFileName(HINSTANCE module, char* buffer, DWORD size) {
    if (buffer == nullptr || size == 0) {
        errno = EINVAL;
        return 0;
    }
    std::string path;
    if (!module_path(module, path)) {
        buffer[0] = '\0';
        errno = ENOENT;
        return 0;
    }
    if (path.size() >= size) {
        std::memcpy(buffer, path.data(), size - 1);
        buffer[size - 1] = '\0';
        errno = ENAMETOOLONG;
        return size;
    }
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return static_cast<DWORD>(path.size());
}
