#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"
#include "framework/model/TextureReading.h"
#include "framework/types/TextureUnit.h"
#include "framework/types/Vector2.h"

#include <QColor>

#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Qor::Chart::Model {

/// How everything below it looks: colours and sizes, textures, lighting, lines and points, transparency. What is not
/// set (see `IsSet`) stays as it is outside the style, so that styles nest: an inner one overrides what it sets and
/// inherits the rest.
///
///     auto const glass = Core::MakeNode<Model::RenderStyle>();
///     glass->SetOpacity(0.4);
///     glass->Add(ball);
///     scene->Add(glass);
///
/// Lengths are logical pixels. A number that is infinite, not a number or out of its range is refused with a message to
/// the logger.
class QOR_FRAMEWORK_API RenderStyle : public ModelNode {
public:
    using Environment = Types::TextureUnit::Environment;
    using TextureVector = Types::Vector2_Base<double>;

    /// What the alpha of colours and textures means.
    enum class AlphaMode : int {
        Automatic = 0, ///< what lies behind shines through wherever something is not opaque
        Opaque = 1, ///< nothing: all is seen as a whole
        Cutout = 2, ///< a pixel is seen as a whole, or not at all when its alpha is below the cutoff
        Blended = 3, ///< as automatic, also for symbols that could be opaque
    };
    enum class LinePattern : int {
        Solid = 0,
        Dashed = 1,
        Dotted = 2,
        DashDotted = 3,
    };
    /// What is seen of polygons.
    enum class PolygonMode : int {
        Filled = 0,
        Outlines = 1,
        Points = 2,
    };
    /// Which side of polygons is left out.
    enum class Culling : int {
        None = 0,
        Back = 1,
        Front = 2,
    };

    static constexpr double LargestFont = 512;
    static constexpr double LargestSize = 1024; ///< of points, and widest line

    static Property<RenderStyle, double> const OpacityProperty;
    static Property<RenderStyle, AlphaMode> const AlphaModeProperty;
    static Property<RenderStyle, double> const AlphaCutoffProperty;
    static Property<RenderStyle, QColor> const ForegroundColorProperty;
    static Property<RenderStyle, QColor> const TextColorProperty;
    static Property<RenderStyle, QColor> const HighlightColorProperty;
    static Property<RenderStyle, QColor> const SelectionColorProperty;
    static Property<RenderStyle, double> const FontSizeProperty;
    static Property<RenderStyle, double> const LineWidthProperty;
    static Property<RenderStyle, LinePattern> const LinePatternProperty;
    static Property<RenderStyle, bool> const SmoothLinesProperty;
    static Property<RenderStyle, double> const PointSizeProperty;
    static Property<RenderStyle, bool> const RoundPointsProperty;
    static Property<RenderStyle, PolygonMode> const PolygonModeProperty;
    static Property<RenderStyle, Culling> const CullingProperty;
    static Property<RenderStyle, bool> const LightingProperty;
    static Property<RenderStyle, bool> const VertexColorsProperty;
    static Property<RenderStyle, std::string> const TextureProperty;
    static Property<RenderStyle, Environment> const TextureEnvironmentProperty;
    static Property<RenderStyle, TextureFilters> const TextureFiltersProperty;
    static Property<RenderStyle, TextureWraps> const TextureWrapsProperty;
    static Property<RenderStyle, TextureVector> const TextureScaleProperty;
    static Property<RenderStyle, TextureVector> const TextureOffsetProperty;
    static Property<RenderStyle, std::string> const SecondTextureProperty;
    static Property<RenderStyle, Environment> const SecondTextureEnvironmentProperty;
    static Property<RenderStyle, TextureFilters> const SecondTextureFiltersProperty;
    static Property<RenderStyle, TextureWraps> const SecondTextureWrapsProperty;
    static Property<RenderStyle, TextureVector> const SecondTextureScaleProperty;
    static Property<RenderStyle, TextureVector> const SecondTextureOffsetProperty;
    static PropertyList const& ClassProperties();

    RenderStyle() = default;

    /// \name Transparency
    /// @{
    /// From 0 (not seen) to 1 (as solid as its colour); a factor of the alpha of what is drawn. It takes the place of
    /// that of an outer style. Picks take no notice of it.
    double Opacity() const noexcept { return _opacity; }
    bool SetOpacity(double p_opacity) { return OpacityProperty.Set(*this, p_opacity); }
    AlphaMode GetAlphaMode() const noexcept { return _alphaMode; }
    void SetAlphaMode(AlphaMode p_mode) { AlphaModeProperty.Set(*this, p_mode); }
    /// From 0 to 1, for `AlphaMode::Cutout`.
    double AlphaCutoff() const noexcept { return _alphaCutoff; }
    bool SetAlphaCutoff(double p_cutoff) { return AlphaCutoffProperty.Set(*this, p_cutoff); }
    /// @}

    /// \name Colours and sizes of what names none of its own
    /// @{
    QColor const& ForegroundColor() const noexcept { return _foregroundColor; }
    bool SetForegroundColor(QColor const& p_color) { return ForegroundColorProperty.Set(*this, p_color); }
    QColor const& TextColor() const noexcept { return _textColor; }
    bool SetTextColor(QColor const& p_color) { return TextColorProperty.Set(*this, p_color); }
    QColor const& HighlightColor() const noexcept { return _highlightColor; }
    bool SetHighlightColor(QColor const& p_color) { return HighlightColorProperty.Set(*this, p_color); }
    QColor const& SelectionColor() const noexcept { return _selectionColor; }
    bool SetSelectionColor(QColor const& p_color) { return SelectionColorProperty.Set(*this, p_color); }
    /// Rounded to whole pixels; from 1 to `LargestFont`.
    double FontSize() const noexcept { return _fontSize; }
    bool SetFontSize(double p_size) { return FontSizeProperty.Set(*this, p_size); }
    /// @}

    /// \name Lines, points and polygons
    /// @{
    /// More than 0, at most `LargestSize`; outlines of polygons included.
    double LineWidth() const noexcept { return _lineWidth; }
    bool SetLineWidth(double p_width) { return LineWidthProperty.Set(*this, p_width); }
    LinePattern GetLinePattern() const noexcept { return _linePattern; }
    void SetLinePattern(LinePattern p_pattern) { LinePatternProperty.Set(*this, p_pattern); }
    bool HasSmoothLines() const noexcept { return _smoothLines; }
    void SetSmoothLines(bool p_smooth) { SmoothLinesProperty.Set(*this, p_smooth); }
    /// The diameter; more than 0, at most `LargestSize`.
    double PointSize() const noexcept { return _pointSize; }
    bool SetPointSize(double p_size) { return PointSizeProperty.Set(*this, p_size); }
    /// Square ones otherwise.
    bool HasRoundPoints() const noexcept { return _roundPoints; }
    void SetRoundPoints(bool p_round) { RoundPointsProperty.Set(*this, p_round); }
    PolygonMode GetPolygonMode() const noexcept { return _polygonMode; }
    void SetPolygonMode(PolygonMode p_mode) { PolygonModeProperty.Set(*this, p_mode); }
    Culling GetCulling() const noexcept { return _culling; }
    void SetCulling(Culling p_culling) { CullingProperty.Set(*this, p_culling); }
    /// @}

    /// \name Surfaces
    /// @{
    /// Off, everything shows its plain colour.
    bool HasLighting() const noexcept { return _lighting; }
    void SetLighting(bool p_lighting) { LightingProperty.Set(*this, p_lighting); }
    /// Whether symbols whose vertices have colours show these.
    bool HasVertexColors() const noexcept { return _vertexColors; }
    void SetVertexColors(bool p_vertexColors) { VertexColorsProperty.Set(*this, p_vertexColors); }

    /// The path of an image, UTF-8; with "#*" and a number at its end, such as "car.glb#*0", the image of that number
    /// that is part of a model file. Empty, and set, takes away the texture of an outer style.
    std::string const& Texture() const noexcept { return _texture; }
    void SetTexture(std::string p_image) { TextureProperty.Set(*this, std::move(p_image)); }
    /// How the texture meets the colour underneath. A combination is refused: there is no place for its parts.
    Environment TextureEnvironment() const noexcept { return _textureEnvironment; }
    bool SetTextureEnvironment(Environment p_value) { return TextureEnvironmentProperty.Set(*this, p_value); }
    /// A magnification with mipmaps is refused.
    TextureFilters const& GetTextureFilters() const noexcept { return _textureFilters; }
    bool SetTextureFilters(TextureFilters const& p_filters) { return TextureFiltersProperty.Set(*this, p_filters); }
    TextureWraps const& GetTextureWraps() const noexcept { return _textureWraps; }
    void SetTextureWraps(TextureWraps const& p_wraps) { TextureWrapsProperty.Set(*this, p_wraps); }
    /// How often the image fits into the unit square of the texture coordinates: these are scaled first and moved then.
    TextureVector const& TextureScale() const noexcept { return _textureScale; }
    bool SetTextureScale(TextureVector const& p_scale) { return TextureScaleProperty.Set(*this, p_scale); }
    TextureVector const& TextureOffset() const noexcept { return _textureOffset; }
    bool SetTextureOffset(TextureVector const& p_offset) { return TextureOffsetProperty.Set(*this, p_offset); }

    /// The same for a texture on top of the first one.
    std::string const& SecondTexture() const noexcept { return _secondTexture; }
    void SetSecondTexture(std::string p_image) { SecondTextureProperty.Set(*this, std::move(p_image)); }
    Environment SecondTextureEnvironment() const noexcept { return _secondTextureEnvironment; }
    bool SetSecondTextureEnvironment(Environment p_value) {
        return SecondTextureEnvironmentProperty.Set(*this, p_value);
    }
    TextureFilters const& GetSecondTextureFilters() const noexcept { return _secondTextureFilters; }
    bool SetSecondTextureFilters(TextureFilters const& p_filters) {
        return SecondTextureFiltersProperty.Set(*this, p_filters);
    }
    TextureWraps const& GetSecondTextureWraps() const noexcept { return _secondTextureWraps; }
    void SetSecondTextureWraps(TextureWraps const& p_wraps) { SecondTextureWrapsProperty.Set(*this, p_wraps); }
    TextureVector const& SecondTextureScale() const noexcept { return _secondTextureScale; }
    bool SetSecondTextureScale(TextureVector const& p_scale) { return SecondTextureScaleProperty.Set(*this, p_scale); }
    TextureVector const& SecondTextureOffset() const noexcept { return _secondTextureOffset; }
    bool SetSecondTextureOffset(TextureVector const& p_offset) {
        return SecondTextureOffsetProperty.Set(*this, p_offset);
    }
    /// @}

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~RenderStyle() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    AlphaMode _alphaMode = AlphaMode::Automatic;
    LinePattern _linePattern = LinePattern::Solid;
    PolygonMode _polygonMode = PolygonMode::Filled;
    Culling _culling = Culling::None;
    bool _smoothLines = false;
    bool _roundPoints = false;
    bool _lighting = true;
    bool _vertexColors = true;
    double _opacity = 1;
    double _alphaCutoff = 0.5;
    double _fontSize = 10;
    double _lineWidth = 1;
    double _pointSize = 3;
    QColor _foregroundColor{60, 60, 60};
    QColor _textColor{0, 0, 0};
    QColor _highlightColor{255, 160, 0};
    QColor _selectionColor{0, 110, 220};
    std::string _texture;
    Environment _textureEnvironment = Environment::Modulate;
    TextureFilters _textureFilters;
    TextureWraps _textureWraps;
    TextureVector _textureScale{1, 1};
    TextureVector _textureOffset;
    std::string _secondTexture;
    Environment _secondTextureEnvironment = Environment::Modulate;
    TextureFilters _secondTextureFilters;
    TextureWraps _secondTextureWraps;
    TextureVector _secondTextureScale{1, 1};
    TextureVector _secondTextureOffset;
};

QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(RenderStyle::AlphaMode) noexcept;
QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(RenderStyle::LinePattern) noexcept;
QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(RenderStyle::PolygonMode) noexcept;
QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(RenderStyle::Culling) noexcept;

} // namespace Qor::Chart::Model
