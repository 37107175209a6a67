// Runs the benchmarks and prints each comparison beside its limit. Every benchmark is repeated, the repetitions of all
// are interleaved, and the fastest one counts: what else runs on the machine only ever adds time.
//
// Takes the options of Google Benchmark. Ends with 1 when a limit is exceeded.
#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <thread>

namespace {

// Keeps the shortest time of each benchmark, in nanoseconds for one iteration: CPU time, or what it measures itself.
class FASTEST_REPORTER : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const bool is_manual = run.run_name.time_type == "manual_time";
            const double seconds = is_manual ? run.real_accumulated_time : run.cpu_accumulated_time;
            const double time = seconds / static_cast<double>(run.iterations) * 1e9;
            const auto [place, is_new] = m_times.emplace(run.run_name.function_name, time);
            if (!is_new)
                place->second = std::min(place->second, time);
        }
    }

    // 0: it did not run.
    double time_of(const std::string& name) const {
        const auto place = m_times.find(name);
        return place == m_times.end() ? 0 : place->second;
    }

private:
    std::map<std::string, double> m_times;
};

std::string machine() {
    std::ifstream input("/proc/cpuinfo");
    std::string line;
    while (std::getline(input, line))
        if (line.starts_with("model name"))
            return line.substr(line.find(':') + 2) + ", " + std::to_string(std::thread::hardware_concurrency()) +
                   " cores";
    return "unknown processor";
}

std::string time_text(double nanoseconds) {
    char text[32];
    if (nanoseconds < 1e3)
        std::snprintf(text, sizeof text, "%.1f ns", nanoseconds);
    else if (nanoseconds < 1e6)
        std::snprintf(text, sizeof text, "%.1f us", nanoseconds / 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f ms", nanoseconds / 1e6);
    return text;
}

// Whether the comparison keeps its limit.
bool print(const COMPARISON& comparison, double subject, double reference) {
    const bool is_cap = comparison.goal == GOAL::AT_MOST;
    const double ratio = is_cap ? subject / reference : reference / subject;
    const bool is_kept = is_cap ? ratio <= comparison.limit : ratio >= comparison.limit;
    std::printf("%-44s %10s  %-40s %10s  %6.2f  %s %4.1f  %s\n", comparison.subject.c_str(), time_text(subject).c_str(),
                comparison.reference.c_str(), time_text(reference).c_str(), ratio, is_cap ? "at most " : "at least",
                comparison.limit, is_kept ? "ok" : "OVER");
    return is_kept;
}

int print_all(const FASTEST_REPORTER& times) {
    std::printf("%s\n\n%-44s %10s  %-40s %10s  %6s  %13s\n", machine().c_str(), "subject", "time", "reference", "time",
                "ratio", "limit");
    int result = 0;
    for (const COMPARISON& comparison : comparisons()) {
        const double subject = times.time_of(comparison.subject);
        const double reference = times.time_of(comparison.reference);
        if (subject > 0 && reference > 0 && !print(comparison, subject, reference))
            result = 1;
    }
    return result;
}

} // namespace

int main(int argc, char** argv) {
    // Ahead of the user's own options, which therefore win.
    char repetitions[] = "--benchmark_repetitions=15";
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char min_time[] = "--benchmark_min_time=0.02";
    std::vector<char*> arguments = {argv[0], repetitions, interleaving, min_time};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);

    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    FASTEST_REPORTER reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return print_all(reporter);
}
