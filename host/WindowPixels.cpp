#include "host/WindowPixels.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Host {

namespace {

/// A toolkit divides by the ratio what is multiplied by it here; what is lost on the way must not change the pixel.
constexpr double Slack = 1.0 / 1024.0;
constexpr double Farthest = 1e9;

double Usable(double p_ratio) noexcept {
    return std::isfinite(p_ratio) && p_ratio > 0.0 ? p_ratio : 1.0;
}

int Whole(double p_pixels) noexcept {
    return std::isnan(p_pixels) ? 0 : static_cast<int>(std::floor(std::clamp(p_pixels, -Farthest, Farthest)));
}

} // namespace

Types::Pos WindowPixels::ToFramebuffer(double p_x, double p_y) const noexcept {
    double const scale = Usable(ratio);
    return {Whole(p_x * scale + Slack), framebuffer.height - 1 - Whole(p_y * scale + Slack)};
}

Render::PickPoint WindowPixels::ToPickPoint(double p_x, double p_y, double p_tolerance) const noexcept {
    int const tolerance = ToFramebuffer(p_tolerance);
    return {ToFramebuffer(p_x, p_y), {tolerance, tolerance}};
}

int WindowPixels::ToFramebuffer(double p_length) const noexcept {
    return p_length > 0.0 ? std::max(Whole(p_length * Usable(ratio) + 0.5), 1) : 0;
}

} // namespace Qor::Chart::Host
