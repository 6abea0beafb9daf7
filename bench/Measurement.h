#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

namespace Bench {

/// One figure and what it is held against: both are taken in turn in one run, so that a slow moment of the machine hits
/// both. The medians go into the counters of the benchmark, where `Table` and `JsonLines` find them.
class Measurement {
public:
    /// @param p_unit   of the figure, such as "ns" or "ms a tree"
    /// @param p_scale  units per second
    /// @param p_bound  the most that the figure may be; 0 for none
    Measurement(std::string p_unit, double p_scale, double p_bound)
        : _unit(std::move(p_unit)), _scale(p_scale), _bound(p_bound) {}

    /// The figure may be so many times the reference, whatever this is.
    void BoundByReference(double p_factor) { _boundFactor = p_factor; }

    /// Times one call and counts it as so many pieces of work; gives the seconds of the whole call.
    template <class Work>
    double Ours(Work const& p_work, double p_pieces = 1) {
        return Take(_ours, p_work, p_pieces);
    }
    template <class Work>
    void Reference(std::string const& p_name, Work const& p_work, double p_pieces = 1) {
        _referenceName = p_name;
        Take(_reference, p_work, p_pieces);
    }

    void Publish(benchmark::State& p_state) const;

private:
    template <class Work>
    static double Take(std::vector<double>& p_samples, Work const& p_work, double p_pieces) {
        auto const begin = std::chrono::steady_clock::now();
        p_work();
        std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - begin;
        p_samples.push_back(elapsed.count() / p_pieces);
        return elapsed.count();
    }

    std::string _unit;
    double _scale;
    double _bound;
    double _boundFactor = 0;
    std::string _referenceName;
    std::vector<double> _ours;
    std::vector<double> _reference;
};

/// Puts a figure that is no time into the counters of a benchmark.
void PublishFigure(benchmark::State& p_state, double p_figure, std::string const& p_unit, double p_bound);

} // namespace Bench
