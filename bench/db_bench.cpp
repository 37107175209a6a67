// A flash database of 10,000 records: dumped, compared with another and verified, each as a command against the one
// that generates it.
#include "bench_process.h"
#include "bench_support.h"
#include "tovren_flash_manager.h"

#include <benchmark/benchmark.h>
#include <fstream>

namespace {

constexpr size_t RECORDS = 10000;
constexpr size_t ROWS_BETWEEN_CHANGES = 100;

struct FILES {
    std::string csv;
    std::string root; // with both databases
    std::string database;
    std::string other; // the same, but for the voltage of every hundredth record
};

void generate(const std::string& csv, const std::string& database) {
    TOVREN_FLASH_MANAGER(false, 0, true, false).generate_flash_database(csv, database);
}

std::string write_changed_csv(const std::string& csv) {
    const std::string path = memory_folder() / "changed.csv";
    std::ifstream input(csv);
    std::ofstream output(path);
    std::string line;
    for (size_t row = 0; std::getline(input, line); ++row) {
        const size_t voltage = line.rfind(',') + 1;
        output << (row > 8 && row % ROWS_BETWEEN_CHANGES == 0 ? line.substr(0, voltage) + "1.2V" : line) << '\n';
    }
    return path;
}

const FILES& files() {
    static const FILES all = [] {
        const std::filesystem::path root = memory_folder() / "db_root";
        std::filesystem::create_directories(root / "programmer");
        std::filesystem::copy_file(TOVREN_SHIPPED_DB_ROOT "/programmer/pgm_dev_info.pcf",
                                   root / "programmer/pgm_dev_info.pcf");
        FILES made = {write_large_flash_csv(TOVREN_SHIPPED_FLASH_CSV, RECORDS), root, root / "programmer/pgm_flash.pcf",
                      memory_folder() / "other.pcf"};
        generate(made.csv, made.database);
        generate(write_changed_csv(made.csv), made.other);
        return made;
    }();
    return all;
}

void db_generate(benchmark::State& state) {
    bench_process(state, {TOVREN_COMMAND, "flash", "generate", files().csv, memory_folder() / "generated.pcf"});
}

void db_dump(benchmark::State& state) {
    bench_process(state, {TOVREN_COMMAND, "db", "dump", files().database});
}

void db_diff(benchmark::State& state) {
    constexpr int DIFFERENT = 1;
    bench_process(state, {TOVREN_COMMAND, "db", "diff", files().database, files().other}, DIFFERENT);
}

void db_verify(benchmark::State& state) {
    bench_process(state, {TOVREN_COMMAND, "db", "verify", files().root});
}

BENCHMARK(db_generate)->UseManualTime();
BENCHMARK(db_dump)->UseManualTime();
BENCHMARK(db_diff)->UseManualTime();
BENCHMARK(db_verify)->UseManualTime();

const ADD_COMPARISON COMPARISONS[] = {
    {"db_dump", "db_generate", GOAL::AT_MOST, 3},
    {"db_diff", "db_generate", GOAL::AT_MOST, 3},
    {"db_verify", "db_generate", GOAL::AT_MOST, 3},
};

} // namespace
