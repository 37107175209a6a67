// A flash's parameter table, as raw bytes or as a dump for people.
// Always: no byte outside the image is read, and what is refused names a byte of it. Accepted: blocks make up the flash
// and pages the blocks, every instruction has an opcode, and bytes behind the image change nothing but warnings.
#include "fuzz_support.h"
#include "sfdp.h"

namespace {

constexpr size_t LARGEST_INPUT = size_t{1} << 14;
constexpr size_t LARGEST_IMAGE = size_t{1} << 24;

using IMAGE = std::vector<std::uint8_t>;

void require_erases(const SFDP_TABLE& table) {
    FUZZ_REQUIRE(!table.erase_types.empty() && table.erase_types.size() <= 4);
    for (const SFDP_ERASE_TYPE& type : table.erase_types) {
        FUZZ_REQUIRE(type.size >= table.page_bytes && table.density_bits % (8ULL * type.size) == 0);
        FUZZ_REQUIRE(type.opcode != 0x00 && type.opcode != 0xFF);
        FUZZ_REQUIRE(type.typ_ms.has_value() == (table.bfpt.dwords >= 10));
        FUZZ_REQUIRE(type.max_ms.value_or(0) <= 1024000);
    }
}

void require_sound(const SFDP_TABLE& table, size_t size) {
    FUZZ_REQUIRE(table.density_bits >= 65536 && table.density_bits <= 4294967296ULL);
    FUZZ_REQUIRE(table.bfpt.offset + 4 * size_t{table.bfpt.dwords} <= size);
    FUZZ_REQUIRE(table.page_bytes > 1 && table.page_bytes <= 32768);
    require_erases(table);
    for (const SFDP_FAST_READ& read : table.fast_reads)
        FUZZ_REQUIRE(read.opcode != 0x00 && read.opcode != 0xFF);
    if (table.four_byte_table)
        FUZZ_REQUIRE(table.four_byte_table->erase.size() <= table.erase_types.size());
}

void decode(const IMAGE& image) {
    const SFDP_RESULT result = sfdp_decode(image);
    if (const auto* refusal = std::get_if<SFDP_REFUSAL>(&result)) {
        FUZZ_REQUIRE(refusal->offset <= image.size() && !refusal->reason.empty());
        return;
    }
    const auto& table = std::get<SFDP_TABLE>(result);
    require_sound(table, image.size());
    IMAGE longer = image;
    longer.insert(longer.end(), 64, 0xFF);
    const SFDP_RESULT again = sfdp_decode(longer);
    const auto* same = std::get_if<SFDP_TABLE>(&again);
    FUZZ_REQUIRE(same && same->density_bits == table.density_bits &&
                 same->erase_types.size() == table.erase_types.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > LARGEST_INPUT)
        return 0;
    decode(IMAGE(data, data + size));
    const std::string text(reinterpret_cast<const char*>(data), size);
    const SFDP_INPUT input = sfdp_read_dump(text);
    if (const auto* error = std::get_if<SFDP_INPUT_ERROR>(&input)) {
        FUZZ_REQUIRE(error->line >= 1 && !error->reason.empty());
        return 0;
    }
    const auto& image = std::get<IMAGE>(input);
    FUZZ_REQUIRE(image.size() <= LARGEST_IMAGE);
    decode(image);
    return 0;
}
