// Says which flash answers the identification bytes given as hexadecimal digits: identify 20BA18
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <charconv>
#include <cstdio>
#include <string_view>

namespace {

// A record may compare any byte that a one-byte index reaches.
constexpr size_t ANSWER_SIZE = 256;

// The digits of at least three bytes, two a byte.
bool read_answer(std::string_view digits, unsigned char (&answer)[ANSWER_SIZE]) {
    if (digits.size() < 6 || digits.size() % 2 != 0 || digits.size() / 2 > ANSWER_SIZE)
        return false;
    for (size_t i = 0; i < digits.size(); i += 2) {
        const char* const end = digits.data() + i + 2;
        const auto result = std::from_chars(digits.data() + i, end, answer[i / 2], 16);
        if (result.ec != std::errc() || result.ptr != end)
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    unsigned char answer[ANSWER_SIZE] = {};
    if (argc != 2 || !read_answer(argv[1], answer)) {
        std::fputs("usage: identify BYTES, for example: identify 20BA18\n", stderr);
        return 2;
    }

    TOVREN_STANDALONE_HOST::set_device_db_root(DB_ROOT);
    TOVREN_FLASH_MANAGER flashes(false, 1, false, false); // a chain of one device
    if (!flashes.flash_id_database_mapping(false, 0, answer)) {
        std::puts("no flash answers that");
        return 1;
    }

    const TOVREN_SFL_FLASH_INFO& flash = *flashes.get_flash(flashes.get_flash_mapping_index(0, false));
    std::printf("%s %s, %u bit, sectors of %u byte, a page takes %u us at most\n", flash.manufacturer_name.c_str(),
                flash.device_name.c_str(), flash.device_bit_size, flash.device_sector_byte, flash.program_utime);
    return 0;
}
