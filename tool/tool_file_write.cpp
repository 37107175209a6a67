// Writing a result in one step: beside the target, flushed, renamed over it.
#include "tool_file.h"

#include "tool_text.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& file, int error) {
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_printable(file) + ": it cannot be written: " + strerror(error),
                     {"What stood there is as it was."});
}

// An open file; removed with its owner where it was not put in place.
class TEMPORARY_FILE {
public:
    explicit TEMPORARY_FILE(std::string path)
        : m_path(std::move(path)), m_descriptor(mkostemp(m_path.data(), O_CLOEXEC)) {}
    ~TEMPORARY_FILE() {
        if (m_descriptor < 0)
            return;
        close(m_descriptor);
        unlink(m_path.c_str());
    }
    TEMPORARY_FILE(const TEMPORARY_FILE&) = delete;
    TEMPORARY_FILE& operator=(const TEMPORARY_FILE&) = delete;

    int descriptor() const { return m_descriptor; }
    bool replace(const std::string& target) { return std::rename(m_path.c_str(), target.c_str()) == 0; }

private:
    std::string m_path;
    int m_descriptor;
};

bool write_whole(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            return false;
    }
    return true;
}

// The file that a path leads to, be it there or not.
std::string followed(std::string path) {
    constexpr int MOST_LINKS = 40; // as the system allows
    std::error_code error;
    for (int links = 0; links < MOST_LINKS && fs::is_symlink(path, error); ++links)
        path = fs::path(path).parent_path() / fs::read_symlink(path, error);
    return path;
}

// What a new file may do; the process's mask is only told while it is set.
mode_t default_mode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

bool write_directly(const std::string& file, std::string_view text) {
    const int descriptor = open(file.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool is_written = write_whole(descriptor, text);
    const int error = errno;
    const bool is_closed = close(descriptor) == 0;
    if (!is_written)
        errno = error;
    return is_written && is_closed;
}

bool write_beside(const std::string& target, std::string_view text, mode_t mode) {
    const fs::path folder = fs::path(target).parent_path();
    TEMPORARY_FILE beside((folder.empty() ? fs::path(".") : folder) / ".tovren.XXXXXX");
    return beside.descriptor() >= 0 && fchmod(beside.descriptor(), mode) == 0 &&
           write_whole(beside.descriptor(), text) && fsync(beside.descriptor()) == 0 && beside.replace(target);
}

} // namespace

void tool_write_file(const std::string& file, std::string_view text) {
    const std::string target = followed(file);
    struct stat status = {};
    const bool exists = stat(file.c_str(), &status) == 0;
    bool is_written = false;
    if (exists && !S_ISREG(status.st_mode)) // a pipe behind /dev/stdout has no path of its own
        is_written = write_directly(file, text);
    else if (!exists || access(target.c_str(), W_OK) == 0) // a rename would not ask a read-only file
        is_written = write_beside(target, text, exists ? status.st_mode & 07777 : default_mode());
    if (!is_written)
        refuse(file, errno);
}
