#include "render/nodes/ColorPickerLayout.h"

#include "render/nodes/ToolbarLayout.h"
#include "framework/algorithms/Hit.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

using Rectangle = ColorPickerLayout::Rectangle;
using Part = ColorPickerLayout::Part;

// Lengths at pixel ratio 1.
constexpr float Margin = 10;
constexpr float Gap = 8;
constexpr float InnerWidth = 200;
constexpr float AreaHeight = 132;
constexpr float SliderHeight = 12;
constexpr float FieldHeight = 22;
constexpr float SwatchWidth = 30;
constexpr float RecentSide = 16;

double Along(double p_begin, double p_length, double p_at) {
    return p_length > 1 ? std::clamp((p_at - p_begin) / (p_length - 1), 0.0, 1.0) : 0;
}

float Pixel(float p_begin, float p_length, double p_part) {
    double const last = std::max(static_cast<double>(p_length) - 1, 0.0);
    return p_begin + static_cast<float>(std::round(last * std::clamp(p_part, 0.0, 1.0))) + 0.5F;
}

} // namespace

Types::Size ColorPickerLayout::PreferredSize(float p_pixelRatio, bool p_hasAlpha) {
    auto const scaled = [&](float p_length) { return static_cast<int>(ToolbarLayout::Scaled(p_length, p_pixelRatio)); };
    int const slider = scaled(Gap) + scaled(SliderHeight);
    return {scaled(InnerWidth) + 2 * scaled(Margin),
        scaled(AreaHeight) + 2 * scaled(Margin) + slider * (p_hasAlpha ? 2 : 1) + 2 * scaled(Gap) +
            scaled(FieldHeight) + scaled(RecentSide)};
}

ColorPickerLayout::ColorPickerLayout(Rectangle const& p_panel, float p_pixelRatio, bool p_hasAlpha) : panel(p_panel) {
    auto const scaled = [&](float p_length) { return ToolbarLayout::Scaled(p_length, p_pixelRatio); };
    float const gap = scaled(Gap);
    float const left = panel.x + scaled(Margin);
    float const width = std::max(panel.width - 2 * scaled(Margin), 0.0F);
    float bottom = panel.y + scaled(Margin);
    auto const row = [&](float p_height) {
        Rectangle const place(left, bottom, width, p_height);
        bottom += p_height + gap;
        return place;
    };
    recents = row(scaled(RecentSide));
    Rectangle const fields = row(scaled(FieldHeight));
    if (p_hasAlpha)
        alpha = row(scaled(SliderHeight));
    hue = row(scaled(SliderHeight));
    area = row(std::max(panel.Top() - scaled(Margin) - bottom, 0.0F));

    former = Rectangle(fields.x, fields.y, scaled(SwatchWidth), fields.height);
    present = Rectangle(former.Right(), fields.y, former.width, fields.height);
    float const textBegin = present.Right() + gap;
    text = Rectangle(textBegin, fields.y, std::max(fields.Right() - textBegin, 0.0F), fields.height);
    for (std::size_t i = 0; i < RecentCount; ++i) {
        float const step = (recents.width - recents.height) / static_cast<float>(RecentCount - 1);
        recent[i] =
            Rectangle(std::round(recents.x + step * static_cast<float>(i)), recents.y, recents.height, recents.height);
        recent[i].Clamp(panel);
    }
    for (Rectangle* const part : {&area, &hue, &alpha, &former, &present, &text, &recents})
        part->Clamp(panel);
}

ColorPickerLayout::Rectangle const& ColorPickerLayout::PlaceOf(Part p_part) const {
    switch (p_part) {
    case Part::Hue:
        return hue;
    case Part::Alpha:
        return alpha;
    case Part::Text:
        return text;
    case Part::Former:
        return former;
    case Part::Recent:
        return recents;
    case Part::Area:
        break;
    }
    return area;
}

std::optional<Part> ColorPickerLayout::PartAt(Types::Pos const& p_pos) const {
    for (Part const part : {Part::Area, Part::Hue, Part::Alpha, Part::Text, Part::Former}) {
        if (Algorithms::Hit::IsHit(PlaceOf(part), p_pos))
            return part;
    }
    return RecentAt(p_pos) ? std::optional(Part::Recent) : std::nullopt;
}

std::optional<std::size_t> ColorPickerLayout::RecentAt(Types::Pos const& p_pos) const {
    for (std::size_t i = 0; i < RecentCount; ++i) {
        if (Algorithms::Hit::IsHit(recent[i], p_pos))
            return i;
    }
    return std::nullopt;
}

double ColorPickerLayout::RightOf(Rectangle const& p_part, Types::Pos const& p_pos) {
    return Along(p_part.x, p_part.width, p_pos.x);
}

double ColorPickerLayout::UpOf(Rectangle const& p_part, Types::Pos const& p_pos) {
    return Along(p_part.y, p_part.height, p_pos.y);
}

float ColorPickerLayout::XOf(Rectangle const& p_part, double p_right) {
    return Pixel(p_part.x, p_part.width, p_right);
}

float ColorPickerLayout::YOf(Rectangle const& p_part, double p_up) {
    return Pixel(p_part.y, p_part.height, p_up);
}

} // namespace Qor::Chart::Render
