// What tests of the device database start from: a device-database root and a product root of their own.
#ifndef TESTS_SUPPORT_DEVICE_FIXTURES_H
#define TESTS_SUPPORT_DEVICE_FIXTURES_H

#include "device_model.h"
#include "fixtures.h"
#include "report.h"
#include "tovren_dev_info_manager.h"

#include <memory>
#include <string>

inline constexpr char IN_DEVICE_MANAGER[] = "pgm/tovren/tovren_dev_info_manager.cpp";
inline constexpr char IN_DEVICE_GENERATE[] = "pgm/tovren/tovren_dev_info_manager_generate.cpp";
inline constexpr char IN_DEVICE_EXPORT[] = "pgm/tovren/tovren_dev_info_manager_auto_export.cpp";

class DEVICE_TEST : public HOST_TEST {
protected:
    using MANAGER = std::unique_ptr<TOVREN_DEV_INFO_MANAGER>;

    DEVICE_TEST();
    ~DEVICE_TEST() override;

    // A manager that has loaded these bytes.
    MANAGER load(const BYTES& file, unsigned int debug_mode = 0) const;
    MANAGER load(const DEVICE_DATABASE& file, unsigned int debug_mode = 0) const {
        return load(file.bytes(), debug_mode);
    }

    // One that has loaded nothing.
    static MANAGER make_generator() { return std::make_unique<TOVREN_DEV_INFO_MANAGER>(true, 0); }

    // h/pgm_parts.txt under the product root.
    void put_part_list(const std::string& text) const { write_text(part_list, text); }

    std::string database;  // path of programmer/pgm_dev_info.pcf under the root
    std::string part_list; // path of h/pgm_parts.txt; there is none at first
};

#endif
