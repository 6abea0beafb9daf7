#pragma once

#include "framework/ogl/Agl.h"

#include <random>
#include <vector>

namespace Qor::Chart::Ogl::Referee {

/// Random choices, the same ones for the same seed.
class Random {
public:
    explicit Random(unsigned p_seed) : _engine(p_seed) {}

    double In(double p_low, double p_high) { return std::uniform_real_distribution<>(p_low, p_high)(_engine); }
    /// Between 0 and p_count - 1.
    int Index(std::size_t p_count) { return static_cast<int>(_engine() % p_count); }
    bool Chance(double p_share) { return In(0, 1) < p_share; }
    Token OneOf(std::vector<Token> const& p_tokens) { return p_tokens[_engine() % p_tokens.size()]; }
    Agl::Vector3 Point(double p_reach) {
        double const x = In(-p_reach, p_reach);
        double const y = In(-p_reach, p_reach);
        return {x, y, In(-p_reach, p_reach)};
    }
    Agl::Vector3 Direction() {
        Agl::Vector3 const direction = Point(1);
        return Length(direction) > 0.1 ? direction / Length(direction) : Agl::Vector3(0, 0, 1);
    }
    std::uint32_t Bits() { return static_cast<std::uint32_t>(_engine()); }

private:
    std::mt19937 _engine;
};

} // namespace Qor::Chart::Ogl::Referee
