#include "bench/Reporters.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

/// qorbench [--json] [options of Google Benchmark, such as --benchmark_filter=draw]
int main(int p_count, char** p_arguments) {
    std::vector<char*> arguments(p_arguments, p_arguments + p_count);
    auto const json =
        std::ranges::find_if(arguments, [](char const* p_text) { return !std::strcmp(p_text, "--json"); });
    std::unique_ptr<benchmark::BenchmarkReporter> reporter;
    if (json == arguments.end()) {
        reporter = std::make_unique<Bench::Table>();
    } else {
        arguments.erase(json);
        reporter = std::make_unique<Bench::JsonLines>();
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    benchmark::RunSpecifiedBenchmarks(reporter.get());
    benchmark::Shutdown();
    return 0;
}
