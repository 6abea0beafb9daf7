#include "framework/model/RenderStyle.h"

#include "framework/model/PropertyChecks.h"

#include <array>
#include <cmath>

namespace Qor::Chart::Model {

namespace {

using Filter = Types::TextureUnit::Filter;

std::string CheckShare(double const& p_value) {
    return p_value >= 0 && p_value <= 1 ? "" : "give a number from 0 to 1.";
}

std::string CheckFontSize(double const& p_size) {
    return p_size >= 1 && p_size <= RenderStyle::LargestFont ? "" : "give a number of pixels from 1 to 512.";
}

std::string CheckSize(double const& p_size) {
    return p_size > 0 && p_size <= RenderStyle::LargestSize
        ? ""
        : "give a number of pixels that is more than 0, up to 1024.";
}

std::string CheckEnvironment(RenderStyle::Environment const& p_environment) {
    return p_environment != RenderStyle::Environment::Combine
        ? ""
        : "a style holds no combination; give Modulate, Decal, Replace, Blend or Add.";
}

std::string CheckFilters(TextureFilters const& p_filters) {
    bool const isPlain = p_filters.magnification == Filter::Nearest || p_filters.magnification == Filter::Linear;
    return isPlain ? "" : "no mipmap is larger than the image; give Nearest or Linear for the second filter.";
}

std::string CheckVector(RenderStyle::TextureVector const& p_vector) {
    return std::isfinite(p_vector.x) && std::isfinite(p_vector.y)
        ? ""
        : "a number is infinite or not a number; give two finite ones.";
}

} // namespace

Property<RenderStyle, double> const RenderStyle::OpacityProperty(Field<&RenderStyle::_opacity>,
    {1, "opacity", "From 0, not seen, to 1, as solid as the colour; takes the place of that of an outer style."}, 1,
    CheckShare);

Property<RenderStyle, RenderStyle::AlphaMode> const RenderStyle::AlphaModeProperty(Field<&RenderStyle::_alphaMode>,
    {2, "alphaMode", "What the alpha of colours and textures means."}, AlphaMode::Automatic);

Property<RenderStyle, double> const RenderStyle::AlphaCutoffProperty(Field<&RenderStyle::_alphaCutoff>,
    {3, "alphaCutoff", "Below which alpha a pixel is not seen, for the alpha mode Cutout; from 0 to 1."}, 0.5,
    CheckShare);

Property<RenderStyle, QColor> const RenderStyle::ForegroundColorProperty(Field<&RenderStyle::_foregroundColor>,
    {4, "foregroundColor", "The colour of lines, axes and symbols that name none."}, QColor(60, 60, 60),
    Detail::CheckColor);

Property<RenderStyle, QColor> const RenderStyle::TextColorProperty(Field<&RenderStyle::_textColor>,
    {5, "textColor", "The colour of labels and titles."}, QColor(0, 0, 0), Detail::CheckColor);

Property<RenderStyle, QColor> const RenderStyle::HighlightColorProperty(Field<&RenderStyle::_highlightColor>,
    {6, "highlightColor", "The colour of buttons, fields and grips that the pointer is over."}, QColor(255, 160, 0),
    Detail::CheckColor);

Property<RenderStyle, QColor> const RenderStyle::SelectionColorProperty(Field<&RenderStyle::_selectionColor>,
    {7, "selectionColor", "The colour of what is selected."}, QColor(0, 110, 220), Detail::CheckColor);

Property<RenderStyle, double> const RenderStyle::FontSizeProperty(Field<&RenderStyle::_fontSize>,
    {8, "fontSize", "How high texts are that name no size, in pixels."}, 10, CheckFontSize);

Property<RenderStyle, double> const RenderStyle::LineWidthProperty(
    Field<&RenderStyle::_lineWidth>, {9, "lineWidth", "How wide lines and outlines are, in pixels."}, 1, CheckSize);

Property<RenderStyle, RenderStyle::LinePattern> const RenderStyle::LinePatternProperty(
    Field<&RenderStyle::_linePattern>, {10, "linePattern", "The dashes of lines and outlines."}, LinePattern::Solid);

Property<RenderStyle, bool> const RenderStyle::SmoothLinesProperty(
    Field<&RenderStyle::_smoothLines>, {11, "smoothLines", "Whether the rims of lines are smoothed."}, false);

Property<RenderStyle, double> const RenderStyle::PointSizeProperty(
    Field<&RenderStyle::_pointSize>, {12, "pointSize", "The diameter of points, in pixels."}, 3, CheckSize);

Property<RenderStyle, bool> const RenderStyle::RoundPointsProperty(
    Field<&RenderStyle::_roundPoints>, {13, "roundPoints", "Whether points are round, not square."}, false);

Property<RenderStyle, RenderStyle::PolygonMode> const RenderStyle::PolygonModeProperty(
    Field<&RenderStyle::_polygonMode>, {14, "polygonMode", "What is seen of polygons."}, PolygonMode::Filled);

Property<RenderStyle, RenderStyle::Culling> const RenderStyle::CullingProperty(
    Field<&RenderStyle::_culling>, {15, "culling", "Which side of polygons is left out."}, Culling::None);

Property<RenderStyle, bool> const RenderStyle::LightingProperty(
    Field<&RenderStyle::_lighting>, {16, "lighting", "Whether light falls on things; off, colours are plain."}, true);

Property<RenderStyle, bool> const RenderStyle::VertexColorsProperty(Field<&RenderStyle::_vertexColors>,
    {17, "vertexColors", "Whether symbols whose vertices have colours show these."}, true);

Property<RenderStyle, std::string> const RenderStyle::TextureProperty(Field<&RenderStyle::_texture>,
    {18, "texture", "The path of an image, or \"MODEL#*0\" for one that is part of a model file."}, std::string());

Property<RenderStyle, RenderStyle::Environment> const RenderStyle::TextureEnvironmentProperty(
    Field<&RenderStyle::_textureEnvironment>,
    {19, "textureEnvironment", "How the texture meets the colour underneath."}, Environment::Modulate,
    CheckEnvironment);

Property<RenderStyle, TextureFilters> const RenderStyle::TextureFiltersProperty(Field<&RenderStyle::_textureFilters>,
    {20, "textureFilters", "How the texture is read where it is drawn smaller, and larger, than it is."},
    TextureFilters(), CheckFilters);

Property<RenderStyle, TextureWraps> const RenderStyle::TextureWrapsProperty(Field<&RenderStyle::_textureWraps>,
    {21, "textureWraps", "What lies beyond the edges of the texture, sideways and upwards."}, TextureWraps());

Property<RenderStyle, RenderStyle::TextureVector> const RenderStyle::TextureScaleProperty(
    Field<&RenderStyle::_textureScale>, {22, "textureScale", "How often the image fits sideways and upwards."},
    TextureVector(1, 1), CheckVector);

Property<RenderStyle, RenderStyle::TextureVector> const RenderStyle::TextureOffsetProperty(
    Field<&RenderStyle::_textureOffset>, {23, "textureOffset", "By how much the scaled texture coordinates are moved."},
    TextureVector(), CheckVector);

Property<RenderStyle, std::string> const RenderStyle::SecondTextureProperty(
    Field<&RenderStyle::_secondTexture>, {24, "secondTexture", "An image on top of the first one."}, std::string());

Property<RenderStyle, RenderStyle::Environment> const RenderStyle::SecondTextureEnvironmentProperty(
    Field<&RenderStyle::_secondTextureEnvironment>,
    {25, "secondTextureEnvironment", "How the second texture meets what the first one left."}, Environment::Modulate,
    CheckEnvironment);

Property<RenderStyle, TextureFilters> const RenderStyle::SecondTextureFiltersProperty(
    Field<&RenderStyle::_secondTextureFilters>,
    {26, "secondTextureFilters", "How the second texture is read where it is drawn smaller, and larger, than it is."},
    TextureFilters(), CheckFilters);

Property<RenderStyle, TextureWraps> const RenderStyle::SecondTextureWrapsProperty(
    Field<&RenderStyle::_secondTextureWraps>,
    {27, "secondTextureWraps", "What lies beyond the edges of the second texture."}, TextureWraps());

Property<RenderStyle, RenderStyle::TextureVector> const RenderStyle::SecondTextureScaleProperty(
    Field<&RenderStyle::_secondTextureScale>,
    {28, "secondTextureScale", "How often the second image fits sideways and upwards."}, TextureVector(1, 1),
    CheckVector);

Property<RenderStyle, RenderStyle::TextureVector> const RenderStyle::SecondTextureOffsetProperty(
    Field<&RenderStyle::_secondTextureOffset>,
    {29, "secondTextureOffset", "By how much the scaled coordinates of the second texture are moved."}, TextureVector(),
    CheckVector);

PropertyList const& RenderStyle::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&OpacityProperty, &AlphaModeProperty, &AlphaCutoffProperty, &ForegroundColorProperty, &TextColorProperty,
            &HighlightColorProperty, &SelectionColorProperty, &FontSizeProperty, &LineWidthProperty,
            &LinePatternProperty, &SmoothLinesProperty, &PointSizeProperty, &RoundPointsProperty, &PolygonModeProperty,
            &CullingProperty, &LightingProperty, &VertexColorsProperty, &TextureProperty, &TextureEnvironmentProperty,
            &TextureFiltersProperty, &TextureWrapsProperty, &TextureScaleProperty, &TextureOffsetProperty,
            &SecondTextureProperty, &SecondTextureEnvironmentProperty, &SecondTextureFiltersProperty,
            &SecondTextureWrapsProperty, &SecondTextureScaleProperty, &SecondTextureOffsetProperty});
    return properties;
}

RenderStyle::~RenderStyle() = default;

Core::Ptr<ModelNode> RenderStyle::NewOfSameClass() const {
    return Core::MakeNode<RenderStyle>();
}

std::span<std::string_view const> NamesOf(RenderStyle::AlphaMode) noexcept {
    static constexpr std::array<std::string_view, 4> names{"Automatic", "Opaque", "Cutout", "Blended"};
    return names;
}

std::span<std::string_view const> NamesOf(RenderStyle::LinePattern) noexcept {
    static constexpr std::array<std::string_view, 4> names{"Solid", "Dashed", "Dotted", "DashDotted"};
    return names;
}

std::span<std::string_view const> NamesOf(RenderStyle::PolygonMode) noexcept {
    static constexpr std::array<std::string_view, 3> names{"Filled", "Outlines", "Points"};
    return names;
}

std::span<std::string_view const> NamesOf(RenderStyle::Culling) noexcept {
    static constexpr std::array<std::string_view, 3> names{"None", "Back", "Front"};
    return names;
}

} // namespace Qor::Chart::Model
