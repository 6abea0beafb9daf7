#include "bench/Measurement.h"

#include <algorithm>

namespace Bench {

namespace {

double Median(std::vector<double> p_samples) {
    if (p_samples.empty())
        return 0;
    auto const middle = p_samples.begin() + static_cast<std::ptrdiff_t>(p_samples.size() / 2);
    std::nth_element(p_samples.begin(), middle, p_samples.end());
    return *middle;
}

} // namespace

void Measurement::Publish(benchmark::State& p_state) const {
    double const ours = Median(_ours) * _scale;
    double const reference = Median(_reference) * _scale;
    PublishFigure(p_state, ours, _unit, _boundFactor > 0 ? _boundFactor * reference : _bound);
    if (_reference.empty())
        return;
    p_state.counters["reference"] = reference;
    p_state.counters["ratio"] = ours / reference;
    p_state.SetLabel(_unit + "|" + _referenceName);
}

void PublishFigure(benchmark::State& p_state, double p_figure, std::string const& p_unit, double p_bound) {
    p_state.counters["figure"] = p_figure;
    if (p_bound > 0)
        p_state.counters["bound"] = p_bound;
    p_state.SetLabel(p_unit);
}

} // namespace Bench
