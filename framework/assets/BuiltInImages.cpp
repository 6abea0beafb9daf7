#include "framework/assets/BuiltInImages.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace Qor::Chart::Assets {

namespace {

constexpr std::string_view Prefix = ":qor/";
constexpr int Size = 64;
constexpr double HalfWidth = 2.5;

struct Stroke {
    double x1;
    double y1;
    double x2;
    double y2;
};

/// A sign as strokes in pixels, the origin in the upper left corner.
struct Sign {
    std::string_view name;
    std::span<Stroke const> strokes;
};

// Straight strokes run through 4k + 2, where they fill whole pixels when the signs are drawn 16 or 32 pixels wide.

/// A window out of which an arrow leads.
constexpr std::array PopOutStrokes{Stroke{30, 14, 10, 14}, Stroke{10, 14, 10, 54}, Stroke{10, 54, 50, 54},
    Stroke{50, 54, 50, 34}, Stroke{28, 36, 54, 10}, Stroke{38, 10, 54, 10}, Stroke{54, 10, 54, 26}};
/// Two windows, one shifted off the other.
constexpr std::array DetachStrokes{Stroke{10, 26, 38, 26}, Stroke{38, 26, 38, 54}, Stroke{38, 54, 10, 54},
    Stroke{10, 54, 10, 26}, Stroke{26, 18, 26, 10}, Stroke{26, 10, 54, 10}, Stroke{54, 10, 54, 38},
    Stroke{54, 38, 46, 38}};
/// A box in parallel projection: the edges to the back are parallel.
constexpr std::array OrthoStrokes{Stroke{10, 22, 42, 22}, Stroke{42, 22, 42, 54}, Stroke{42, 54, 10, 54},
    Stroke{10, 54, 10, 22}, Stroke{10, 22, 22, 10}, Stroke{42, 22, 54, 10}, Stroke{42, 54, 54, 42},
    Stroke{22, 10, 54, 10}, Stroke{54, 10, 54, 42}};
/// A box in perspective: the back is smaller, the edges to it run together.
constexpr std::array PerspectiveStrokes{Stroke{10, 22, 42, 22}, Stroke{42, 22, 42, 54}, Stroke{42, 54, 10, 54},
    Stroke{10, 54, 10, 22}, Stroke{10, 22, 34, 10}, Stroke{42, 22, 54, 10}, Stroke{42, 54, 54, 30},
    Stroke{34, 10, 54, 10}, Stroke{54, 10, 54, 30}};

constexpr std::array Signs{Sign{"PopOut", PopOutStrokes}, Sign{"Detach", DetachStrokes}, Sign{"Ortho", OrthoStrokes},
    Sign{"Perspective", PerspectiveStrokes}};

Sign const* SignOf(std::string_view p_name) {
    auto const found = std::ranges::find(Signs, p_name, &Sign::name);
    return found == Signs.end() ? nullptr : &*found;
}

double Distance(Stroke const& p_stroke, double p_x, double p_y) {
    double const dx = p_stroke.x2 - p_stroke.x1;
    double const dy = p_stroke.y2 - p_stroke.y1;
    double const along = ((p_x - p_stroke.x1) * dx + (p_y - p_stroke.y1) * dy) / (dx * dx + dy * dy);
    double const nearest = std::clamp(along, 0.0, 1.0);
    return std::hypot(p_x - p_stroke.x1 - nearest * dx, p_y - p_stroke.y1 - nearest * dy);
}

int AlphaAt(Sign const& p_sign, double p_x, double p_y) {
    double distance = Size;
    for (Stroke const& stroke : p_sign.strokes) {
        distance = std::min(distance, Distance(stroke, p_x, p_y));
    }
    return static_cast<int>(std::lround(255 * std::clamp(HalfWidth + 0.5 - distance, 0.0, 1.0)));
}

} // namespace

std::string BuiltInImages::PathOf(std::string_view p_name) {
    return SignOf(p_name) ? std::string(Prefix).append(p_name) : std::string();
}

bool BuiltInImages::IsBuiltIn(std::string_view p_path) {
    return p_path.starts_with(Prefix) && SignOf(p_path.substr(Prefix.size()));
}

QImage BuiltInImages::Draw(std::string_view p_path) {
    if (!IsBuiltIn(p_path)) {
        return {};
    }
    Sign const& sign = *SignOf(p_path.substr(Prefix.size()));
    QImage image(Size, Size, QImage::Format_RGBA8888);
    for (int y = 0; y < Size; ++y) {
        for (int x = 0; x < Size; ++x) {
            image.setPixelColor(x, y, QColor(255, 255, 255, AlphaAt(sign, x + 0.5, y + 0.5)));
        }
    }
    return image;
}

} // namespace Qor::Chart::Assets
