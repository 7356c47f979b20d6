#include "out_file.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#include <process.h>

#include <atomic>
#include <filesystem>
#else
#include <unistd.h>
#endif

namespace kxtool {

namespace {

// Past RLIMIT_FSIZE the kernel sends SIGXFSZ, whose default action ends the process without
// a word; ignored, the write fails with EFBIG and is reported like any other write error.
#ifndef _WIN32
void IgnoreFileSizeSignal() {
    static const bool once = [] {
        std::signal(SIGXFSZ, SIG_IGN);
        return true;
    }();
    (void)once;
}
#endif

std::string Reason(int err) {
    switch (err) {
        case ENOSPC:
            return "the disk is full (" + std::string(std::strerror(err)) + ")";
        case EFBIG:
            return "the file size limit was reached (" + std::string(std::strerror(err)) + ")";
#ifdef EDQUOT
        case EDQUOT:
            return "the disk quota is used up (" + std::string(std::strerror(err)) + ")";
#endif
        default:
            return std::strerror(err);
    }
}

#ifndef _WIN32
std::string Folder(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}
#endif

}  // namespace

std::string WriteError(const std::string& path, int err) {
    return "cannot write " + path + ": " + Reason(err);
}

OutFile::~OutFile() {
    Discard();
}

#ifdef _WIN32
// Windows: the temporary file is created exclusively with the C runtime, flushed to the disk
// with _commit, and moved over the target by std::filesystem::rename, which replaces an
// existing file (MoveFileEx with MOVEFILE_REPLACE_EXISTING).
bool OutFile::Open(const std::string& target, std::string& error) {
    Discard();
    m_target = target;
    std::error_code ec;
    const auto status = std::filesystem::status(target, ec);
    if (!ec && std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        m_file = std::fopen(target.c_str(), "wb");
        if (!m_file) error = "cannot create " + target + ": " + Reason(errno);
        return m_file != nullptr;
    }
    const auto slash = target.find_last_of("\\/");
    const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
    const std::string name = slash == std::string::npos ? target : target.substr(slash + 1);
    static std::atomic<unsigned> serial{0};
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string temp = (slash == std::string::npos ? std::string() : folder) + "." + name +
                           "." + std::to_string(_getpid()) + "." + std::to_string(serial++);
        const int fd =
            _open(temp.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
        if (fd < 0) {
            if (errno == EEXIST) continue;
            error = "cannot create " + target + ": " + Reason(errno);
            return false;
        }
        m_file = _fdopen(fd, "wb");
        if (!m_file) {
            error = "cannot create " + target + ": " + Reason(errno);
            _close(fd);
            _unlink(temp.c_str());
            return false;
        }
        m_temp = std::move(temp);
        return true;
    }
    error = "cannot create " + target + ": " + Reason(EEXIST);
    return false;
}

bool OutFile::Commit(std::string& error) {
    if (!m_file) {
        error = "cannot write " + m_target + ": not open";
        return false;
    }
    int err = 0;
    if (std::fflush(m_file) != 0 || std::ferror(m_file)) err = errno ? errno : EIO;
    if (!err && !m_temp.empty() && _commit(_fileno(m_file)) != 0) err = errno;
    if (std::fclose(m_file) != 0 && !err) err = errno;
    m_file = nullptr;
    if (!err && !m_temp.empty()) {
        std::error_code ec;
        std::filesystem::rename(m_temp, m_target, ec);
        if (ec) err = EACCES;  // the system's code is no errno value
    }
    if (err) {
        error = WriteError(m_target, err);
        Discard();
        return false;
    }
    m_temp.clear();
    return true;
}

void OutFile::Discard() {
    if (m_file) std::fclose(m_file);
    m_file = nullptr;
    if (!m_temp.empty()) _unlink(m_temp.c_str());
    m_temp.clear();
}

#else
bool OutFile::Open(const std::string& target, std::string& error) {
    Discard();
    IgnoreFileSizeSignal();
    m_target = target;
    struct stat st {};
    if (stat(target.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
        m_file = std::fopen(target.c_str(), "wb");
        if (!m_file) error = "cannot create " + target + ": " + Reason(errno);
        return m_file != nullptr;
    }
    const auto slash = target.find_last_of('/');
    const std::string name = slash == std::string::npos ? target : target.substr(slash + 1);
    std::string pattern = Folder(target) + "/." + name + ".XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    const int fd = mkstemp(buf.data());
    if (fd < 0) {
        error = "cannot create " + target + ": " + Reason(errno);
        return false;
    }
    // mkstemp makes the file private; the target gets the usual mode for new files.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, static_cast<mode_t>(0666 & ~mask));
    m_temp = buf.data();
    m_file = fdopen(fd, "wb");
    if (!m_file) {
        error = "cannot create " + target + ": " + Reason(errno);
        close(fd);
        unlink(m_temp.c_str());
        m_temp.clear();
        return false;
    }
    return true;
}

bool OutFile::Commit(std::string& error) {
    if (!m_file) {
        error = "cannot write " + m_target + ": not open";
        return false;
    }
    int err = 0;
    if (std::fflush(m_file) != 0 || std::ferror(m_file)) err = errno ? errno : EIO;
    // fsync fails on pipes and some devices, which have nothing to keep.
    if (!err && !m_temp.empty() && fsync(fileno(m_file)) != 0) err = errno;
    if (std::fclose(m_file) != 0 && !err) err = errno;
    m_file = nullptr;
    if (!err && !m_temp.empty() && std::rename(m_temp.c_str(), m_target.c_str()) != 0) err = errno;
    if (err) {
        error = WriteError(m_target, err);
        Discard();
        return false;
    }
    if (!m_temp.empty()) {
        // The rename itself is durable once the folder is synced.
        const int dir = open(Folder(m_target).c_str(), O_RDONLY | O_DIRECTORY);
        if (dir >= 0) {
            fsync(dir);
            close(dir);
        }
    }
    m_temp.clear();
    return true;
}

void OutFile::Discard() {
    if (m_file) std::fclose(m_file);
    m_file = nullptr;
    if (!m_temp.empty()) unlink(m_temp.c_str());
    m_temp.clear();
}

#endif

}  // namespace kxtool
