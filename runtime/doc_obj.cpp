// ADocObj folder creation over mkdir(2).
#include <kxbase/runtime/doc_obj.h>

#include <sys/stat.h>

#include <cerrno>

int ADocObj::CreateDirectoryA(const char* path) {
    if (path == nullptr || path[0] == '\0') {
        errno = ENOENT;
        return 0;
    }
    if (mkdir(path, 0777) == 0) return 1;
    const int err = errno;
    struct stat st {};
    if (err == EEXIST && stat(path, &st) == 0 && S_ISDIR(st.st_mode)) return 1;
    errno = err;
    return 0;
}
