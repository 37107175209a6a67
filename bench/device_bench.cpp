// The device database: loading, fetching the record of a part, generating; all at the scale of the shipped catalogue.
#include "bench_support.h"
#include "device_sqlite.h"
#include "host_text.h"
#include "tovren_standalone_host.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace {

constexpr size_t HEADER_SIZE = 44;
constexpr size_t CHECK_SIZE = 2;
constexpr size_t TABLE_HEAD_SIZE = 5; // tag, count

const std::string& shipped_file() {
    static const std::string path = TOVREN_SHIPPED_DB_ROOT "/programmer/pgm_dev_info.pcf";
    return path;
}

const std::string& shipped_sqlite() {
    static const std::string file = [] {
        TOVREN_STANDALONE_HOST::set_device_db_root(TOVREN_SHIPPED_DB_ROOT);
        std::string path = memory_folder() / "devices.sqlite";
        write_device_sqlite(path, TOVREN_DEV_INFO_MANAGER(false, 0));
        return path;
    }();
    return file;
}

// ---- loading ----

void devices_construct(benchmark::State& state) {
    TOVREN_STANDALONE_HOST::set_device_db_root(TOVREN_SHIPPED_DB_ROOT);
    for (auto _ : state)
        TOVREN_DEV_INFO_MANAGER(false, 0);
}

// The entries of one index table at `from`, which is moved behind it.
std::unique_ptr<unsigned int[]> copy_table(const unsigned char*& from, size_t count) {
    std::unique_ptr<unsigned int[]> table(new unsigned int[count]);
    std::memcpy(table.get(), from + TABLE_HEAD_SIZE, count * sizeof(unsigned int));
    from += TABLE_HEAD_SIZE + count * sizeof(unsigned int);
    return table;
}

// The least that a reader of the same file must do: the file, the payload, a copy of the tables.
void devices_read_inflate_copy(benchmark::State& state) {
    const std::string& path = shipped_file();
    const size_t payload_size = payload_of(read_file(path)).size();
    const size_t counts[] = {DEV_FAMILY_MAX, DEV_DEVICE_MAX, DEV_PART_MAX};
    const size_t table_size = 3 * TABLE_HEAD_SIZE + sizeof(unsigned int) * (counts[0] + counts[1] + counts[2]);
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
        const unsigned char* from = payload.get() + payload_size - table_size;
        for (const size_t count : counts)
            benchmark::DoNotOptimize(copy_table(from, count).get());
    }
}

void devices_sqlite_load(benchmark::State& state) {
    const std::string& path = shipped_sqlite();
    for (auto _ : state) {
        const SQLITE_DATABASE database = sqlite_open(path);
        benchmark::DoNotOptimize(read_device_sqlite(*database));
    }
}

// ---- fetching ----

// Parts all over the catalogue, in no order.
std::vector<DEV_PART_ENUM> asked_parts() {
    std::vector<DEV_PART_ENUM> parts;
    for (unsigned int i = 0; i < 1009; ++i)
        parts.push_back(DEV_PART_ENUM(1 + i * 4999 % (DEV_PART_MAX - 1U)));
    return parts;
}

// Fetches one part after the other by `fetch`, which returns a pointer that owns its record.
template <typename FETCH>
void fetch_parts(benchmark::State& state, FETCH&& fetch) {
    const std::vector<DEV_PART_ENUM> parts = asked_parts();
    size_t i = 0;
    for (auto _ : state) {
        const std::unique_ptr<TOVREN_DEVICE_INFO> record = fetch(parts[i]);
        if (!record)
            state.SkipWithError("a part without a record");
        benchmark::DoNotOptimize(record.get());
        i = i + 1 == parts.size() ? 0 : i + 1;
    }
}

void part_record(benchmark::State& state) {
    TOVREN_STANDALONE_HOST::set_device_db_root(TOVREN_SHIPPED_DB_ROOT);
    TOVREN_DEV_INFO_MANAGER devices(false, 0);
    fetch_parts(state,
                [&](DEV_PART_ENUM part) { return std::unique_ptr<TOVREN_DEVICE_INFO>(devices.get_db_by_part(part)); });
}

// One copy of the same record, whose place is known.
void part_record_copy(benchmark::State& state) {
    TOVREN_STANDALONE_HOST::set_device_db_root(TOVREN_SHIPPED_DB_ROOT);
    const TOVREN_DEV_INFO_MANAGER devices(false, 0);
    std::vector<const TOVREN_DEVICE_INFO*> records;
    for (unsigned int part = 0; part < DEV_PART_MAX; ++part)
        records.push_back(devices.get_record(devices.get_position_of(DEV_PART_ENUM(part))));
    fetch_parts(state, [&](DEV_PART_ENUM part) { return std::make_unique<TOVREN_DEVICE_INFO>(*records[part]); });
}

void part_record_sqlite(benchmark::State& state) {
    const SQLITE_DATABASE database = sqlite_open(shipped_sqlite());
    DEVICE_SQLITE_LOOKUP lookup(*database);
    fetch_parts(state, [&](DEV_PART_ENUM part) { return lookup.get_by_part(part); });
}

// ---- generating ----

// Throws away what is written on standard error as long as it lives: each generation tells of families without a
// record.
class QUIET {
public:
    QUIET() : m_former(dup(STDERR_FILENO)) {
        const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nothing, STDERR_FILENO);
        close(nothing);
    }
    ~QUIET() {
        dup2(m_former, STDERR_FILENO);
        close(m_former);
    }
    QUIET(const QUIET&) = delete;
    QUIET& operator=(const QUIET&) = delete;

private:
    int m_former;
};

void devices_generate(benchmark::State& state) {
    const QUIET quiet;
    const std::string output = memory_folder() / "generated_devices.pcf";
    TOVREN_STANDALONE_HOST::set_settings_file("/dev/null");
    TOVREN_STANDALONE_HOST::set_product_root(TOVREN_SHIPPED_PRODUCT_ROOT);
    for (auto _ : state)
        TOVREN_DEV_INFO_MANAGER(true, 0).generate_device_database(FIO_PATH(TOVREN_SHIPPED_DEVICES_CSV), output);
}

void tokenize(const std::string& path) {
    std::ifstream input(path);
    std::string line;
    std::vector<std::string> cells;
    while (std::getline(input, line)) {
        gen_tokenize(line, " \t\n,", cells);
        benchmark::DoNotOptimize(cells.data());
    }
}

void devices_tokenize_and_deflate(benchmark::State& state) {
    const BYTES payload = payload_of(read_file(shipped_file()));
    for (auto _ : state) {
        tokenize(TOVREN_SHIPPED_DEVICES_CSV);
        tokenize(TOVREN_SHIPPED_PRODUCT_ROOT "/h/pgm_parts.txt");
        uLongf size = compressBound(payload.size());
        const std::unique_ptr<unsigned char[]> deflated(new unsigned char[size]);
        if (compress(deflated.get(), &size, payload.data(), payload.size()) != Z_OK)
            state.SkipWithError("no room");
        benchmark::DoNotOptimize(deflated.get());
    }
}

BENCHMARK(devices_construct);
BENCHMARK(devices_read_inflate_copy);
BENCHMARK(devices_sqlite_load);
BENCHMARK(part_record);
BENCHMARK(part_record_copy);
BENCHMARK(part_record_sqlite);
BENCHMARK(devices_generate);
BENCHMARK(devices_tokenize_and_deflate);

const ADD_COMPARISON COMPARISONS[] = {
    {"devices_construct", "devices_read_inflate_copy", GOAL::AT_MOST, 1.5},
    {"devices_construct", "devices_sqlite_load", GOAL::FASTER, 6},
    {"part_record", "part_record_copy", GOAL::AT_MOST, 1.5},
    {"part_record", "part_record_sqlite", GOAL::FASTER, 20},
    {"devices_generate", "devices_tokenize_and_deflate", GOAL::AT_MOST, 2},
};

} // namespace
