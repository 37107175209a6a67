// Flash parameter file. An input is the whole file.
// Always: no report. Accepted: a section is what its entry of the table says, the file ends with the last one, and the
// flashes that a manager lists are those that the section spells, up to what is cut short at its end.
#include "fuzz_support.h"
#include "tovren_hps_mgr.h"
#include "tovren_standalone_host.h"

#include <cstring>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr size_t LARGEST_INPUT = size_t{1} << 16;

using BYTES = std::span<const unsigned char>;

// A module folder whose parameter file is a file in memory.
class MODULE_FOLDER {
public:
    MODULE_FOLDER() : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
        FUZZ_REQUIRE(m_descriptor >= 0 && mkdtemp(m_folder) != nullptr);
        const std::string target = "/proc/self/fd/" + std::to_string(m_descriptor);
        FUZZ_REQUIRE(symlink(target.c_str(), file().c_str()) == 0);
        TOVREN_STANDALONE_HOST::set_module_path(m_folder);
    }
    ~MODULE_FOLDER() {
        unlink(file().c_str());
        rmdir(m_folder);
        close(m_descriptor);
    }
    MODULE_FOLDER(const MODULE_FOLDER&) = delete;
    MODULE_FOLDER& operator=(const MODULE_FOLDER&) = delete;

    void put(BYTES bytes) const {
        FUZZ_REQUIRE(ftruncate(m_descriptor, 0) == 0);
        FUZZ_REQUIRE(pwrite(m_descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    }

private:
    std::string file() const { return std::string(m_folder) + "/pgm_flash.ini"; }

    char m_folder[32] = "/tmp/tovren_fuzz_XXXXXX";
    int m_descriptor;
};

size_t number_at(BYTES file, size_t position) {
    FUZZ_REQUIRE(position + 4 <= file.size());
    return file[position] | static_cast<size_t>(file[position + 1]) << 8 |
           static_cast<size_t>(file[position + 2]) << 16 | static_cast<size_t>(file[position + 3]) << 24;
}

// The section's bytes as the library reads them, which the table must confirm.
std::vector<unsigned char> read_section(BYTES file, unsigned int section) {
    unsigned int size = 1;
    const std::unique_ptr<unsigned char[]> data(
        TOVREN_FLASH_INI::read_flash_ini_data(static_cast<TOVREN_FLASH_INI_ENUM>(section), size));
    FUZZ_REQUIRE((data == nullptr) == (size == 0));
    if (!data)
        return {};

    const size_t count = number_at(file, 16);
    FUZZ_REQUIRE(section < count && size == number_at(file, 24 + 8 * section));
    const size_t offset = number_at(file, 20 + 8 * section);
    FUZZ_REQUIRE(offset + size <= file.size() && std::memcmp(data.get(), file.data() + offset, size) == 0);
    size_t end = 20 + 8 * count;
    for (size_t i = 0; i < count; ++i)
        end += number_at(file, 24 + 8 * i);
    FUZZ_REQUIRE(end == file.size());
    return {data.get(), data.get() + size};
}

template <typename MANAGER>
void require_spelled(const std::vector<unsigned char>& section, const std::vector<TOVREN_PARAM_TYPE>& types,
                     size_t built_in_count) {
    MANAGER::delete_mgr();
    const MANAGER& manager = *MANAGER::get_mgr();
    FUZZ_REQUIRE(manager.m_flash_list.size() == manager.m_user_flash_list.size() + built_in_count);
    unsigned int end = 32;
    for (const auto* flash : manager.m_user_flash_list) {
        for (size_t i = 0; i < types.size(); ++i) {
            const unsigned int begin = end;
            TOVREN_FLASH_INI::calculate_flash_ini_data_size(end, types[i], flash->m_params[i]);
            FUZZ_REQUIRE(end <= section.size());
            std::vector<unsigned char> bytes(end - begin);
            unsigned int index = 0;
            TOVREN_FLASH_INI::fillup_flash_ini_data(bytes.data(), index, types[i], flash->m_params[i]);
            FUZZ_REQUIRE(types[i] == TOVREN_PARAM_BOOL ? (bytes[0] != 0) == (section[begin] != 0)
                                                       : std::memcmp(&bytes[0], &section[begin], bytes.size()) == 0);
        }
    }
}

void run(BYTES file) {
    static const MODULE_FOLDER folder;
    folder.put(file);
    read_section(file, 0);
    require_spelled<TOVREN_HPS_SPI_MGR>(read_section(file, 1), TOVREN_HPS_SPI_PARAM_TYPE_LIST,
                                        TOVREN_HPS_SPI_DATABASE.size());
    require_spelled<TOVREN_HPS_NAND_MGR>(read_section(file, 2), TOVREN_HPS_NAND_PARAM_TYPE_LIST,
                                         TOVREN_HPS_NAND_DATABASE.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size <= LARGEST_INPUT)
        FUZZ_REQUIRE(fuzz_is_accepted([&] { run({data, size}); }));
    return 0;
}
