// A command from the start of its process to its exit.
#ifndef BENCH_PROCESS_H
#define BENCH_PROCESS_H

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

// One run an iteration, with what it prints thrown away; it must end with `exit_code`. For benchmarks that use manual
// time.
void bench_process(benchmark::State& state, const std::vector<std::string>& command, int exit_code = 0);

#endif
