// Mail of the build: a complete message file (RFC 5322) in the folder that the setting TOVREN_MAIL_OUTBOX names, for
// whatever sends mail on this machine to pick up. Without the setting nothing is written. Never fails its caller.
#include "host_cfg.h"
#include "host_pgm_common.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sstream>
#include <unistd.h>

namespace {

constexpr char OUTBOX_SETTING[] = "TOVREN_MAIL_OUTBOX";

std::string host_name() {
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 && name[0] != '\0' ? name : "localhost";
}

const char* mailbox_of(PGM_COMMON_INI_EMAIL_ADDR_ENUM recipient) {
    return recipient == PGM_COMMON_INI_EMAIL_ADDR_DEVICE_DATA ? "device-data" : "build";
}

std::string address_list(const std::vector<PGM_COMMON_INI_EMAIL_ADDR_ENUM>& recipients) {
    std::string list;
    for (const auto recipient : recipients)
        list += (list.empty() ? "" : ", ") + std::string(mailbox_of(recipient)) + "@" + host_name();
    return list;
}

std::string formatted_time(std::time_t time, const char* format) {
    std::tm parts = {};
    gmtime_r(&time, &parts);
    char text[64];
    return {text, std::strftime(text, sizeof text, format, &parts)};
}

// A header's value stands on one line.
std::string one_line(std::string text) {
    for (char& c : text)
        if (c == '\r' || c == '\n')
            c = ' ';
    return text;
}

// The whole text on one line, blank lines left out.
std::string joined_lines(const std::string& text) {
    std::istringstream input(text);
    std::string result;
    for (std::string line; std::getline(input, line);) {
        line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
        result += (result.empty() || line.empty() ? "" : " ") + line;
    }
    return one_line(result);
}

// Every line of a message ends in CR LF.
std::string with_crlf(const std::string& text) {
    std::string result;
    for (const char c : text)
        if (c == '\n')
            result += "\r\n";
        else if (c != '\r')
            result += c;
    return result.empty() || result.ends_with("\r\n") ? result : result + "\r\n";
}

// Unique on this machine.
std::string message_name(std::time_t now) {
    static unsigned int count = 0;
    return formatted_time(now, "%Y%m%d%H%M%S") + "." + std::to_string(getpid()) + "." + std::to_string(++count);
}

std::string message_text(const std::string& to, const std::string& subject, const std::string& body,
                         const std::string& name, std::time_t now) {
    return "From: tovren@" + host_name() + "\r\nTo: " + to + "\r\nSubject: " + one_line(subject) +
           "\r\nDate: " + formatted_time(now, "%a, %d %b %Y %H:%M:%S +0000") + "\r\nMessage-ID: <" + name + "@" +
           host_name() +
           ">\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; charset=utf-8\r\n"
           "Content-Transfer-Encoding: 8bit\r\n\r\n" +
           with_crlf(body);
}

bool write_new_file(const std::string& path, const std::string& text) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return false;
    const bool is_written = write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    const bool is_closed = close(descriptor) == 0;
    if (!is_written || !is_closed)
        unlink(path.c_str());
    return is_written && is_closed;
}

} // namespace

bool PGM_COMMON::send_auto_email_file(const std::vector<PGM_COMMON_INI_EMAIL_ADDR_ENUM>& recipients,
                                      const std::string& subject, const std::string& body) {
    const std::string to = address_list(recipients);
    const std::string outbox = cfg_get_value(OUTBOX_SETTING);
    if (outbox.empty()) {
        std::fprintf(stderr, "mail to %s: %s: %s (not sent: the setting %s names no folder)\n", to.c_str(),
                     one_line(subject).c_str(), joined_lines(body).c_str(), OUTBOX_SETTING);
        return false;
    }

    const std::time_t now = std::time(nullptr);
    const std::string name = message_name(now);
    const std::string path = outbox + "/" + name + ".eml";
    if (!write_new_file(path, message_text(to, subject, body, name, now))) {
        std::fprintf(stderr, "mail to %s: %s: %s cannot be written: %s\n", to.c_str(), one_line(subject).c_str(),
                     path.c_str(), std::strerror(errno));
        return false;
    }
    std::fprintf(stderr, "mail to %s: %s: %s (written to %s)\n", to.c_str(), one_line(subject).c_str(),
                 body.substr(0, body.find('\n')).c_str(), path.c_str());
    return true;
}
