// One run of a command.
#include "tool_run.h"

#include "tool_command_line.h"
#include "tool_complete.h"
#include "tool_error.h"
#include "tool_flash_database.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_standalone_host.h"

#include "host_fio.h"
#include "host_text.h"

#include <cstdlib>

namespace {

constexpr unsigned int MOST_DETAILED_DEBUG_LEVEL = 3;

[[noreturn]] void throw_report(const char* condition, const char* prefix, const char* file, int line) {
    throw TOOL_REPORT(condition, prefix, file, line);
}

void apply_setting(const std::string& text) {
    const size_t sign = text.find('=');
    std::string name = text.substr(0, sign);
    gen_remove_leading_and_trailing_white_spaces(name);
    if (sign == std::string::npos || name.empty())
        throw tool_usage_error("", "--set: " + tool_quoted(text) + " is not of the form NAME=VALUE");
    std::string value = text.substr(sign + 1);
    gen_remove_leading_and_trailing_white_spaces(value);
    TOVREN_STANDALONE_HOST::set_setting(name, value);
}

// `origin` names the file. A verb that makes the file takes one that is missing.
void apply_settings_file(const char* origin, const std::string& file, bool may_be_missing) {
    if (TOVREN_STANDALONE_HOST::set_settings_file(file))
        return;
    if (file.empty() || !may_be_missing || FIO_FILE_SYSTEM::exists(file.c_str()))
        throw tool_usage_error("", std::string(origin) + ": " + tool_quoted(file) + " cannot be read");
}

void apply_settings(const TOOL_GLOBALS& globals) {
    const char* const named = std::getenv("TOVREN_SETTINGS");
    if (globals.settings)
        apply_settings_file("--settings", *globals.settings, globals.is_settings_file_made);
    else if (named && *named != '\0')
        apply_settings_file("$TOVREN_SETTINGS", named, globals.is_settings_file_made);
    for (const std::string& setting : globals.set)
        apply_setting(setting);
}

void apply_debug_level(const std::string& text) {
    const auto level = tool_number(text, MOST_DETAILED_DEBUG_LEVEL);
    if (!level)
        throw tool_usage_error("", "--debug: " + tool_quoted(text) + " is not a level from 0 to 3");
    TOVREN_STANDALONE_HOST::set_debug_level(static_cast<int>(*level));
    tool_set_printing_records(*level == MOST_DETAILED_DEBUG_LEVEL);
}

void apply_globals(const TOOL_GLOBALS& globals) {
    if (globals.db_root && globals.db_root->empty())
        throw tool_usage_error("", "--db-root: the folder's name is empty");
    if (globals.db_root)
        TOVREN_STANDALONE_HOST::set_device_db_root(*globals.db_root);
    apply_settings(globals);
    if (globals.debug)
        apply_debug_level(*globals.debug);
}

int run(int argc, char** argv, TOOL_ADD_GROUPS add_groups) {
    TOOL_COMMAND_LINE line(TOVREN_VERSION);
    const bool is_completion = tool_is_completion(argc, argv);
    if (!is_completion)
        line.expect(argc, argv);
    add_groups(line);
    if (is_completion)
        return tool_complete(line, argc, argv);
    const TOOL_ACTION* action = line.parse(argc, argv);
    if (!action)
        return TOOL_EXIT_DONE;
    apply_globals(line.globals());
    const int exit_code = (*action)(TOOL_OUTPUT(line.globals().is_json));
    tool_confirm_output();
    return exit_code;
}

int complain(const TOOL_ERROR& error) {
    if (*error.what() != '\0')
        tool_complain(error.what());
    for (const std::string& detail : error.details())
        tool_note("  " + detail);
    return error.exit_code();
}

int complain(const TOOL_REPORT& report) {
    tool_note("internal error: " + report.condition() + " (" + report.file() + ':' + std::to_string(report.line()) +
              ')');
    return TOOL_EXIT_INTERNAL;
}

} // namespace

int tool_run(int argc, char** argv, TOOL_ADD_GROUPS add_groups) {
    tool_open_standard_files();
    TOVREN_STANDALONE_HOST::set_report_handler(throw_report);
    try {
        return run(argc, argv, add_groups);
    } catch (const TOOL_ERROR& error) {
        return complain(error);
    } catch (const TOOL_REPORT& report) {
        return complain(report);
    } catch (const std::exception& error) {
        tool_note(std::string("internal error: ") + error.what());
        return TOOL_EXIT_INTERNAL;
    }
}
