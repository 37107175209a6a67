#include "device_fixtures.h"

#include "tovren_standalone_host.h"

#include <filesystem>

DEVICE_TEST::DEVICE_TEST()
    : database(folder.path("programmer/pgm_dev_info.pcf")), part_list(folder.path("h/pgm_parts.txt")) {
    std::filesystem::create_directory(folder.path("programmer"));
    std::filesystem::create_directory(folder.path("h"));
    TOVREN_STANDALONE_HOST::set_device_db_root(folder.path());
    TOVREN_STANDALONE_HOST::set_product_root(folder.path());
}

DEVICE_TEST::~DEVICE_TEST() {
    TOVREN_STANDALONE_HOST::set_product_root("");
}

DEVICE_TEST::MANAGER DEVICE_TEST::load(const BYTES& file, unsigned int debug_mode) const {
    write_file(database, file);
    return std::make_unique<TOVREN_DEV_INFO_MANAGER>(false, debug_mode);
}
