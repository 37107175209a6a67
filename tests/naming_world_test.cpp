// The library against the plain model, over the compiled-in tables and the whole catalogue; and what becomes of the
// tables when a byte of them is wrong.
//
// Some walks take a step of more than one; with TOVREN_TEST_EVERYTHING set in the environment they take all. The build
// gives the step of the walks over all names, TOVREN_NAME_STEP.
#include "host_dev.h"
#include "naming_fixture.h"
#include "pgmddb_grammar_data.h"
#include "pgmddb_opn_data.h"
#include "report.h"
#include "tovren_catalogue_tables.h"
#include "tovren_device_grammar_mgr.h"
#include "tovren_mgr.h"
#include "world_model.h"

#include <algorithm>
#include <cstdlib>
#include <openssl/evp.h>
#include <set>
#include <zlib.h>

namespace {

using GRAMMAR = TOVREN_DEVICE_GRAMMAR_MGR;

const WORLD_MODEL& world() {
    static const WORLD_MODEL model;
    return model;
}

size_t step(size_t usual) {
    return std::getenv("TOVREN_TEST_EVERYTHING") != nullptr ? 1 : usual;
}

// Every key and content of every map, the names of the catalogue, and two that are unknown.
std::vector<std::string> all_names() {
    std::set<std::string> names = {"", "NO SUCH NAME"};
    for (const WORLD_NAME_MAP& map : world().maps) {
        for (const auto& [key, contents] : map) {
            names.insert(key);
            names.insert(contents.begin(), contents.end());
        }
    }
    for (const TOVREN_CATALOGUE_PART& part : tovren_catalogue_parts())
        names.emplace(tovren_catalogue_text(part.name));
    for (const TOVREN_CATALOGUE_DEVICE& device : TOVREN_CATALOGUE_DEVICES)
        names.emplace(tovren_catalogue_text(device.name));
    return {names.begin(), names.end()};
}

std::vector<std::string> walked_names() {
    const std::vector<std::string> all = all_names();
    std::vector<std::string> names;
    for (size_t place = 0; place < all.size(); place += step(TOVREN_NAME_STEP))
        names.push_back(all[place]);
    return names;
}

std::vector<std::string> part_names() {
    std::vector<std::string> names;
    for (const TOVREN_CATALOGUE_PART& part : tovren_catalogue_parts().subspan(1, tovren_catalogue_parts().size() - 2))
        names.emplace_back(tovren_catalogue_text(part.name));
    return names;
}

// The same name as a careless user types it.
std::string typed(const std::string& name) {
    std::string text = "\t " + name + "  ";
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return tolower(c); });
    return text;
}

// ---- the rules once more, over the model's maps ----

std::string direct_pgm_name(const std::string& name) {
    return world().key_of(1, name);
}

std::string pgm_name_or_nothing(const std::string& name) {
    const std::string direct = direct_pgm_name(name);
    return direct.empty() ? direct_pgm_name(world().key_of(0, name)) : direct;
}

std::string family_of(const std::string& name) {
    for (const std::string& file : {name, world().key_of(2, name), world().key_of(4, name)})
        if (!file.empty() && (file != name || !world().key_of(7, name).empty()))
            return world().key_of(7, file);
    return "";
}

bool uses_package_name(const std::string& name) {
    const std::string package = world().package_name(name);
    return package == direct_pgm_name(package);
}

bool uses_full_name(const std::string& name) {
    const std::string package = world().key_of(0, name);
    return !name.empty() && name == package && package == pgm_name_or_nothing(package);
}

std::string first_device_of(const std::string& file) {
    const auto place = world().maps[4].find(file);
    return place == world().maps[4].end() ? "" : place->second.front();
}

// ---- maps and list ----

TEST(NamingWorld, HoldsTheModelsMaps) {
    for (unsigned int map = 0; map < GRAMMAR::MAP_COUNT; ++map) {
        WORLD_NAME_MAP seen;
        std::vector<std::string> keys;
        GRAMMAR::visit_map(map, [&](const std::string& key, const std::vector<std::string>& contents) {
            seen[key] = contents;
            keys.push_back(key);
        });
        EXPECT_EQ(world().maps[map], seen) << map;
        EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
        EXPECT_EQ(world().maps[map].size(), keys.size());
    }
}

TEST(NamingWorld, HoldsTheModelsOrderingList) {
    const auto count = static_cast<unsigned int>(world().ordering.size());
    EXPECT_EQ(18830U, count);
    for (unsigned int index = 0; index < count; ++index)
        ASSERT_EQ(world().ordering[index], TOVREN_DDB_OPN_MGR::get_dev_opn_enum(index)) << index;
    EXPECT_EQ(0xFFFFFFFFU, TOVREN_DDB_OPN_MGR::get_dev_opn_enum(count));
}

// ---- names ----

TEST(NamingWorld, PackageAndProgrammerNamesAgreeWithTheModel) {
    for (const std::string& name : walked_names()) {
        const std::string package = world().key_of(0, name);
        const std::string pgm = pgm_name_or_nothing(name);
        ASSERT_EQ(package, GRAMMAR::get_package_name(typed(name), true)) << name;
        ASSERT_EQ(package.empty() ? name : package, GRAMMAR::get_package_name(typed(name), false)) << name;
        ASSERT_EQ(pgm, GRAMMAR::get_pgm_name(typed(name), false, true)) << name;
        ASSERT_EQ(pgm.empty() ? name : pgm, GRAMMAR::get_pgm_name(typed(name), false, false)) << name;
        ASSERT_EQ(direct_pgm_name(name), GRAMMAR::get_pgm_name(typed(name), true, true)) << name;
    }
}

TEST(NamingWorld, FilesAgreeWithTheModel) {
    for (const std::string& name : walked_names()) {
        const std::string pgm = world().pgm_name(name);
        std::string part_pcf;
        std::string family_pcf;
        GRAMMAR::get_pgm_pcfs(typed(name), part_pcf, family_pcf);
        ASSERT_EQ(world().key_of(2, pgm), part_pcf) << name;
        ASSERT_EQ(world().key_of(3, pgm), family_pcf) << name;
        GRAMMAR::get_dev_pcfs(typed(name), part_pcf, family_pcf);
        ASSERT_EQ(world().key_of(4, name), part_pcf) << name;
        ASSERT_EQ(world().key_of(5, name), family_pcf) << name;
        ASSERT_EQ(world().key_of(6, name), GRAMMAR::get_pcf_family_pcf(typed(name))) << name;
        ASSERT_EQ(first_device_of(name), GRAMMAR::get_pcf_device(typed(name))) << name;
    }
}

TEST(NamingWorld, FamiliesAgreeWithTheModel) {
    for (const std::string& name : walked_names())
        ASSERT_EQ(family_of(name), GRAMMAR::get_family(typed(name))) << name;
}

TEST(NamingWorld, TheNamesToUseAgreeWithTheModel) {
    for (const std::string& name : walked_names()) {
        ASSERT_EQ(uses_package_name(name), GRAMMAR::use_package_name(typed(name))) << name;
        ASSERT_EQ(uses_full_name(name), GRAMMAR::use_full_name(typed(name))) << name;
    }
}

TEST(NamingWorld, OffersEveryKnownNameForItself) {
    const std::vector<std::string> names = all_names();
    for (size_t place = 2; place < names.size(); place += step(301)) {
        const std::vector<std::string> near = GRAMMAR::get_near_names(typed(names[place]));
        if (world().key_of(0, names[place]).empty())
            continue; // a name of the catalogue alone
        ASSERT_FALSE(near.empty()) << names[place];
        EXPECT_EQ(names[place], near.front());
        EXPECT_LE(near.size(), 5U);
    }
}

// ---- parts ----

TEST(NamingWorld, OrderingIndexesAgreeWithTheModel) {
    const std::vector<std::string> names = part_names();
    std::vector<unsigned int> index_of(names.size() + 2, 0xFFFFFFFF);
    for (unsigned int index = 0; index < world().ordering.size(); ++index) {
        const unsigned int part = world().ordering[index];
        index_of.at(part) = std::min(index, index_of[part]);
        ASSERT_EQ(part == 0 ? "" : names.at(part - 1), TOVREN_MGR::get_opn(index)) << index;
    }
    for (unsigned int part = 1; part <= names.size(); ++part)
        ASSERT_EQ(index_of[part], TOVREN_MGR::get_opn_enum(names[part - 1])) << names[part - 1];
    EXPECT_EQ(0xFFFFFFFFU, TOVREN_MGR::get_opn_enum("GENERIC"));
    EXPECT_EQ("", TOVREN_MGR::get_opn(static_cast<unsigned int>(world().ordering.size())));
}

unsigned long long hash_of(const std::string& name) {
    unsigned char digest[32];
    EXPECT_EQ(1, EVP_Digest(name.data(), name.size(), digest, nullptr, EVP_sha256(), nullptr));
    unsigned long long hash = 0;
    for (int place = 5; place >= 0; --place)
        hash = hash << 8 | digest[place];
    return hash;
}

TEST(NamingWorld, HashesAgreeWithAnotherImplementationAndAreUnique) {
    std::set<unsigned long long> hashes;
    for (const std::string& name : part_names()) {
        ASSERT_EQ(hash_of(name), TOVREN_MGR::get_opn_hash(name)) << name;
        hashes.insert(hash_of(name));
    }
    EXPECT_EQ(part_names().size(), hashes.size());
}

TEST(NamingWorld, FindsPartsByTheirHashes) {
    const std::vector<std::string> names = part_names();
    for (size_t place = 0; place < names.size(); place += step(997))
        EXPECT_EQ(names[place], TOVREN_MGR::get_opn_from_hash(TOVREN_MGR::get_opn_hash(names[place])));
    EXPECT_EQ(names.back(), TOVREN_MGR::get_opn_from_hash(hash_of(names.back())));
    EXPECT_EQ("", TOVREN_MGR::get_opn_from_hash(hash_of("GENERIC")));
}

TEST(NamingWorld, FullNamesAgreeWithTheModel) {
    const std::vector<std::string> names = all_names();
    for (size_t place = 0; place < names.size(); place += step(211))
        EXPECT_EQ(world().full_name(names[place]), TOVREN_MGR::find_possible_full_name(names[place])) << names[place];
}

TEST(NamingWorld, PartsOfPartFilesAgreeWithTheModel) {
    size_t place = 0;
    for (const auto& [file, pgm_names] : world().maps[2]) {
        if (place++ % step(31) == 0) {
            EXPECT_EQ(world().part_of_pcf(file), TOVREN_MGR::get_part_name_from_pcf(file)) << file;
        }
    }
}

// In pass order: in production and numbered, in production, numbered, any.
std::string first_part_of(unsigned int device) {
    for (unsigned int pass = 0; pass < 4; ++pass) {
        for (const TOVREN_CATALOGUE_PART& part : tovren_catalogue_parts()) {
            if (part.device == device && (pass > 1 || part.in_production) &&
                (pass % 2 == 1 || part.has_ordering_number))
                return std::string(tovren_catalogue_text(part.name));
        }
    }
    return "";
}

TEST(NamingWorld, FirstPartsOfDevicesAgreeWithTheModel) {
    for (unsigned int device = 1; device + 1 < DEV_DEVICE_MAX; device += 1) {
        const std::string name(tovren_catalogue_text(TOVREN_CATALOGUE_DEVICES[device].name));
        EXPECT_EQ(first_part_of(device), TOVREN_MGR::get_part_name_from_dev(name)) << name;
    }
}

TEST(NamingWorld, TheGenericDeviceHasNoPart) {
    EXPECT_EQ("", TOVREN_MGR::get_part_name_from_dev("generic"));
}

// ---- a wrong byte ----

// What changing the byte at each place of an image changes in its CRC, by shifting the change through all bits that
// follow it; the CRC of a sum is the sum of the CRCs.
class CRC_CHANGES {
public:
    explicit CRC_CHANGES(size_t size) : m_changes(size) {
        std::array<unsigned int, 8> change_of_bit{};
        for (unsigned int bit = 0; bit < 8; ++bit)
            change_of_bit[bit] = shifted(1U << (bit + 24));
        for (size_t place = size; place-- > 0;) {
            m_changes[place] = change_of_bit;
            for (unsigned int& change : change_of_bit)
                change = shifted(change);
        }
    }

    unsigned int of(size_t place, unsigned char bits) const {
        unsigned int change = 0;
        for (unsigned int bit = 0; bit < 8; ++bit)
            change ^= (bits >> bit & 1) != 0 ? m_changes[place][bit] : 0;
        return change;
    }

private:
    static unsigned int shifted(unsigned int crc) {
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc << 1) ^ ((crc & 0x80000000) != 0 ? 0x04C11DB7 : 0);
        return crc;
    }

    std::vector<std::array<unsigned int, 8>> m_changes;
};

BYTES stored_stream(const BYTES& bytes) {
    uLongf size = compressBound(bytes.size());
    BYTES stream(size);
    EXPECT_EQ(Z_OK, compress2(stream.data(), &size, bytes.data(), bytes.size(), Z_NO_COMPRESSION));
    stream.resize(size);
    return stream;
}

std::string condition_of(const CRC_CHANGES& changes, size_t size, size_t place, unsigned char bits) {
    if (place < 10)
        return "memcmp(data, \"TOVREN_DDB\", 10) == 0";
    const unsigned int wrong =
        place < size - 4 ? changes.of(place, bits) : unsigned{bits} << (8 * (place - (size - 4)));
    return crc_condition(wrong, 0);
}

template <typename MANAGER>
void expect_a_report_for_every_byte(const BYTES& image, size_t stride) {
    const CRC_CHANGES changes(image.size() - 4);
    for (size_t place = 0; place < image.size();) {
        const auto bits = static_cast<unsigned char>(place % 255 + 1);
        const BYTES wrong = with_byte(image, place, static_cast<unsigned char>(image[place] ^ bits));
        const NAMING_TABLE table(stored_stream(wrong), wrong.size());
        EXPECT_REPORT(MANAGER(table.blob()), condition_of(changes, image.size(), place, bits), IN_DDB_MGR) << place;
        place += place < 20 || place + stride + 4 >= image.size() ? 1 : stride;
    }
}

TEST(NamingTables, AWrongByteOfTheGrammarImageIsReported) {
    const BYTES image = inflate_world_image(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH);
    expect_a_report_for_every_byte<TOVREN_DDB_GRAMMAR_MGR>(image, step(1511));
}

TEST(NamingTables, AWrongByteOfTheOrderingImageIsReported) {
    const BYTES image = inflate_world_image(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH);
    expect_a_report_for_every_byte<TOVREN_DDB_OPN_MGR>(image, step(53));
}

template <typename MANAGER>
void expect_a_report_for_every_stream_byte(const BYTES& stream, unsigned int length, size_t stride, const char* text) {
    for (size_t place = 0; place < stream.size(); place += stride) {
        const NAMING_TABLE table(with_byte(stream, place, static_cast<unsigned char>(~stream[place])), length);
        EXPECT_REPORT(MANAGER(table.blob()), text, IN_DDB_MGR) << place;
    }
}

TEST(NamingTables, AWrongByteOfTheGrammarStreamIsReported) {
    expect_a_report_for_every_stream_byte<TOVREN_DDB_GRAMMAR_MGR>(
        BYTES(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_DATA + PGMDDB_GRAMMAR_CMP_LENGTH), PGMDDB_GRAMMAR_LENGTH, step(311),
        "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK");
}

TEST(NamingTables, AWrongByteOfTheOrderingStreamIsReported) {
    expect_a_report_for_every_stream_byte<TOVREN_DDB_OPN_MGR>(
        BYTES(PGMDDB_OPN_DATA, PGMDDB_OPN_DATA + PGMDDB_OPN_CMP_LENGTH), PGMDDB_OPN_LENGTH, step(17),
        "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK");
}

} // namespace
