// Flashes of the user's own: their text, and a load with one.
#include "bench_support.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <zlib.h>

namespace {

using M = TOVREN_FLASH_MANAGER;

std::string make_list(unsigned int count) {
    std::string list;
    for (unsigned int i = 0; i < count; ++i)
        M::add_ini_entry(list, "@QXMAKER@QX25_" + std::to_string(i) +
                                   "@0@24@2@32@1@161@0@32@1@NONE@0@1@0@1@0@1@2@268435456@65536@0@1@250@3@5000@124@92@4@"
                                   "255@32@0@1.8V@");
    return list;
}

// The list in its three forms.
struct TEXT {
    explicit TEXT(unsigned int count) : list(make_list(count)), encoded(M::encode_ini(list)) {
        stream.resize(compressBound(list.size()));
        uLongf size = stream.size();
        compress(stream.data(), &size, reinterpret_cast<const Bytef*>(list.data()), list.size());
        stream.resize(size);
    }

    std::string list;
    std::string encoded;
    BYTES stream;
};

// Once a large block was freed, the heap keeps what is freed. Before, it gives some of it back at times, which takes
// longer than all that is measured here and falls on whoever frees last.
void settle_heap() {
    void* block = std::malloc(size_t{1} << 20);
    benchmark::DoNotOptimize(block);
    std::free(block);
}

const TEXT& text_of_flashes(unsigned int count) {
    settle_heap();
    static const TEXT one(1);
    static const TEXT three(3);
    return count == 1 ? one : three;
}

// ---- the text ----

void encode(benchmark::State& state, unsigned int count) {
    const std::string& list = text_of_flashes(count).list;
    for (auto _ : state)
        benchmark::DoNotOptimize(M::encode_ini(list));
}

void deflate_list(benchmark::State& state, unsigned int count) {
    const std::string& list = text_of_flashes(count).list;
    BYTES stream(compressBound(list.size()));
    for (auto _ : state) {
        uLongf size = stream.size();
        if (compress(stream.data(), &size, reinterpret_cast<const Bytef*>(list.data()), list.size()) != Z_OK)
            state.SkipWithError("no room");
        benchmark::DoNotOptimize(stream.data());
    }
}

void decode(benchmark::State& state, unsigned int count) {
    const TEXT& text = text_of_flashes(count);
    if (M::decode_ini(text.encoded) != text.list)
        state.SkipWithError("another list");
    for (auto _ : state)
        benchmark::DoNotOptimize(M::decode_ini(text.encoded));
}

void inflate_list(benchmark::State& state, unsigned int count) {
    const TEXT& text = text_of_flashes(count);
    BYTES list(text.list.size());
    for (auto _ : state) {
        uLongf size = list.size();
        if (uncompress(list.data(), &size, text.stream.data(), text.stream.size()) != Z_OK)
            state.SkipWithError("bad stream");
        benchmark::DoNotOptimize(list.data());
    }
}

// ---- a load ----

void load(benchmark::State& state, unsigned int count) {
    const std::string setting = M::get_ext_flash_setting_name();
    TOVREN_STANDALONE_HOST::set_settings_file("/dev/null");
    TOVREN_STANDALONE_HOST::set_device_db_root(TOVREN_SHIPPED_DB_ROOT);
    TOVREN_STANDALONE_HOST::set_setting(setting, count == 0 ? "" : text_of_flashes(count).encoded);
    if (M(false, 1, false, false).get_flash(0)->device_name.starts_with("QX25_") != (count != 0))
        state.SkipWithError("another flash");
    for (auto _ : state)
        M(false, 1, false, false);
    TOVREN_STANDALONE_HOST::set_setting(setting, "");
}

BENCHMARK_CAPTURE(encode, one_flash, 1U);
BENCHMARK_CAPTURE(encode, three_flashes, 3U);
BENCHMARK_CAPTURE(deflate_list, one_flash, 1U);
BENCHMARK_CAPTURE(deflate_list, three_flashes, 3U);
BENCHMARK_CAPTURE(decode, one_flash, 1U);
BENCHMARK_CAPTURE(decode, three_flashes, 3U);
BENCHMARK_CAPTURE(inflate_list, one_flash, 1U);
BENCHMARK_CAPTURE(inflate_list, three_flashes, 3U);
BENCHMARK_CAPTURE(load, without_external, 0U);
BENCHMARK_CAPTURE(load, with_external, 1U);
BENCHMARK_CAPTURE(load, with_three_defined, 3U);

const ADD_COMPARISON COMPARISONS[] = {
    {"encode/one_flash", "deflate_list/one_flash", GOAL::AT_MOST, 2},
    {"encode/three_flashes", "deflate_list/three_flashes", GOAL::AT_MOST, 2},
    {"decode/one_flash", "inflate_list/one_flash", GOAL::AT_MOST, 2},
    {"decode/three_flashes", "inflate_list/three_flashes", GOAL::AT_MOST, 2},
    {"load/with_external", "load/without_external", GOAL::AT_MOST, 1.3},
    {"load/with_three_defined", "load/without_external", GOAL::AT_MOST, 1.3},
};

} // namespace
