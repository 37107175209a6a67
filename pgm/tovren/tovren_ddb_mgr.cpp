// The two compiled-in naming tables: envelope, grammar maps, ordering list.
//
// Body of the grammar image: eight maps, one after another. A map is one or more entries and a zero byte; an entry is a
// key, one or more contents and a zero byte; each string ends in a zero byte and is not empty.
//
// Body of the ordering image: a 32-bit count, least significant byte first, and that many packed integers. These have
// seven bits in a byte, the lowest first; the top bit is set where another byte follows.
#include "tovren_ddb_mgr.h"

#include "host_pgm_common.h"
#include "host_text.h"
#include "pgmddb_grammar_data.h"
#include "pgmddb_opn_data.h"
#include "tovren_check.h"
#include "tovren_zlib.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <string_view>

TOVREN_DDB_GRAMMAR_MGR* TOVREN_DDB_GRAMMAR_MGR::m_mgr = nullptr;
TOVREN_DDB_OPN_MGR* TOVREN_DDB_OPN_MGR::m_mgr = nullptr;

namespace {

constexpr unsigned int MAGIC_SIZE = 10;
constexpr unsigned int TRAILER_SIZE = 4;
constexpr unsigned int SPARE_SIZE = 100; // room that shows a stream which inflates to more than it should

constexpr DWORD CRC_INITIAL = 0xFFFFFFFF;
constexpr DWORD CRC_POLYNOMIAL = 0x04C11DB7;

constexpr unsigned int OPN_COUNT_SIZE = 4;
constexpr unsigned int PACKED_BITS = 7; // of the value in one byte

// ---- envelope ----

void check_crc(const unsigned char* data, unsigned int data_size) {
    const DWORD crc32 =
        ~PGM_COMMON::msb_calculate_crc32(data, 0, (data_size - TRAILER_SIZE) * 8, CRC_INITIAL, CRC_POLYNOMIAL, true);
    TOVREN_CHECK(BYTE(crc32) == data[data_size-4]);
    TOVREN_CHECK(BYTE(crc32 >> 8) == data[data_size-3]);
    TOVREN_CHECK(BYTE(crc32 >> 16) == data[data_size-2]);
    TOVREN_CHECK(BYTE(crc32 >> 24) == data[data_size-1]);
}

// The verified image of a table. The two texts name the table's own constants.
std::unique_ptr<unsigned char[]> load_image(const TOVREN_DDB_BLOB& blob, const char* uncompress_text,
                                            const char* length_text) {
    unsigned int data_size = blob.length + SPARE_SIZE;
    auto image = std::make_unique<unsigned char[]>(data_size);
    unsigned char* const data = image.get();
    const auto stream_length = static_cast<unsigned int>(blob.stream.size());
    TOVREN_CHECK_TEXT(zlib_uncompress(data, &data_size, blob.stream.data(), stream_length) == ZLIB_OK, uncompress_text);
    TOVREN_CHECK_TEXT(data_size == blob.length, length_text);
    TOVREN_CHECK(memcmp(data, "TOVREN_DDB", 10) == 0);
    check_crc(data, data_size);
    return image;
}

// ---- names ----

std::string& standardized(const std::string& name) {
    auto& writable = const_cast<std::string&>(name);
    TOVREN_DDB_GRAMMAR_MGR::standardize_name(writable);
    return writable;
}

// Equality with one name, for scans over names of which few are equal and many are equally long. Names that belong
// together begin alike, so their ends are compared first.
class NAME_MATCHER {
public:
    explicit NAME_MATCHER(std::string_view name) : m_name(name), m_end(name.size() < WORD_SIZE ? 0 : end_of(name)) {}

    bool operator()(std::string_view other) const {
        if (other.size() != m_name.size() || (m_name.size() >= WORD_SIZE && end_of(other) != m_end))
            return false;
        return std::memcmp(other.data(), m_name.data(), m_name.size()) == 0;
    }

private:
    static constexpr size_t WORD_SIZE = sizeof(QWORD);

    static QWORD end_of(std::string_view text) {
        QWORD word = 0;
        std::memcpy(&word, text.data() + text.size() - WORD_SIZE, WORD_SIZE);
        return word;
    }

    std::string_view m_name;
    QWORD m_end; // the name's last eight bytes, where it has as many
};

// ---- reading the maps ----

// The string at `index`, which is advanced past its terminator. It stays in the image.
std::string_view read_string(unsigned int& index, const unsigned char* data, unsigned int data_size) {
    TOVREN_CHECK(index < data_size);
    TOVREN_CHECK(data[index] != 0);
    const unsigned char* const begin = data + index;
    const void* const end = std::memchr(begin, 0, data_size - index);
    index = end != nullptr ? static_cast<unsigned int>(static_cast<const unsigned char*>(end) - data) : data_size;
    TOVREN_CHECK(index < data_size && data[index] == 0);
    const std::string_view string(reinterpret_cast<const char*>(begin), static_cast<size_t>(data + index - begin));
    ++index;
    TOVREN_CHECK(index < data_size);
    return string;
}

// The contents of one entry while they are read. A short list is searched from its start, a long one by hash.
class CONTENT_LIST {
public:
    void clear() {
        m_contents.clear();
        m_slots.clear();
    }

    // Whether the content was new.
    bool add(std::string_view content) {
        if (m_contents.size() < SHORT_SIZE) {
            if (std::find_if(m_contents.begin(), m_contents.end(), NAME_MATCHER(content)) != m_contents.end())
                return false;
            m_contents.push_back(content);
            return true;
        }
        if (m_slots.size() < 2 * (m_contents.size() + 1))
            grow();
        DWORD& slot = m_slots[slot_of(content)];
        if (slot != EMPTY)
            return false;
        slot = static_cast<DWORD>(m_contents.size());
        m_contents.push_back(content);
        return true;
    }

    size_t size() const { return m_contents.size(); }

    // Without spare room, so that lists which are scanned one after another lie close together.
    std::vector<std::string> get() const { return {m_contents.begin(), m_contents.end()}; }

private:
    static constexpr size_t SHORT_SIZE = 24;
    static constexpr DWORD EMPTY = INVALID_DWORD;

    // Where the content stands, or the empty slot where it would.
    size_t slot_of(std::string_view content) const {
        const size_t mask = m_slots.size() - 1;
        size_t slot = std::hash<std::string_view>()(content) & mask;
        while (m_slots[slot] != EMPTY && m_contents[m_slots[slot]] != content)
            slot = (slot + 1) & mask;
        return slot;
    }

    void grow() {
        m_slots.assign(std::bit_ceil(4 * m_contents.size()), EMPTY);
        for (DWORD place = 0; place < m_contents.size(); ++place)
            m_slots[slot_of(m_contents[place])] = place;
    }

    std::vector<std::string_view> m_contents;
    std::vector<DWORD> m_slots; // of a long list: places of the contents, at most half full, a power of two in size
};

// Adds an entry unless its key is there already; returns whether it was added. Keys that come in order cost one
// comparison.
bool insert_new(TOVREN_DDB_MAP& map, std::string key, std::vector<std::string> contents) {
    const size_t count = map.size();
    map.emplace_hint(map.end(), std::move(key), std::move(contents));
    return map.size() > count;
}

// Reads one entry into the map. `contents` is only room to work in.
void read_entry(TOVREN_DDB_MAP* map, CONTENT_LIST& contents, unsigned int& index, const unsigned char* data,
                unsigned int data_size) {
    std::string key(read_string(index, data, data_size));
    contents.clear();
    while (data[index] != 0) {
        const std::string_view content = read_string(index, data, data_size);
        TOVREN_CHECK(content.size());
        TOVREN_CHECK_TEXT(contents.add(content),
                          "std::find(contents.begin(), contents.end(), content) == contents.end()");
    }
    TOVREN_CHECK(contents.size());
    TOVREN_CHECK(index < data_size && data[index] == 0);
    TOVREN_CHECK_TEXT(insert_new(*map, std::move(key), contents.get()), "map->find(key) == map->end()");
    ++index;
}

} // namespace

// ---- grammar maps ----

TOVREN_DDB_GRAMMAR_MGR::TOVREN_DDB_GRAMMAR_MGR()
    : TOVREN_DDB_GRAMMAR_MGR(TOVREN_DDB_BLOB{{PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH}, PGMDDB_GRAMMAR_LENGTH}) {
}

TOVREN_DDB_GRAMMAR_MGR::TOVREN_DDB_GRAMMAR_MGR(const TOVREN_DDB_BLOB& blob) {
    const auto image =
        load_image(blob, "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK",
                   "data_size == PGMDDB_GRAMMAR_LENGTH");
    for (auto& map : m_maps)
        map = std::make_unique<TOVREN_DDB_MAP>();
    parse(image.get(), blob.length - TRAILER_SIZE);
}

void TOVREN_DDB_GRAMMAR_MGR::parse(const unsigned char* data, unsigned int limit) {
    CONTENT_LIST contents;
    unsigned int index = MAGIC_SIZE;
    DWORD pointer_index = 0;
    while (index < limit) {
        TOVREN_CHECK(pointer_index < DWORD(TOVREN_DDB_GRAMMAR_ENUM::MAX));
        read_entry(m_maps[pointer_index].get(), contents, index, data, limit);
        if (index < limit && data[index] == 0) {
            ++index;
            ++pointer_index;
        }
    }
    TOVREN_CHECK(pointer_index == DWORD(TOVREN_DDB_GRAMMAR_ENUM::MAX));
}

void TOVREN_DDB_GRAMMAR_MGR::get_mapping(TOVREN_DDB_MAP*& map, unsigned int& index, const unsigned char* data,
                                         unsigned int data_size) const {
    CONTENT_LIST contents;
    read_entry(map, contents, index, data, data_size);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_string(unsigned int& index, const unsigned char* data,
                                               unsigned int data_size) const {
    return std::string(read_string(index, data, data_size));
}

TOVREN_DDB_GRAMMAR_MGR* TOVREN_DDB_GRAMMAR_MGR::get_mgr() {
    if (m_mgr == nullptr)
        m_mgr = new TOVREN_DDB_GRAMMAR_MGR;
    return m_mgr;
}

void TOVREN_DDB_GRAMMAR_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}

TOVREN_DDB_MAP* TOVREN_DDB_GRAMMAR_MGR::get_map(TOVREN_DDB_GRAMMAR_ENUM type) const {
    TOVREN_CHECK(type < TOVREN_DDB_GRAMMAR_ENUM::MAX);
    return m_maps[DWORD(type)].get();
}

void TOVREN_DDB_GRAMMAR_MGR::standardize_name(std::string& name) {
    gen_remove_leading_and_trailing_white_spaces(name);
    stl_toupper(name);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_mapping_key(const std::string& name, TOVREN_DDB_MAP* mapping) const {
    TOVREN_CHECK(mapping != NULL);
    const NAME_MATCHER is_name(standardized(name));
    for (const auto& [key, contents] : *mapping)
        if (std::find_if(contents.begin(), contents.end(), is_name) != contents.end())
            return key;
    return "";
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_mapping_key(const std::string& name, TOVREN_DDB_GRAMMAR_ENUM type) {
    const TOVREN_DDB_GRAMMAR_MGR* const mgr = get_mgr();
    TOVREN_CHECK(mgr != NULL);
    return mgr->get_mapping_key(name, mgr->get_map(type));
}

std::vector<std::string> TOVREN_DDB_GRAMMAR_MGR::get_key_mapping(const std::string& key,
                                                                 TOVREN_DDB_MAP* mapping) const {
    TOVREN_CHECK(mapping != NULL);
    const auto place = mapping->find(standardized(key));
    return place != mapping->end() ? place->second : std::vector<std::string>();
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_package_grammar(const std::string& name, bool keep_empty) {
    const std::string key = get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::PACKAGE_GRAMMAR);
    return key.empty() && !keep_empty ? name : key;
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_pgm_grammar(const std::string& name, bool keep_empty) {
    const std::string key = get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::PGM_GRAMMAR);
    return key.empty() && !keep_empty ? name : key;
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_pgm_pcf(const std::string& name) {
    return get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::PGM_PCF);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_pgm_family_pcf(const std::string& name) {
    return get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::PGM_FAMILY_PCF);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_dev_pcf(const std::string& name) {
    return get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::DEV_PCF);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_dev_family_pcf(const std::string& name) {
    return get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::DEV_FAMILY_PCF);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_device_pcf_family_pcf(const std::string& name) {
    return get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::DEVICE_PCF_FAMILY_PCF);
}

std::string TOVREN_DDB_GRAMMAR_MGR::get_family(const std::string& name) {
    return get_mapping_key(name, TOVREN_DDB_GRAMMAR_ENUM::FAMILY);
}

std::vector<std::string> TOVREN_DDB_GRAMMAR_MGR::get_dev_pcf_list(const std::string& pcf) {
    const TOVREN_DDB_GRAMMAR_MGR* const mgr = get_mgr();
    TOVREN_CHECK(mgr != NULL);
    return mgr->get_key_mapping(pcf, mgr->get_map(TOVREN_DDB_GRAMMAR_ENUM::DEV_PCF));
}

// ---- ordering list ----

TOVREN_DDB_OPN_MGR::TOVREN_DDB_OPN_MGR()
    : TOVREN_DDB_OPN_MGR(TOVREN_DDB_BLOB{{PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH}, PGMDDB_OPN_LENGTH}) {}

TOVREN_DDB_OPN_MGR::TOVREN_DDB_OPN_MGR(const TOVREN_DDB_BLOB& blob) {
    const auto image =
        load_image(blob, "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK",
                   "data_size == PGMDDB_OPN_LENGTH");
    m_map = std::make_unique<std::vector<unsigned int>>();
    parse(image.get(), blob.length);
}

namespace {

// The count of entries; 0 where the image ends before it.
DWORD read_count(const unsigned char* data, unsigned int data_size) {
    DWORD count = 0;
    for (unsigned int place = 0; place < OPN_COUNT_SIZE && MAGIC_SIZE + place < data_size; ++place)
        count |= DWORD{data[MAGIC_SIZE + place]} << (8 * place);
    return count;
}

// One packed integer at `index`, which is advanced. Its limits are checked once it is read; bits past 64 are dropped.
DWORD read_packed(const unsigned char* data, unsigned int& index, unsigned int data_size) {
    QWORD dev_enum = 0;
    unsigned int shift = 0;
    BYTE byte = 0;
    do {
        TOVREN_CHECK(index < (data_size - 4));
        byte = data[index++];
        if (shift < 64)
            dev_enum |= QWORD{byte & 0x7FU} << shift;
        shift += PACKED_BITS;
    } while ((byte & 0x80) != 0);
    TOVREN_CHECK(shift <= 35);
    TOVREN_CHECK(dev_enum <= QWORD(0xFFFFFFFF));
    return DWORD(dev_enum);
}

} // namespace

void TOVREN_DDB_OPN_MGR::parse(const unsigned char* data, unsigned int data_size) {
    const DWORD enum_count = read_count(data, data_size);
    TOVREN_CHECK(enum_count > 0);
    std::vector<unsigned int>& list = entries();
    list.reserve(std::min(enum_count, data_size)); // an entry takes a byte or more
    unsigned int index = MAGIC_SIZE + OPN_COUNT_SIZE;
    while (list.size() < enum_count)
        list.push_back(read_packed(data, index, data_size));
    TOVREN_CHECK(index == (data_size - 4));
}

std::vector<unsigned int>& TOVREN_DDB_OPN_MGR::entries() const {
    TOVREN_CHECK_TEXT(m_map != nullptr, "M_MAP != NULL");
    return *m_map;
}

TOVREN_DDB_OPN_MGR* TOVREN_DDB_OPN_MGR::get_mgr() {
    if (m_mgr == nullptr)
        m_mgr = new TOVREN_DDB_OPN_MGR;
    return m_mgr;
}

void TOVREN_DDB_OPN_MGR::delete_mgr() {
    delete m_mgr;
    m_mgr = nullptr;
}

unsigned int TOVREN_DDB_OPN_MGR::dev_opn_enum(unsigned int opn_enum) const {
    const std::vector<unsigned int>& list = entries();
    return opn_enum < list.size() ? list[opn_enum] : INVALID_DWORD;
}

unsigned int TOVREN_DDB_OPN_MGR::opn_enum(unsigned int dev_enum) const {
    const std::vector<unsigned int>& list = entries();
    const auto place = std::find(list.begin(), list.end(), dev_enum);
    return place != list.end() ? static_cast<unsigned int>(place - list.begin()) : INVALID_DWORD;
}

unsigned int TOVREN_DDB_OPN_MGR::get_dev_opn_enum(unsigned int opn_enum) {
    const TOVREN_DDB_OPN_MGR* const mgr = get_mgr();
    TOVREN_CHECK(mgr != NULL);
    return mgr->dev_opn_enum(opn_enum);
}

unsigned int TOVREN_DDB_OPN_MGR::get_opn_enum(unsigned int dev_enum) {
    const TOVREN_DDB_OPN_MGR* const mgr = get_mgr();
    TOVREN_CHECK(mgr != NULL);
    return mgr->opn_enum(dev_enum);
}
