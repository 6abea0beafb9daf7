#pragma once

#include <benchmark/benchmark.h>

#include <vector>

namespace Bench {

/// Prints one JSON object a benchmark, each on a line of its own: name, figure, unit and, where there are such, bound,
/// reference and ratio.
class JsonLines : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const& p_context) override;
    void ReportRuns(std::vector<Run> const& p_runs) override;
};

/// Prints the same as a table for people.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const& p_context) override;
    void ReportRuns(std::vector<Run> const& p_runs) override;
};

} // namespace Bench
