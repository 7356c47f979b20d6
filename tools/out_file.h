// Output files written whole or not at all.
//
// OutFile writes into a temporary file beside the target (same folder, so the final rename
// stays on one file system), and only Commit() flushes it to the disk and renames it over the
// target. Until then the target is untouched: a full disk, a file-size limit or a crash never
// leaves a partial file under the target's name, and an existing target keeps its old
// contents. A target that is not a regular file path (a device such as /dev/null, a pipe) is
// written directly, as nothing can be renamed over it.
#pragma once

#include <cstdio>
#include <string>

namespace kxtool {

class OutFile {
public:
    OutFile() = default;
    ~OutFile();  // discards an uncommitted temporary file
    OutFile(const OutFile&) = delete;
    OutFile& operator=(const OutFile&) = delete;

    /// Creates the temporary file. False with `error` set ("cannot create PATH: reason").
    bool Open(const std::string& target, std::string& error);
    std::FILE* File() const { return m_file; }
    const std::string& Target() const { return m_target; }

    /// Flushes, syncs and closes the temporary file and renames it to the target. False with
    /// `error` set when any step fails; the temporary file is then removed.
    bool Commit(std::string& error);
    /// Closes and removes the temporary file (the target stays as it was).
    void Discard();

private:
    std::FILE* m_file = nullptr;
    std::string m_target, m_temp;  // m_temp empty: writing the target directly
};

/// "cannot write PATH: reason" for the error number `err`, naming a full disk and the
/// file-size limit plainly.
std::string WriteError(const std::string& path, int err);

}  // namespace kxtool
