// Advice over a refused database file.
#include "tool_database.h"

#include "host_fio.h"
#include "tool_text.h"

#include <fstream>

const TOOL_DATABASE TOOL_FLASH_DATABASE = {"flash", "PGMIO_FM", "device", "PGMIO_DM", "programmer/pgm_flash.pcf"};
const TOOL_DATABASE TOOL_DEVICE_DATABASE = {"device", "PGMIO_DM", "flash", "PGMIO_FM", "programmer/pgm_dev_info.pcf"};

namespace {

bool has(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

std::string with_path(const TOOL_DATABASE& database, const std::string& fault) {
    return tool_printable(tool_database_path(database)) + ": " + fault;
}

std::string generate_step(const TOOL_DATABASE& database) {
    return std::string("`tovren ") + database.kind + " generate CSV " + tool_printable(tool_database_path(database)) +
           '`';
}

TOOL_ADVICE for_missing_file(const TOOL_DATABASE& database) {
    const std::string fault = tool_reading_fault(tool_database_path(database));
    return {with_path(database, fault.empty() ? "it is not a regular file" : fault),
            {},
            {std::string("name the folder that holds ") + database.file + " with --db-root DIR,",
             "or write the file with " + generate_step(database)}};
}

TOOL_ADVICE for_unreadable_file(const TOOL_DATABASE& database) {
    const std::string fault = tool_reading_fault(tool_database_path(database));
    return {with_path(database, fault.empty() ? "it cannot be read" : fault),
            {},
            {"make it readable, or name another folder with --db-root DIR"}};
}

TOOL_ADVICE for_magic(const TOOL_DATABASE& database) {
    std::string magic(8, '\0');
    std::ifstream(tool_database_path(database), std::ios::binary).read(magic.data(), 8);
    const std::string kind = std::string(database.kind) + " database";
    return tool_advice_to_generate(database,
                                   magic == database.other_magic
                                       ? std::string("it is a ") + database.other_kind + " database, not a " + kind
                                       : "it is no " + kind + ": it does not begin with \"" + database.magic + '"');
}

} // namespace

std::string tool_database_path(const TOOL_DATABASE& database) {
    return gen_get_device_db_fullpath() + '/' + database.file;
}

TOOL_ADVICE tool_advice_to_generate(const TOOL_DATABASE& database, const std::string& fault) {
    return {with_path(database, fault), {}, {"write it anew with " + generate_step(database)}};
}

TOOL_ADVICE tool_database_advice(const TOOL_DATABASE& database, const std::string& condition) {
    if (has(condition, "FIO_FILE_SYSTEM::exists"))
        return for_missing_file(database);
    if (condition == "input.good()")
        return for_unreadable_file(database);
    if (has(condition, "data[index++] == 'P'"))
        return for_magic(database);
    if (condition == "Mismatch ID between flash file and reader")
        return tool_advice_to_generate(database,
                                       "it was generated for another build, whose description is not this build's");
    if (has(condition, "Mismatch version between"))
        return tool_advice_to_generate(database, "its format is of a version that this build does not read");
    if (has(condition, "file_size > "))
        return tool_advice_to_generate(database, "it is too short for a database; it may have been cut");
    if (has(condition, "DEV_PART_MAX") || has(condition, "get_table_size"))
        return tool_advice_to_generate(database, "its tables are not of this host's device catalogue");
    return tool_advice_to_generate(database, "it is damaged");
}
