// Names: the maps, the hash, the search for a full name, and the command from its start to its exit.
#include "bench_process.h"
#include "bench_support.h"
#include "host_dev.h"
#include "host_pgm_common.h"
#include "host_text.h"
#include "pgmddb_grammar_data.h"
#include "tovren_ddb_mgr.h"
#include "tovren_mgr.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory>
#include <sqlite3.h>
#include <zlib.h>

namespace {

using MGR = TOVREN_DDB_GRAMMAR_MGR;
using TYPE = TOVREN_DDB_GRAMMAR_ENUM;

// ---- first use ----

// Once a large block was freed, the heap keeps what is freed instead of fetching it from the system again; both sides
// of the comparison then pay for their own work alone.
void settle_heap() {
    void* block = std::malloc(size_t{1} << 24);
    benchmark::DoNotOptimize(block);
    std::free(block);
}

void first_use(benchmark::State& state) {
    settle_heap();
    MGR::delete_mgr();
    for (auto _ : state) {
        benchmark::DoNotOptimize(MGR::get_mgr());
        state.PauseTiming();
        MGR::delete_mgr();
        state.ResumeTiming();
    }
}

void inflate_grammar(benchmark::State& state) {
    settle_heap();
    for (auto _ : state) {
        BYTES image(PGMDDB_GRAMMAR_LENGTH);
        uLongf size = PGMDDB_GRAMMAR_LENGTH;
        if (uncompress(image.data(), &size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) != Z_OK)
            state.SkipWithError("bad stream");
        benchmark::DoNotOptimize(image.data());
    }
}

// ---- a miss ----

// As long as most ordering names, and like them up to its end.
constexpr char MISS[] = "BA50AF672I7X";

void miss_in_the_largest_map(benchmark::State& state) {
    MGR* const mgr = MGR::get_mgr();
    TOVREN_DDB_MAP* const map = mgr->get_map(TYPE::PACKAGE_GRAMMAR);
    std::string name = MISS;
    if (!mgr->get_mapping_key(name, map).empty())
        state.SkipWithError("no miss");
    for (auto _ : state)
        benchmark::DoNotOptimize(mgr->get_mapping_key(name, map));
}

void miss_in_a_flat_list(benchmark::State& state) {
    std::vector<std::string> names;
    for (const auto& [key, contents] : *MGR::get_mgr()->get_map(TYPE::PACKAGE_GRAMMAR))
        names.insert(names.end(), contents.begin(), contents.end());
    const std::string name = MISS;
    for (auto _ : state)
        benchmark::DoNotOptimize(std::find(names.begin(), names.end(), name));
}

// ---- hash ----

std::vector<std::string> part_names() {
    std::vector<std::string> names;
    for (unsigned int part = DEV_PART_INVALID + 1U; part < DEV_PART_GENERIC; ++part)
        names.push_back(dstr_get_user_string(DEV_PART_ENUM(part)));
    return names;
}

void part_of_no_hash(benchmark::State& state) {
    if (!TOVREN_MGR::get_opn_from_hash(1).empty())
        state.SkipWithError("a hit");
    for (auto _ : state)
        benchmark::DoNotOptimize(TOVREN_MGR::get_opn_from_hash(1));
}

void digests_of_all_parts(benchmark::State& state) {
    const std::vector<std::string> names = part_names();
    for (auto _ : state) {
        for (const std::string& name : names)
            benchmark::DoNotOptimize(std::unique_ptr<unsigned char[]>(
                PGM_COMMON::get_block_sha(reinterpret_cast<const unsigned char*>(name.data()),
                                          static_cast<unsigned int>(name.size()), 32)));
    }
}

// ---- full name ----

// The middle or last part; or the first package-level name that is no part, since the first part takes no scan at all;
// or a name that begins like the last part and stands for none.
std::string asked_name(const std::string& which) {
    const std::vector<std::string> names = part_names();
    if (which == "middle")
        return names[names.size() / 2];
    if (which == "last")
        return names.back();
    if (which == "miss")
        return names.back().substr(0, 5) + "_NONE";
    for (const std::string& name : names) {
        const std::string package = MGR::get_package_grammar(std::string(name), false);
        if (std::find(names.begin(), names.end(), package) == names.end())
            return package;
    }
    return "";
}

void full_name(benchmark::State& state, const std::string& which) {
    const std::string name = asked_name(which);
    if (TOVREN_MGR::find_possible_full_name(name).empty() != (which == "miss"))
        state.SkipWithError("another answer");
    for (auto _ : state)
        benchmark::DoNotOptimize(TOVREN_MGR::find_possible_full_name(name));
}

// One scan of a map, as the search for a full name makes it.
struct SCAN {
    std::string name;
    TYPE type;
};

// The scans that the rules ask for: of each part that begins like the name, up to the one that it stands for, the
// package-level name and then the programmer name.
std::vector<SCAN> scans_for(const std::string& name) {
    std::vector<SCAN> scans;
    const auto scan = [&scans](const std::string& what, TYPE type) {
        scans.push_back({what, type});
        return MGR::get_mapping_key(std::string(what), type);
    };
    for (const std::string& part : part_names()) {
        if (part == name)
            break;
        if (part.compare(0, 5, name, 0, 5) != 0)
            continue;
        if (scan(part, TYPE::PACKAGE_GRAMMAR) == name)
            break;
        std::string pgm = scan(part, TYPE::PGM_GRAMMAR);
        if (pgm.empty()) {
            const std::string package = scan(part, TYPE::PACKAGE_GRAMMAR);
            if (!package.empty())
                pgm = scan(package, TYPE::PGM_GRAMMAR);
        }
        if (pgm == name)
            break;
    }
    return scans;
}

void scans_for_full_name(benchmark::State& state, const std::string& which) {
    const std::vector<SCAN> scans = scans_for(asked_name(which));
    for (auto _ : state)
        for (const SCAN& scan : scans)
            benchmark::DoNotOptimize(MGR::get_mapping_key(scan.name, scan.type));
    state.counters["scans"] = static_cast<double>(scans.size());
}

// ---- the command ----

struct CLOSE_DATABASE {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};

// Every ordering name with its package-level name, in an indexed table.
std::string names_database() {
    const std::string path = memory_folder() / "names.sqlite";
    if (std::filesystem::exists(path))
        return path;
    sqlite3* opened = nullptr;
    sqlite3_open(path.c_str(), &opened);
    const std::unique_ptr<sqlite3, CLOSE_DATABASE> database(opened);
    std::string text = "begin; create table names (name text primary key, package text) without rowid;";
    for (const auto& [package, names] : *MGR::get_mgr()->get_map(TYPE::PACKAGE_GRAMMAR))
        for (const std::string& name : names)
            text += "insert into names values ('" + name + "', '" + package + "');";
    sqlite3_exec(database.get(), (text + "commit;").c_str(), nullptr, nullptr, nullptr);
    return path;
}

constexpr char EXPLAINED[] = "BA50AF672I7N";

void explain(benchmark::State& state) {
    bench_process(state, {TOVREN_COMMAND, "name", "explain", EXPLAINED});
}

void ask_sqlite(benchmark::State& state) {
    const std::string question = std::string("select package from names where name = '") + EXPLAINED + "'";
    bench_process(state, {"sqlite3", names_database(), question});
}

BENCHMARK(first_use);
BENCHMARK(inflate_grammar);
BENCHMARK(miss_in_the_largest_map);
BENCHMARK(miss_in_a_flat_list);
BENCHMARK(part_of_no_hash);
BENCHMARK(digests_of_all_parts);
BENCHMARK_CAPTURE(full_name, first_part, "first");
BENCHMARK_CAPTURE(full_name, middle_part, "middle");
BENCHMARK_CAPTURE(full_name, last_part, "last");
BENCHMARK_CAPTURE(full_name, miss, "miss");
BENCHMARK_CAPTURE(scans_for_full_name, first_part, "first");
BENCHMARK_CAPTURE(scans_for_full_name, middle_part, "middle");
BENCHMARK_CAPTURE(scans_for_full_name, last_part, "last");
BENCHMARK_CAPTURE(scans_for_full_name, miss, "miss");
BENCHMARK(explain)->UseManualTime()->Iterations(20);
BENCHMARK(ask_sqlite)->UseManualTime()->Iterations(20);

const ADD_COMPARISON COMPARISONS[] = {
    {"first_use", "inflate_grammar", GOAL::AT_MOST, 3},
    {"miss_in_the_largest_map", "miss_in_a_flat_list", GOAL::AT_MOST, 3},
    {"part_of_no_hash", "digests_of_all_parts", GOAL::AT_MOST, 1.2},
    {"full_name/first_part", "scans_for_full_name/first_part", GOAL::AT_MOST, 1.2},
    {"full_name/middle_part", "scans_for_full_name/middle_part", GOAL::AT_MOST, 1.2},
    {"full_name/last_part", "scans_for_full_name/last_part", GOAL::AT_MOST, 1.2},
    {"full_name/miss", "scans_for_full_name/miss", GOAL::AT_MOST, 1.2},
    {"explain", "ask_sqlite", GOAL::AT_MOST, 4},
};

} // namespace
