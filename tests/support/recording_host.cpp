#include "recording_host.h"

#include "allocation_log.h"
#include "host_cfg.h"
#include "host_dev.h"
#include "host_fio.h"
#include "host_mem.h"
#include "host_msg.h"
#include "host_pgm_common.h"
#include "host_text.h"
#include "host_ver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <strings.h>

namespace {

void record(const std::string& call) {
    recording_host().calls.push_back(call);
}

const char* text_of(bool value) {
    return value ? "true" : "false";
}

} // namespace

RECORDING_HOST& recording_host() {
    static RECORDING_HOST host;
    return host;
}

bool cfg_is_on(const std::string& name, bool default_value) {
    record("cfg_is_on(" + name + ", " + text_of(default_value) + ")");
    return recording_host().switches_on.contains(name);
}

std::string cfg_get_value(const std::string& name) {
    record("cfg_get_value(" + name + ")");
    const auto setting = recording_host().settings.find(name);
    return setting == recording_host().settings.end() ? "" : setting->second;
}

bool FIO_FILE_SYSTEM::exists(const char* path) {
    record(std::string("exists(") + path + ")");
    return std::filesystem::exists(path);
}

bool FIO_FILE_SYSTEM::status(const char* path, FIO_STATUS* status) {
    record(std::string("status(") + path + ")");
    std::error_code error;
    status->size = std::filesystem::file_size(path, error);
    return !error;
}

std::string gen_get_device_db_fullpath() {
    record("gen_get_device_db_fullpath()");
    return recording_host().device_db_root;
}

std::string gen_get_module_path() {
    record("gen_get_module_path()");
    return recording_host().module_path;
}

std::string gen_get_morvath_path() {
    record("gen_get_morvath_path()");
    return recording_host().product_root;
}

std::string ver_get_version() {
    record("ver_get_version()");
    return "1.0";
}

unsigned int ver_get_current_version_index_number() {
    record("ver_get_current_version_index_number()");
    return recording_host().version_index_number;
}

MEM_INITIALIZER::MEM_INITIALIZER(const char* prefix) : m_prefix(prefix) {
    ALLOCATION_LOG::note(ALLOCATION_EVENT::TRACKER_ENTERED);
    record(std::string("MEM_INITIALIZER(") + prefix + ")");
}

MEM_INITIALIZER::~MEM_INITIALIZER() {
    ALLOCATION_LOG::note(ALLOCATION_EVENT::TRACKER_LEFT);
    record(std::string("~MEM_INITIALIZER(") + m_prefix + ")");
}

void MSG_INTERNAL_ERROR::report(const char* expression, const char* prefix, const char* file, int line) {
    throw RECORDED_REPORT{expression, prefix, file, line};
}

int msg_local_vdebug(const char* prefix, MSG_D_LEVEL level, const char* format, va_list args) {
    char message[200];
    vsnprintf(message, sizeof message, format, args);
    record(std::string("msg_local_vdebug(") + prefix + ", " + std::to_string(level) + ", " + format + "): " + message);
    const auto& answer = recording_host().on_debug_message;
    return answer ? answer() : 0;
}

unsigned int PGM_COMMON::convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, bool* overflow,
                                                 bool allow_hex) {
    record("convert_string_to_dword(" + text + ", " + text_of(no_empty) + ", " + (ok != nullptr ? "ok" : "none") +
           ", " + (overflow != nullptr ? "overflow" : "none") + ", " + text_of(allow_hex) + ")");
    if (ok != nullptr)
        *ok = true;
    return 0x12345678;
}

bool PGM_COMMON::send_auto_email_file(const std::vector<PGM_COMMON_INI_EMAIL_ADDR_ENUM>&, const std::string& subject,
                                      const std::string&) {
    record("send_auto_email_file(" + subject + ")");
    return true;
}

// Every byte of the digest is the last one of the data.
unsigned char* PGM_COMMON::get_block_sha(const unsigned char* data, unsigned int length, unsigned int digest_length) {
    record("get_block_sha(" + std::string(reinterpret_cast<const char*>(data), length) + ", " + std::to_string(length) +
           ", " + std::to_string(digest_length) + ")");
    auto* const digest = new unsigned char[digest_length];
    std::fill_n(digest, digest_length, length > 0 ? data[length - 1] : 0);
    return digest;
}

unsigned int PGM_COMMON::msb_calculate_crc32(const unsigned char* data, unsigned int start_bit, unsigned int bit_count,
                                             unsigned int initial, unsigned int polynomial, bool top_bit_first) {
    char call[100];
    snprintf(call, sizeof call, "msb_calculate_crc32(%u, %u, %08X, %08X, %s)", start_bit, bit_count, initial,
             polynomial, text_of(top_bit_first));
    record(call);
    unsigned int crc = initial;
    for (unsigned int bit = start_bit; bit < start_bit + bit_count; ++bit) {
        const bool is_one = ((crc >> 31) != 0) != ((data[bit / 8] >> (7 - bit % 8) & 1) != 0);
        crc = (crc << 1) ^ (is_one ? polynomial : 0);
    }
    return crc;
}

bool PGM_COMMON::compare_string(const std::string& left, const std::string& right, bool case_sensitive) {
    record("compare_string(" + left + ", " + right + ", " + text_of(case_sensitive) + ")");
    return left == right;
}

// ---- a catalogue of nothing but the generic values ----

const DEV_PART_ENUM DEV_PART_INVALID = DEV_PART_ENUM(0);
const DEV_PART_ENUM DEV_PART_GENERIC = DEV_PART_ENUM(1);
const DEV_PART_ENUM DEV_PART_MAX = DEV_PART_ENUM(2);

std::string dstr_get_user_string(DEV_FAMILY_ENUM family) {
    return family == DEV_FAMILY_GENERIC ? "GENERIC" : "";
}

std::string dstr_get_user_string(DEV_DEVICE_ENUM device) {
    return device == DEV_DEVICE_GENERIC ? "GENERIC" : "";
}

std::string dstr_get_user_string(DEV_PART_ENUM part) {
    return part == DEV_PART_GENERIC ? "GENERIC" : "";
}

DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const std::string& name) {
    return gen_stricmp(name.c_str(), "GENERIC") == 0 ? DEV_FAMILY_GENERIC : DEV_FAMILY_INVALID;
}

DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const std::string& name) {
    return gen_stricmp(name.c_str(), "GENERIC") == 0 ? DEV_DEVICE_GENERIC : DEV_DEVICE_INVALID;
}

DEV_PART_ENUM dstr_get_dev_part_enum_by_string(const std::string& name) {
    return gen_stricmp(name.c_str(), "GENERIC") == 0 ? DEV_PART_GENERIC : DEV_PART_INVALID;
}

bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family) {
    return family > DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX;
}

bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device) {
    return device > DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX;
}

DEV_DEVICE_ENUM DEV_PART_MANAGER::get_device_of(DEV_PART_ENUM part) const {
    if (const auto& answer = recording_host().device_of)
        return answer(part);
    return part == DEV_PART_GENERIC ? DEV_DEVICE_GENERIC : DEV_DEVICE_INVALID;
}

DEV_FAMILY_ENUM DEV_PART_MANAGER::get_family_of(DEV_DEVICE_ENUM device) const {
    if (const auto& answer = recording_host().family_of)
        return answer(device);
    return device == DEV_DEVICE_GENERIC ? DEV_FAMILY_GENERIC : DEV_FAMILY_INVALID;
}

bool DEV_PART_MANAGER::filter_part_list(std::vector<DEV_PART_ENUM>& parts, const std::string&, const std::string&,
                                        const std::string&, const std::string&, const std::string&, bool, bool, bool,
                                        const std::string&) const {
    parts.clear();
    return true;
}

// ---- texts ----

int gen_stricmp(const char* left, const char* right) {
    return strcasecmp(left, right);
}

void gen_remove_leading_and_trailing_white_spaces(std::string& text) {
    text.erase(text.find_last_not_of(" \t\r\n\v\f") + 1);
    text.erase(0, text.find_first_not_of(" \t\r\n\v\f"));
}

void stl_toupper(std::string& text) {
    for (char& character : text)
        character = static_cast<char>(toupper(static_cast<unsigned char>(character)));
}

void stl_tolower(std::string& text) {
    for (char& character : text)
        character = static_cast<char>(tolower(static_cast<unsigned char>(character)));
}

void gen_ascii_toupper(std::string& text) {
    stl_toupper(text);
}

unsigned long long gen_local_strtoQWORD(const char* text, const char** end, int radix) {
    char* behind = nullptr;
    const unsigned long long value = std::strtoull(text, &behind, radix);
    if (end != nullptr)
        *end = behind;
    return value;
}

// For CSV rows without blanks.
void gen_tokenize(const std::string& text, const char* separators, std::vector<std::string>& tokens) {
    tokens.assign(1, "");
    for (const char character : text) {
        if (std::strchr(separators, character) != nullptr)
            tokens.emplace_back();
        else
            tokens.back() += character;
    }
}
