// Writing a file in one step: temporary file beside the target, flush, rename, flush of the folder.
#include "tovren_file.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// What a newly created file may do; the process's mask is only told while it is set.
mode_t default_mode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

std::string folder_of(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

// Where a file is to be made that a link names ahead of its time. Links in a circle name none: the empty path.
std::string follow_dangling_links(std::string path) {
    constexpr int MOST_LINKS = 40; // as the system allows
    for (int links = 0; links <= MOST_LINKS; ++links) {
        char target[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0)
            return path;
        const std::string next(target, static_cast<size_t>(length));
        path = next.starts_with('/') ? next : folder_of(path) + next;
    }
    return "";
}

// A rename is on disk once its folder is. A folder that may not be opened for reading is left to the system.
void flush_folder(const std::string& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    ::close(descriptor);
}

} // namespace

std::string tovren_follow_links(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
    if (resolved)
        return resolved.get();
    struct stat status = {};
    const bool exists = stat(path.c_str(), &status) == 0; // a pipe behind /dev/stdout has no path of its own
    return exists ? path : follow_dangling_links(path);
}

TOVREN_FILE_WRITER::TOVREN_FILE_WRITER(const std::string& path, const std::string& temporary)
    : m_target(tovren_follow_links(path)) {
    struct stat status = {};
    const bool exists = stat(m_target.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        m_descriptor = open(m_target.c_str(), O_WRONLY | O_CLOEXEC);
    else if (!exists || access(m_target.c_str(), W_OK) == 0) // a rename would not ask a read-only file
        open_beside(temporary);
    if (!m_temporary.empty() && m_descriptor >= 0)
        m_failed = fchmod(m_descriptor, exists ? status.st_mode & 07777 : default_mode()) != 0;
    m_failed = m_failed || m_descriptor < 0;
}

void TOVREN_FILE_WRITER::open_beside(const std::string& temporary) {
    if (temporary.empty()) {
        m_temporary = folder_of(m_target) + ".tovren.XXXXXX"; // short, whatever the target's name
        m_descriptor = mkostemp(m_temporary.data(), O_CLOEXEC);
        return;
    }
    m_temporary = temporary;
    unlink(m_temporary.c_str());
    m_descriptor = open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
}

TOVREN_FILE_WRITER::~TOVREN_FILE_WRITER() {
    discard();
}

void TOVREN_FILE_WRITER::discard() {
    const bool is_open = m_descriptor >= 0;
    close();
    if (is_open && !m_temporary.empty())
        unlink(m_temporary.c_str());
}

void TOVREN_FILE_WRITER::write(std::span<const unsigned char> bytes) {
    while (!m_failed && !bytes.empty()) {
        const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
        if (written > 0)
            bytes = bytes.subspan(static_cast<size_t>(written));
        else if (written == 0 || errno != EINTR)
            m_failed = true;
    }
}

// A failure leaves nothing to the destructor: the caller may report it, and a report may end the process.
bool TOVREN_FILE_WRITER::commit() {
    if (m_temporary.empty()) {
        close();
        return !m_failed;
    }
    if (m_failed || fsync(m_descriptor) != 0 || rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        discard();
        return false;
    }
    close();
    flush_folder(folder_of(m_target));
    return true;
}

void TOVREN_FILE_WRITER::close() {
    if (m_descriptor >= 0 && ::close(m_descriptor) != 0)
        m_failed = true;
    m_descriptor = -1;
}
