// The tovren command.
#include "tovren_flash_manager.h"

#include <CLI/CLI.hpp>

int main(int argc, char** argv) {
    CLI::App app("Knowledge of programmable logic devices and their serial flashes", "tovren");
    app.set_version_flag("--version", TOVREN_VERSION);
    std::string csv;
    std::string output;
    CLI::App* flash = app.add_subcommand("flash", "Flash memories")->require_subcommand(1);
    CLI::App* generate = flash->add_subcommand("generate", "Write the flash database from its CSV description");
    generate->add_option("CSV", csv)->required();
    generate->add_option("OUT", output)->required();
    generate->callback([&] { TOVREN_FLASH_MANAGER(false, 0, true, false).generate_flash_database(csv, output); });
    CLI11_PARSE(app, argc, argv);
    return 0;
}
