// Writing a file in one step.
#ifndef TOVREN_FILE_H
#define TOVREN_FILE_H

#include <span>
#include <string>

// The file that `path` leads to: itself, unless it is a link. The file need not exist yet. Empty for links in a circle.
std::string tovren_follow_links(const std::string& path);

// Writes beside the target and renames over it on commit(), so that the target is always a whole old or a whole new
// file, also after a kill or on a full disk. A link is followed first; the old file's permissions are kept. A target
// that is no regular file (a pipe, a terminal) is written to directly. Without a commit nothing stays behind.
//
// The file beside the target has a new name each time, or `temporary`, where given: for those who keep others from
// writing at the same time and want what a kill left behind to be gone with the next write.
class TOVREN_FILE_WRITER {
public:
    explicit TOVREN_FILE_WRITER(const std::string& path, const std::string& temporary = "");
    ~TOVREN_FILE_WRITER();
    TOVREN_FILE_WRITER(const TOVREN_FILE_WRITER&) = delete;
    TOVREN_FILE_WRITER& operator=(const TOVREN_FILE_WRITER&) = delete;

    void write(std::span<const unsigned char> bytes);

    // Flushes to the disk and puts the file in place. False when this or anything before it failed: then the target is
    // as it was and nothing stands beside it.
    bool commit();

private:
    void open_beside(const std::string& temporary);
    void discard();
    void close();

    std::string m_target;
    std::string m_temporary; // empty: written to directly
    int m_descriptor = -1;
    bool m_failed = false;
};

#endif
