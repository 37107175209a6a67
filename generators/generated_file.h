// Files that the generators write.
#ifndef GENERATED_FILE_H
#define GENERATED_FILE_H

#include <filesystem>
#include <string>

// Makes its folder too. Throws std::runtime_error where it cannot be written.
void write_generated_file(const std::filesystem::path& path, const std::string& text);

#endif
