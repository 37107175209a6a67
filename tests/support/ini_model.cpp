#include "ini_model.h"

namespace {

unsigned long long le32_at(const BYTES& file, unsigned long long position) {
    unsigned long long value = 0;
    for (unsigned long long i = 4; i-- > 0;)
        value = value * 256 + file.at(position + i);
    return value;
}

// The entries of a table that is in order together with the data; none otherwise.
std::optional<std::vector<INI_ENTRY>> table_of(const BYTES& file) {
    if (file.size() <= 20 || first(file, 16) != text_bytes("TOVREN_FLASH_INI"))
        return std::nullopt;
    const unsigned long long count = le32_at(file, 16);
    if (20 + 8 * count > file.size())
        return std::nullopt;

    std::vector<INI_ENTRY> table;
    unsigned long long next = 20 + 8 * count;
    for (unsigned long long i = 0; i < count; ++i) {
        const unsigned long long offset = le32_at(file, 20 + 8 * i);
        const unsigned long long size = le32_at(file, 24 + 8 * i);
        if ((offset == 0) != (size == 0) || (offset != 0 && offset != next))
            return std::nullopt;
        next += size;
        if (next > file.size())
            return std::nullopt;
        table.push_back({static_cast<unsigned int>(offset), static_cast<unsigned int>(size)});
    }
    return next == file.size() ? std::optional(table) : std::nullopt;
}

} // namespace

std::vector<INI_ENTRY> INI_FILE::true_entries() const {
    std::vector<INI_ENTRY> result;
    auto offset = static_cast<unsigned int>(20 + 8 * sections.size());
    for (const BYTES& section : sections) {
        const auto size = static_cast<unsigned int>(section.size());
        result.push_back({size == 0 ? 0 : offset, size});
        offset += size;
    }
    return result;
}

BYTES INI_FILE::bytes() const {
    const std::vector<INI_ENTRY> table = entries ? *entries : true_entries();
    BYTES file = join({text_bytes(magic), le32_bytes(count.value_or(static_cast<unsigned int>(table.size())))});
    for (const INI_ENTRY& entry : table)
        file = join({file, le32_bytes(entry.offset), le32_bytes(entry.size)});
    for (const BYTES& section : sections)
        file = join({file, section});
    return join({file, behind_end});
}

std::optional<BYTES> section_of(const BYTES& file, unsigned int section) {
    const auto table = table_of(file);
    if (!table || section >= table->size() || table->at(section).size == 0)
        return std::nullopt;
    const auto begin = file.begin() + table->at(section).offset;
    return BYTES(begin, begin + table->at(section).size);
}

bool is_sound(const BYTES& file) {
    return table_of(file).has_value();
}

BYTES le64_bytes(unsigned long long value) {
    return join({le32_bytes(static_cast<unsigned int>(value)), le32_bytes(static_cast<unsigned int>(value >> 32))});
}

BYTES zero_ended(const std::string& text) {
    return join({text_bytes(text), {0}});
}
