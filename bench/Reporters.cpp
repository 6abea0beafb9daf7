#include "bench/Reporters.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>

namespace Bench {

namespace {

struct Row {
    std::string name;
    std::string unit;
    std::string reference;
    benchmark::UserCounters const& counters;

    explicit Row(benchmark::BenchmarkReporter::Run const& p_run)
        : name(p_run.benchmark_name().substr(0, p_run.benchmark_name().find("/iterations")))
        , unit(p_run.report_label.substr(0, p_run.report_label.find('|')))
        , counters(p_run.counters) {
        if (std::size_t const bar = p_run.report_label.find('|'); bar != std::string::npos)
            reference = p_run.report_label.substr(bar + 1);
    }

    bool Has(char const* p_counter) const { return counters.contains(p_counter); }
    double Value(char const* p_counter) const { return counters.at(p_counter).value; }
    std::string Text(char const* p_counter) const {
        if (!Has(p_counter))
            return "";
        std::ostringstream text;
        text << std::setprecision(3) << Value(p_counter);
        return Value(p_counter) >= 1000 ? std::to_string(static_cast<long>(Value(p_counter))) : text.str();
    }
};

} // namespace

bool JsonLines::ReportContext(Context const&) {
    return true;
}

void JsonLines::ReportRuns(std::vector<Run> const& p_runs) {
    for (Run const& run : p_runs) {
        Row const row(run);
        nlohmann::ordered_json line{{"name", row.name}};
        if (run.error_occurred)
            line["error"] = run.error_message;
        else
            line["unit"] = row.unit;
        for (char const* const counter : {"figure", "bound", "reference", "ratio"}) {
            if (row.Has(counter))
                line[counter] = row.Value(counter);
        }
        if (!row.reference.empty())
            line["against"] = row.reference;
        GetOutputStream() << line.dump() << std::endl;
    }
}

bool Table::ReportContext(Context const&) {
    GetOutputStream() << std::left << std::setw(44) << "benchmark" << std::right << std::setw(10) << "figure"
                      << std::setw(10) << "bound"
                      << "  " << std::left << std::setw(18) << "unit" << std::right << std::setw(10) << "reference"
                      << std::setw(10) << "ratio"
                      << "  against\n";
    return true;
}

void Table::ReportRuns(std::vector<Run> const& p_runs) {
    for (Run const& run : p_runs) {
        Row const row(run);
        GetOutputStream() << std::left << std::setw(44) << row.name;
        if (run.error_occurred) {
            GetOutputStream() << run.error_message << std::endl;
            continue;
        }
        GetOutputStream() << std::right << std::setw(10) << row.Text("figure") << std::setw(10) << row.Text("bound")
                          << "  " << std::left << std::setw(18) << row.unit << std::right << std::setw(10)
                          << row.Text("reference") << std::setw(10) << row.Text("ratio") << "  " << row.reference
                          << std::endl;
    }
}

} // namespace Bench
