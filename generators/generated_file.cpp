#include "generated_file.h"

#include <fstream>
#include <stdexcept>

void write_generated_file(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    out << text;
    out.close();
    if (!out)
        throw std::runtime_error(path.string() + ": cannot be written");
}
