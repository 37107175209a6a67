// The flash database: loading, identifying, generating.
#include "bench_support.h"
#include "flash_sqlite.h"
#include "host_text.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace {

constexpr size_t HEADER_SIZE = 44;
constexpr size_t CHECK_SIZE = 2;

// One flash table in all the forms that are compared.
struct TABLE {
    std::string csv;
    std::string root; // holds programmer/pgm_flash.pcf
    std::string database;
    std::string sqlite;
    BYTES payload;
};

TABLE make_table(const std::string& csv, const std::string& name) {
    const std::filesystem::path folder = memory_folder() / name;
    std::filesystem::create_directories(folder / "programmer");
    TABLE table{csv, folder, folder / "programmer/pgm_flash.pcf", folder / "flash.sqlite", {}};

    TOVREN_STANDALONE_HOST::set_settings_file("/dev/null");
    TOVREN_STANDALONE_HOST::set_device_db_root(table.root);
    TOVREN_FLASH_MANAGER(false, 0, true, false).generate_flash_database(csv, table.database);
    table.payload = payload_of(read_file(table.database));

    const TOVREN_FLASH_MANAGER flashes(false, 1, false, false);
    std::vector<TOVREN_SFL_FLASH_INFO> records;
    for (unsigned int i = 0; i < flashes.get_flash_count(); ++i)
        records.push_back(*flashes.get_flash(i));
    write_flash_sqlite(table.sqlite, records);
    return table;
}

const TABLE& shipped() {
    static const TABLE table = make_table(TOVREN_SHIPPED_FLASH_CSV, "shipped");
    return table;
}

const TABLE& large() {
    static const TABLE table = make_table(write_large_flash_csv(TOVREN_SHIPPED_FLASH_CSV, 10000), "large");
    return table;
}

// ---- loading ----

void construct(benchmark::State& state, const TABLE& (*table)()) {
    TOVREN_STANDALONE_HOST::set_device_db_root(table().root);
    for (auto _ : state)
        TOVREN_FLASH_MANAGER(false, 1, false, false);
}

// The least that a reader of the same file must do.
void read_and_inflate(benchmark::State& state, const TABLE& (*table)()) {
    const std::string path = table().database;
    const size_t payload_size = table().payload.size();
    for (auto _ : state) {
        const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status = {};
        fstat(descriptor, &status);
        const auto size = static_cast<size_t>(status.st_size);
        const std::unique_ptr<unsigned char[]> file(new unsigned char[size]);
        const ssize_t got = read(descriptor, file.get(), size);
        close(descriptor);
        uLongf inflated = payload_size;
        const std::unique_ptr<unsigned char[]> payload(new unsigned char[payload_size]);
        if (got != status.st_size ||
            uncompress(payload.get(), &inflated, file.get() + HEADER_SIZE, size - HEADER_SIZE - CHECK_SIZE) != Z_OK)
            state.SkipWithError("bad database");
        benchmark::DoNotOptimize(payload.get());
    }
}

void sqlite_load(benchmark::State& state, const TABLE& (*table)()) {
    const std::string path = table().sqlite;
    for (auto _ : state) {
        const SQLITE_DATABASE database = open_flash_sqlite(path);
        const auto flashes = read_flash_sqlite(*database);
        benchmark::DoNotOptimize(flashes.data());
    }
}

// ---- identifying ----

using ANSWER = std::array<unsigned char, 256>; // only the first three bytes mean something

// Every answer that a shipped flash gives, once each.
const std::vector<ANSWER>& answers() {
    static const std::vector<ANSWER> all = [] {
        TOVREN_STANDALONE_HOST::set_device_db_root(shipped().root);
        const TOVREN_FLASH_MANAGER flashes(false, 1, false, false);
        std::set<ANSWER> found;
        for (unsigned int i = 0; i < flashes.get_flash_count(); ++i) {
            const TOVREN_SFL_FLASH_INFO& flash = *flashes.get_flash(i);
            if (!flash.silicon_id)
                found.insert(ANSWER{flash.mfc_id, flash.memory_type, flash.memory_id});
        }
        return std::vector<ANSWER>(found.begin(), found.end());
    }();
    return all;
}

const std::vector<ANSWER>& unknown_answer() {
    static const std::vector<ANSWER> one = {ANSWER{0x5A, 0x5A, 0x5A}};
    return one;
}

using ANSWERS = const std::vector<ANSWER>& (*)();

void identify(benchmark::State& state, ANSWERS answers) {
    std::vector<ANSWER> asked = answers();
    TOVREN_STANDALONE_HOST::set_device_db_root(shipped().root);
    TOVREN_FLASH_MANAGER flashes(false, 1, false, false);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(flashes.flash_id_database_mapping(false, 0, asked[i].data()));
        i = i + 1 == asked.size() ? 0 : i + 1;
    }
}

struct FLAT_ID {
    unsigned char mfc_id;
    unsigned char memory_type;
    unsigned char memory_id;
};

void flat_loop(benchmark::State& state, ANSWERS answers) {
    const std::vector<ANSWER>& asked = answers();
    TOVREN_STANDALONE_HOST::set_device_db_root(shipped().root);
    const TOVREN_FLASH_MANAGER flashes(false, 1, false, false);
    std::vector<FLAT_ID> ids;
    for (unsigned int i = 0; i < flashes.get_flash_count(); ++i) {
        const TOVREN_SFL_FLASH_INFO& flash = *flashes.get_flash(i);
        ids.push_back({flash.mfc_id, flash.memory_type, flash.memory_id});
    }
    size_t i = 0;
    for (auto _ : state) {
        const ANSWER& answer = asked[i];
        size_t found = 0;
        while (found < ids.size() && !(ids[found].memory_id == answer[2] && ids[found].memory_type == answer[1] &&
                                       ids[found].mfc_id == answer[0]))
            ++found;
        benchmark::DoNotOptimize(found);
        i = i + 1 == asked.size() ? 0 : i + 1;
    }
}

void sqlite_lookup(benchmark::State& state, ANSWERS answers) {
    const std::vector<ANSWER>& asked = answers();
    const SQLITE_DATABASE database = open_flash_sqlite(shipped().sqlite);
    FLASH_SQLITE_LOOKUP lookup(*database);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lookup.find(asked[i].data()));
        i = i + 1 == asked.size() ? 0 : i + 1;
    }
}

// ---- generating ----

void generate(benchmark::State& state, const TABLE& (*table)()) {
    const std::string csv = table().csv;
    const std::string output = memory_folder() / "generated.pcf";
    for (auto _ : state)
        TOVREN_FLASH_MANAGER(false, 0, true, false).generate_flash_database(csv, output);
}

void tokenize_and_deflate(benchmark::State& state, const TABLE& (*table)()) {
    const std::string csv = table().csv;
    const BYTES& payload = table().payload;
    for (auto _ : state) {
        std::ifstream input(csv);
        std::string line;
        std::vector<std::string> cells;
        while (std::getline(input, line)) {
            gen_tokenize(line, " \t\n,", cells);
            benchmark::DoNotOptimize(cells.data());
        }
        uLongf size = compressBound(payload.size());
        const std::unique_ptr<unsigned char[]> deflated(new unsigned char[size]);
        if (compress(deflated.get(), &size, payload.data(), payload.size()) != Z_OK)
            state.SkipWithError("no room");
        benchmark::DoNotOptimize(deflated.get());
    }
}

BENCHMARK_CAPTURE(construct, shipped, shipped);
BENCHMARK_CAPTURE(construct, 10000_records, large);
BENCHMARK_CAPTURE(read_and_inflate, shipped, shipped);
BENCHMARK_CAPTURE(read_and_inflate, 10000_records, large);
BENCHMARK_CAPTURE(sqlite_load, shipped, shipped);
BENCHMARK_CAPTURE(identify, each_shipped, answers);
BENCHMARK_CAPTURE(identify, unknown, unknown_answer);
BENCHMARK_CAPTURE(flat_loop, each_shipped, answers);
BENCHMARK_CAPTURE(flat_loop, unknown, unknown_answer);
BENCHMARK_CAPTURE(sqlite_lookup, each_shipped, answers);
BENCHMARK_CAPTURE(generate, shipped, shipped);
BENCHMARK_CAPTURE(generate, 10000_records, large);
BENCHMARK_CAPTURE(tokenize_and_deflate, shipped, shipped);
BENCHMARK_CAPTURE(tokenize_and_deflate, 10000_records, large);

const ADD_COMPARISON COMPARISONS[] = {
    {"construct/shipped", "read_and_inflate/shipped", GOAL::AT_MOST, 1.5},
    {"construct/10000_records", "read_and_inflate/10000_records", GOAL::AT_MOST, 1.8},
    {"construct/shipped", "sqlite_load/shipped", GOAL::FASTER, 8},
    {"identify/each_shipped", "flat_loop/each_shipped", GOAL::AT_MOST, 3},
    {"identify/unknown", "flat_loop/unknown", GOAL::AT_MOST, 3},
    {"identify/each_shipped", "sqlite_lookup/each_shipped", GOAL::FASTER, 30},
    {"generate/shipped", "tokenize_and_deflate/shipped", GOAL::AT_MOST, 1.3},
    {"generate/10000_records", "tokenize_and_deflate/10000_records", GOAL::AT_MOST, 1.3},
};

} // namespace
