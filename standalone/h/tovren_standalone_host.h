// The standalone host: what lets the library run without the programming tool. A program links it beside the library
// and sets it up here; everything has a default, so nothing of this need be called.
//
// All state is the process's. Threads: none.
#ifndef TOVREN_STANDALONE_HOST_H
#define TOVREN_STANDALONE_HOST_H

#include <functional>
#include <string>
#include <vector>

class TOVREN_STANDALONE_HOST {
public:
    // ---- internal errors ----

    // Takes the four arguments of a report. It should not return; if it does, the default follows.
    using REPORT_HANDLER = std::function<void(const char* expression, const char* prefix, const char* file, int line)>;

    // Replaces the default, which prints "internal error: EXPRESSION (FILE:LINE)" on standard error and ends the
    // process with exit code 70. An empty handler brings the default back.
    static void set_report_handler(REPORT_HANDLER handler);

    static constexpr int INTERNAL_ERROR_EXIT_CODE = 70;

    // ---- debug messages ----

    // Messages up to this level go to standard error, a line each. None are shown at first.
    static void set_debug_level(int level);

    // ---- settings ----

    // Settings come from a file of `name = value` lines: $TOVREN_SETTINGS, or $XDG_CONFIG_HOME/tovren/settings.ini
    // ($HOME/.config where the variable is not set). It is read when the first setting is asked for. A malformed line
    // is named on standard error and skipped.

    // Reads this file instead. False when it cannot be read; there are no settings from a file then.
    static bool set_settings_file(const std::string& path);

    // The file that settings are read from, whether or not it exists.
    static std::string get_settings_file();

    // Overrides the file's value.
    static void set_setting(const std::string& name, const std::string& value);

    // Puts the setting into the file: as the value of the last line that sets it, else as a new last line. Everything
    // else in the file stays as it is. A missing file and its folder are made; the file is replaced in one step.
    // Overrides are not written. Returns why it cannot be done, empty when it is.
    static std::string store_setting(const std::string& name, const std::string& value);

    // Takes out every line of the file that sets it; `count` receives how many. Returns as above.
    static std::string remove_setting(const std::string& name, unsigned int& count);

    // Forgets the overrides and the file; the next question reads the default file again.
    static void reset_settings();

    // ---- places ----

    // The folder that holds programmer/pgm_flash.pcf. Default: $TOVREN_DB_ROOT, else share/tovren/db beside the
    // program's bin folder where there is one, else that of the installation, else that of the system's packages,
    // /usr/share/tovren/db. An empty text brings the default back.
    static void set_device_db_root(const std::string& folder);

    // The folder that holds pgm_flash.ini. Default: $TOVREN_MODULE_PATH, else the setting TOVREN_MODULE_PATH, else the
    // folder of the running program. An empty text brings the default back.
    static void set_module_path(const std::string& folder);

    // The product's root, which holds h/pgm_parts.txt. Default: $TOVREN_PRODUCT_ROOT, else share/tovren as above.
    static void set_product_root(const std::string& folder);

    // ---- version ----

    // The version that the host gives instead of the project's own. A service pack has 8 bits, a build 16. Without a
    // call $TOVREN_VERSION_TEXT, else the setting TOVREN_VERSION_TEXT, replaces the text alone.
    static void set_version(const std::string& text, unsigned int service_pack, unsigned int build);

    // Brings the project's version back.
    static void reset_version();

    // ---- memory tracker ----

    // The names of the libraries that are registered now, in order of registration.
    static std::vector<std::string> get_registered_prefixes();
};

#endif
