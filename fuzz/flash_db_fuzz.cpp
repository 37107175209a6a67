// Flash database. An input that begins with the magic is a whole file, of which only the MD5 text is made to fit this
// build; any other input is the payload of a file whose envelope is in order.
// Accepted: whatever was loaded is complete, and each record is found by its own identification.
#include "fuzz_support.h"
#include "tovren_flash_manager.h"

#include <algorithm>

namespace {

constexpr size_t LARGEST_INPUT = size_t{1} << 20;
constexpr std::string_view MAGIC = "PGMIO_FM";

std::vector<unsigned char> make_file(std::span<const unsigned char> input) {
    if (input.size() < MAGIC.size() || !std::equal(MAGIC.begin(), MAGIC.end(), input.begin()))
        return fuzz_database_file(MAGIC, TOVREN_FLASH_INFO_CSV_MD5, input);
    std::vector<unsigned char> file(input.begin(), input.end());
    const std::string& md5 = TOVREN_FLASH_INFO_CSV_MD5;
    std::copy_n(md5.begin(), std::min(md5.size(), file.size() - MAGIC.size()), file.begin() + MAGIC.size());
    return file;
}

void require_found_by_its_answer(const TOVREN_FLASH_MANAGER& flashes, unsigned int index) {
    const TOVREN_SFL_FLASH_INFO& flash = *flashes.get_flash(index);
    unsigned char answer[256] = {};
    if (flash.memory_type_index != 0xFF)
        answer[flash.memory_type_index] = flash.memory_type;
    if (!flash.silicon_id)
        answer[flash.mfc_id_index] = flash.mfc_id;
    answer[flash.memory_id_index] = flash.memory_id;
    // Indexes that fall together may ask for two values of one byte: no answer has both.
    const bool has_type = flash.memory_type_index == 0xFF || answer[flash.memory_type_index] == flash.memory_type;
    if (!flash.silicon_id && !(has_type && answer[flash.mfc_id_index] == flash.mfc_id))
        return;
    const auto matches = flashes.get_matching_flashes(flash.silicon_id, answer, sizeof answer);
    FUZZ_REQUIRE(std::find(matches.begin(), matches.end(), index) != matches.end());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > LARGEST_INPUT)
        return 0;
    const FUZZ_FILE file(make_file({data, size}));
    TOVREN_FLASH_MANAGER flashes(false, 1, true, false);
    if (!fuzz_is_accepted([&] { flashes.initialize_flash_database(file.path()); }))
        return 0;

    FUZZ_REQUIRE(flashes.m_flash_count <= TOVREN_FLASH_MANAGER::get_all_flashes(file.path()).size());
    FUZZ_REQUIRE(flashes.get_flash(flashes.m_flash_count) == nullptr);
    for (unsigned int i = 0; i < flashes.m_flash_count; ++i) {
        FUZZ_REQUIRE(flashes.enable_device(i));
        require_found_by_its_answer(flashes, i);
    }
    return 0;
}
