// Expands the world of parts, from data/catalogue and data/naming, into everything that is compiled in or installed of
// it: the catalogue tables, the naming maps, the ordering list, the part list and two plain lists.
//
//     tovren_world_gen DATA_FOLDER OUTPUT_FOLDER
//
// writes h/pgmddb_{grammar,opn}_data.h, pgm/tovren/pgmddb_{grammar,opn}_data.cpp,
// standalone/tovren_catalogue_tables.cpp and catalogue/{pgm_parts,catalogue_families,catalogue_pcf_records}.txt. The
// same input gives the same bytes. With a fault in the description nothing is written, every fault is told on standard
// error as "file:line: reason", and the exit status is 3; wrong usage ends with 2.
#include "world_blob.h"
#include "world_maps.h"
#include "world_tables.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace {

struct OUTPUT {
    std::string name;
    std::string text;
};

void add_blob(std::vector<OUTPUT>& outputs, const std::string& file, const std::string& name, const WORLD_IMAGE& image,
              WORLD_FAULTS& faults) {
    const std::vector<std::uint8_t> stream = compress_image(image);
    if (stream.empty())
        faults.add({file, 0}, "zlib does not give back what it compressed");
    outputs.push_back({"h/" + file + ".h", blob_header_text(name)});
    outputs.push_back({"pgm/tovren/" + file + ".cpp", blob_source_text(name, file + ".h", image, stream)});
}

std::vector<OUTPUT> make_outputs(const WORLD& world, const WORLD_MAPS& maps, WORLD_FAULTS& faults) {
    std::vector<OUTPUT> outputs;
    add_blob(outputs, "pgmddb_grammar_data", "PGMDDB_GRAMMAR", make_grammar_image(maps), faults);
    add_blob(outputs, "pgmddb_opn_data", "PGMDDB_OPN", make_ordering_image(world.ordering_list), faults);
    outputs.push_back({"standalone/tovren_catalogue_tables.cpp", catalogue_tables_text(world, faults)});
    outputs.push_back({"catalogue/pgm_parts.txt", part_list_text(world)});
    outputs.push_back({"catalogue/catalogue_families.txt", family_list_text(world)});
    outputs.push_back({"catalogue/catalogue_pcf_records.txt", pcf_record_list_text(world)});
    return outputs;
}

// Under another name first, so that a broken run leaves no half file behind.
void write_output(const std::filesystem::path& folder, const OUTPUT& output, WORLD_FAULTS& faults) {
    const std::filesystem::path path = folder / output.name;
    const std::filesystem::path draft = path.string() + ".new";
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream stream(draft, std::ios::binary);
    stream << output.text;
    stream.close();
    if (stream)
        std::filesystem::rename(draft, path, error);
    if (!stream || error)
        faults.add({path.string(), 0}, "cannot be written");
}

std::vector<OUTPUT> expand(const std::string& data, WORLD_FAULTS& faults) {
    const WORLD_SCHEME scheme = read_world_scheme(data + "/naming/scheme.txt", faults);
    const WORLD_DESCRIPTION description = read_world_description(data + "/catalogue/world.txt", scheme, faults);
    if (faults.any())
        return {};
    const WORLD world = expand_world(description, faults);
    const WORLD_MAPS maps = make_world_maps(world);
    check_world_maps(maps, faults);
    check_world_shape(world, maps, data + "/catalogue/shape.txt", faults);
    return make_outputs(world, maps, faults);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: tovren_world_gen DATA_FOLDER OUTPUT_FOLDER\n");
        return 2;
    }
    WORLD_FAULTS faults;
    const std::vector<OUTPUT> outputs = expand(arguments[1], faults);
    if (!faults.any())
        for (const OUTPUT& output : outputs)
            write_output(arguments[2], output, faults);
    faults.print();
    return faults.any() ? 3 : 0;
}
