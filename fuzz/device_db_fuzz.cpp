// Device database: the payload of a file whose envelope is in order. An input that begins with R is the record part,
// "END2" included, behind which sound index tables are put; the bytes behind any other first character are a whole
// payload.
// Accepted: a lookup gives the record that its table names, or reports that there is none such.
#include "fuzz_support.h"
#include "tovren_dev_info_manager.h"

namespace {

constexpr size_t LARGEST_INPUT = size_t{1} << 17;
constexpr std::string_view MAGIC = "PGMIO_DM";

void put_dword(std::vector<unsigned char>& bytes, unsigned int value) {
    for (unsigned int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

// Every entry is the first record's.
void put_table(std::vector<unsigned char>& bytes, unsigned char tag, unsigned int count) {
    bytes.push_back(tag);
    put_dword(bytes, count);
    bytes.resize(bytes.size() + size_t{4} * count);
}

std::vector<unsigned char> make_payload(std::span<const unsigned char> input) {
    std::vector<unsigned char> payload(input.begin() + 1, input.end());
    if (input[0] == 'R') {
        put_table(payload, TOVREN_MANAGER_FAMILY_TBL, DEV_FAMILY_MAX);
        put_table(payload, TOVREN_MANAGER_DEVICE_TBL, DEV_DEVICE_MAX);
        put_table(payload, TOVREN_MANAGER_PART_TBL, DEV_PART_MAX);
    }
    return payload;
}

void require_the_record_of_its_table(TOVREN_DEV_INFO_MANAGER& devices, DEV_FAMILY_ENUM family) {
    const unsigned int position = devices.get_position_of(family);
    std::unique_ptr<TOVREN_DEVICE_INFO> record;
    if (!fuzz_is_accepted([&] { record.reset(devices.get_db_by_family(family)); })) {
        FUZZ_REQUIRE(position >= TOTAL_DATABASE_DEVICE && position != INVALID_DWORD);
        return;
    }
    FUZZ_REQUIRE((record == nullptr) == (position == INVALID_DWORD));
    const TOVREN_DEVICE_INFO* own = devices.get_record(position);
    FUZZ_REQUIRE(!record || !own || (record->pcf == own->pcf && record->family == own->family));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0 || size > LARGEST_INPUT)
        return 0;
    const FUZZ_FILE file(fuzz_database_file(MAGIC, TOVREN_DEV_INFO_CSV_MD5, make_payload({data, size})));
    TOVREN_DEV_INFO_MANAGER devices(true, 0);
    if (!fuzz_is_accepted([&] { devices.initialize_device_database(file.path()); }))
        return 0;

    FUZZ_REQUIRE(devices.get_record(devices.m_device_count) == nullptr);
    for (unsigned int family = 0; family < DEV_FAMILY_MAX; ++family)
        require_the_record_of_its_table(devices, DEV_FAMILY_ENUM(family));
    fuzz_is_accepted([&] { devices.search_part(DEV_PART_GENERIC, false); });
    return 0;
}
