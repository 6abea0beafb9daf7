#include "render/nodes/LegendScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

namespace Qor::Chart::Render {

namespace {

/// How far a value may lie outside of the range and still count as its end, in steps.
constexpr double Slack = 1e-6;

/// A whole number times 10 to the power of an exponent, as exact as can be.
double Decimal(double p_number, int p_exponent) {
    return p_exponent < 0 ? p_number / std::pow(10.0, -p_exponent) : p_number * std::pow(10.0, p_exponent);
}

/// The multiples of a mantissa times 10 to the power of an exponent, unless there are more than so many.
std::vector<double> Multiples(double p_low, double p_high, double p_mantissa, int p_exponent, std::size_t p_most) {
    double const step = Decimal(p_mantissa, p_exponent);
    double const first = std::ceil(p_low / step - Slack);
    double const last = std::floor(p_high / step + Slack);
    std::vector<double> values;
    if (!(last - first < static_cast<double>(p_most)))
        return values;
    for (int i = 0; i <= last - first; ++i) // counted apart: one more may be no other number
        values.push_back(Decimal((first + i) * p_mantissa, p_exponent));
    return values;
}

/// Round values at even distances: the finest that are no more than so many.
std::vector<double> Even(double p_low, double p_high, std::size_t p_most) {
    double const step = p_high / static_cast<double>(p_most) - p_low / static_cast<double>(p_most);
    if (!(step > 0) || !std::isfinite(step))
        return {p_low};
    auto const exponent = static_cast<int>(std::floor(std::log10(step)));
    for (int up = 0; up <= 2; ++up) {
        for (double const mantissa : {1.0, 2.0, 5.0}) {
            std::vector<double> values = Multiples(p_low, p_high, mantissa, exponent + up, p_most);
            if (!values.empty())
                return values;
        }
    }
    return {p_low};
}

/// Powers of ten, with some of their multiples where there is space.
std::vector<double> ByMagnitude(double p_low, double p_high, std::size_t p_most) {
    auto const first = static_cast<int>(std::floor(std::log10(p_low) + Slack));
    auto const last = static_cast<int>(std::ceil(std::log10(p_high) - Slack));
    auto const collect = [&](std::initializer_list<double> p_mantissas, int p_step) {
        std::vector<double> values;
        for (int exponent = first; exponent <= last && values.size() <= p_most; ++exponent) {
            if (exponent % p_step != 0)
                continue;
            for (double const mantissa : p_mantissas) {
                double const value = Decimal(mantissa, exponent);
                if (value >= p_low * (1 - Slack) && value <= p_high * (1 + Slack))
                    values.push_back(value);
            }
        }
        return values;
    };
    std::vector<double> values = collect({1, 2, 5}, 1);
    for (int step = 1; values.size() > p_most; ++step)
        values = collect({1}, step);
    return values;
}

} // namespace

std::vector<double> LegendScale::Values(std::size_t p_most) const {
    double const first = toDisplay(map.First());
    double const last = toDisplay(map.Last());
    double const low = std::min(first, last);
    double const high = std::max(first, last);
    if (!std::isfinite(low) || !std::isfinite(high))
        return {};
    if (map.GetScale() == Library::ColorMap::Scale::Logarithmic && low > 0 && high >= 10 * low) {
        std::vector<double> values = ByMagnitude(low, high, p_most);
        if (values.size() > 1)
            return values;
    }
    return Even(low, high, p_most);
}

std::vector<LegendScale::Tick> LegendScale::Ticks(
    Types::NiceIntervals::NumberFormat const& p_format, std::size_t p_most) const {
    std::vector<Tick> ticks;
    for (std::size_t most = p_most; most > 0; --most) {
        ticks.clear();
        for (double const value : Values(most)) {
            double const position = map.Position((value - toDisplay.offset) / toDisplay.factor);
            if (position >= -Slack && position <= 1 + Slack)
                ticks.push_back({std::clamp(position, 0.0, 1.0), p_format(value)});
        }
        auto const isSame = [](Tick const& p_a, Tick const& p_b) { return p_a.text == p_b.text; };
        if (std::adjacent_find(ticks.begin(), ticks.end(), isSame) == ticks.end())
            break;
    }
    return ticks;
}

} // namespace Qor::Chart::Render
