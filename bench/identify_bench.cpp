// `tovren flash identify` for one chip, against a program that does nothing and is linked to the same libraries.
#include "bench_process.h"
#include "bench_support.h"

namespace {

void identify_process(benchmark::State& state) {
    bench_process(state, {TOVREN_COMMAND, "flash", "identify", "20BA18"});
}

void empty_process(benchmark::State& state) {
    bench_process(state, {TOVREN_EMPTY_PROGRAM});
}

BENCHMARK(identify_process)->UseManualTime()->Iterations(100);
BENCHMARK(empty_process)->UseManualTime()->Iterations(100);

const ADD_COMPARISON COMPARISON{"identify_process", "empty_process", GOAL::AT_MOST, 2};

} // namespace
