// What tests of a stored definition start from: the setting, a version, a good definition and its record.
#ifndef TESTS_SUPPORT_EXTERNAL_FLASH_H
#define TESTS_SUPPORT_EXTERNAL_FLASH_H

#include "definition_model.h"
#include "fixtures.h"
#include "flash_model.h"
#include "tovren_flash_manager.h"

#include <gtest/gtest.h>

// The version text under which the fixture runs.
inline constexpr char EXTERNAL_VERSION_TEXT[] = "Morvath Version: 7.1.0 SP2 Build 345";

// "definition#tag;" under that version.
std::string entry_of(const std::string& definition);
std::string entry_of(const DEFINITION& definition);

// The record that DEFINITION stands for.
TOVREN_SFL_FLASH_INFO record_of_definition();

class EXTERNAL_FLASH_TEST : public FLASH_TEST {
protected:
    EXTERNAL_FLASH_TEST();
    ~EXTERNAL_FLASH_TEST() override;

    static void store_text(const std::string& text); // as it is
    static void store(const std::string& list);      // encoded by the model
    static void switch_debug_on();

    // Applies the stored text to a manager whose record is not empty. Gives what is printed.
    std::string apply();
    std::string apply(const std::string& list);

    // Whether a definition with its right tag is applied, silently in any case.
    bool is_applied(const DEFINITION& definition);

    TOVREN_FLASH_MANAGER manager{false, 0, true, false};
};

#endif
