// The serial flashes that a Linux kernel publishes below its sysfs.
#include "tool_mtd_sysfs.h"

#include "tool_error.h"
#include "tool_file.h"
#include "tool_text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>

namespace {

namespace fs = std::filesystem;

constexpr size_t LARGEST_FILE = size_t{32} << 20; // an image has 24 address bits
constexpr size_t ID_BYTES_LEAST = 3;
constexpr size_t ID_BYTES_MOST = 255;

class SYSFS_READER {
public:
    explicit SYSFS_READER(fs::path root) : m_root(std::move(root)) {}

    TOOL_SYSTEM_FLASHES read();

private:
    void fault(const fs::path& file, const std::string& text) {
        m_result.faults.push_back(tool_printable(file.string()) + ": " + text);
    }
    std::vector<fs::path> entries(const fs::path& folder) const;
    std::optional<std::string> content(const fs::path& file);
    std::string line(const fs::path& file); // without blanks at its ends; empty where it is missing
    std::optional<std::uint64_t> number(const fs::path& file);
    std::vector<unsigned char> id(const fs::path& file);
    void read_sfdp(const fs::path& file, TOOL_SYSTEM_FLASH& flash);
    void read_flash(const fs::path& device);
    void read_mtd(const fs::path& folder);
    TOOL_SYSTEM_FLASH* flash_of(const fs::path& mtd);

    fs::path m_root;
    TOOL_SYSTEM_FLASHES m_result;
    std::vector<fs::path> m_real_paths; // of each flash's device
};

// spi2.0 before spi10.0.
bool is_before(const fs::path& left, const fs::path& right) {
    const std::string a = left.filename().string();
    const std::string b = right.filename().string();
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

std::vector<fs::path> SYSFS_READER::entries(const fs::path& folder) const {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator place(folder, error), end; !error && place != end; place.increment(error))
        found.push_back(place->path());
    std::sort(found.begin(), found.end(), is_before);
    return found;
}

// None where there is no such file, or where it cannot be read, which is noted.
std::optional<std::string> SYSFS_READER::content(const fs::path& file) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(file, error)))
        return std::nullopt;
    if (const std::string text = tool_reading_fault(file.string()); !text.empty()) {
        fault(file, text);
        return std::nullopt;
    }
    std::ifstream input(file, std::ios::in | std::ios::binary);
    try {
        return tool_read_all(input, tool_printable(file.string()), LARGEST_FILE);
    } catch (const TOOL_ERROR& refusal) {
        m_result.faults.emplace_back(refusal.what());
        return std::nullopt;
    }
}

std::string SYSFS_READER::line(const fs::path& file) {
    const std::string text = content(file).value_or("");
    const auto is_blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    const auto begin = std::find_if_not(text.begin(), text.end(), is_blank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), is_blank).base();
    return {begin, end};
}

std::optional<std::uint64_t> SYSFS_READER::number(const fs::path& file) {
    const std::string text = line(file);
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc() && stop == end)
        return value;
    if (!text.empty())
        fault(file, tool_quoted(text) + " is no number");
    return std::nullopt;
}

std::vector<unsigned char> SYSFS_READER::id(const fs::path& file) {
    std::error_code missing;
    if (!fs::exists(fs::symlink_status(file, missing))) {
        fault(file, "there is no such file");
        return {};
    }
    const std::string text = line(file);
    std::vector<unsigned char> bytes;
    for (size_t at = 0; at + 1 < text.size(); at += 2) {
        unsigned char byte = 0;
        const auto [stop, error] = std::from_chars(text.data() + at, text.data() + at + 2, byte, 16);
        if (error != std::errc() || stop != text.data() + at + 2)
            break;
        bytes.push_back(byte);
    }
    if (bytes.size() >= ID_BYTES_LEAST && bytes.size() <= ID_BYTES_MOST && 2 * bytes.size() == text.size())
        return bytes;
    fault(file, tool_quoted(text) + " is no identification of three bytes or more in hexadecimal digits");
    return {};
}

void SYSFS_READER::read_sfdp(const fs::path& file, TOOL_SYSTEM_FLASH& flash) {
    const std::optional<std::string> text = content(file);
    if (!text)
        return;
    flash.sfdp_path = file.string();
    SFDP_RESULT result = sfdp_decode(std::vector<std::uint8_t>(text->begin(), text->end()));
    if (const auto* refusal = std::get_if<SFDP_REFUSAL>(&result))
        fault(file, tool_printable(refusal->reason) + ", at byte " + std::to_string(refusal->offset));
    else
        flash.sfdp = std::get<SFDP_TABLE>(std::move(result));
}

void SYSFS_READER::read_flash(const fs::path& device) {
    std::error_code error;
    const fs::path folder = device / "spi-nor";
    if (!fs::is_directory(folder, error))
        return;
    TOOL_SYSTEM_FLASH flash;
    flash.device = device.filename().string();
    flash.id = id(folder / "jedec_id");
    flash.maker = line(folder / "manufacturer");
    flash.name = line(folder / "partname");
    read_sfdp(folder / "sfdp", flash);
    m_result.flashes.push_back(std::move(flash));
    m_real_paths.push_back(fs::weakly_canonical(device, error));
}

bool is_below(const fs::path& path, const fs::path& folder) {
    const auto [in_folder, in_path] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return in_folder == folder.end() && !folder.empty();
}

// The device of a partition may be the mtd of the whole flash, which lies below that of the flash.
TOOL_SYSTEM_FLASH* SYSFS_READER::flash_of(const fs::path& mtd) {
    std::error_code error;
    const fs::path device = fs::weakly_canonical(mtd / "device", error);
    for (size_t i = 0; i < m_real_paths.size(); ++i)
        if (is_below(device, m_real_paths[i]))
            return &m_result.flashes[i];
    return nullptr;
}

void SYSFS_READER::read_mtd(const fs::path& folder) {
    TOOL_MTD mtd;
    mtd.device = folder.filename().string();
    if (!mtd.device.starts_with("mtd") || mtd.device.ends_with("ro")) // mtd0ro is mtd0 once more
        return;
    TOOL_SYSTEM_FLASH* const flash = flash_of(folder);
    if (!flash) {
        if (line(folder / "type") == "nor")
            m_result.unlinked.push_back(mtd.device);
        return;
    }
    const auto size = number(folder / "size");
    const auto erase_size = number(folder / "erasesize");
    mtd.name = line(folder / "name");
    mtd.offset = number(folder / "offset");
    if (size && erase_size) {
        mtd.size = *size;
        mtd.erase_size = *erase_size;
        flash->mtds.push_back(std::move(mtd));
    } else {
        fault(folder, "its size or its erase size is missing");
    }
}

TOOL_SYSTEM_FLASHES SYSFS_READER::read() {
    std::error_code error;
    if (!fs::is_directory(m_root, error))
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_printable(m_root.string()) + ": there is no such folder",
                         {"next: name the folder where sysfs is mounted; on a Linux system it is /sys"});
    for (const fs::path& device : entries(m_root / "bus" / "spi" / "devices"))
        read_flash(device);
    for (const fs::path& mtd : entries(m_root / "class" / "mtd"))
        read_mtd(mtd);
    return std::move(m_result);
}

} // namespace

TOOL_SYSTEM_FLASHES tool_read_system_flashes(const std::string& folder) {
    return SYSFS_READER(folder).read();
}

std::optional<TOOL_MTD_SIZE> tool_mtd_size(const std::vector<TOOL_MTD>& mtds) {
    std::optional<TOOL_MTD_SIZE> size;
    for (const TOOL_MTD& mtd : mtds) {
        if (!mtd.offset)
            return TOOL_MTD_SIZE{mtd.size, true};
        const std::uint64_t end = *mtd.offset + mtd.size;
        if (!size || end > size->bytes)
            size = TOOL_MTD_SIZE{end, false};
    }
    return size;
}
