#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"
#include "framework/types/Vector3.h"

#include <QColor>

#include <span>
#include <string_view>

namespace Qor::Chart::Model {

/// A source of light, placed in scene coordinates. Colours and numbers mean what they mean to OpenGL's fixed-function
/// lighting. It lights what is drawn outside of panes: a pane lights its scene itself. Values that are not finite or out of their range are refused with a message to the logger.
class QOR_FRAMEWORK_API Light : public ModelNode {
public:
    using Vector = Types::Vector3_Base<double>;

    enum class Kind : int {
        Directional = 0, ///< parallel light, as from the sun
        Positional = 1, ///< light from a point in all directions
        Spot = 2, ///< light from a point within a cone
    };

    static Property<Light, Kind> const KindProperty;
    static Property<Light, Vector> const PositionProperty;
    static Property<Light, Vector> const DirectionProperty;
    static Property<Light, QColor> const AmbientProperty;
    static Property<Light, QColor> const DiffuseProperty;
    static Property<Light, QColor> const SpecularProperty;
    static Property<Light, Vector> const AttenuationProperty;
    static Property<Light, double> const SpotCutoffProperty;
    static Property<Light, double> const SpotExponentProperty;
    static PropertyList const& ClassProperties();

    Light() = default;

    Kind GetKind() const noexcept { return _kind; }
    void SetKind(Kind p_kind) { KindProperty.Set(*this, p_kind); }

    /// Where a positional light or a spot stands.
    Vector const& Position() const noexcept { return _position; }
    bool SetPosition(Vector const& p_position) { return PositionProperty.Set(*this, p_position); }

    /// The way in which directional light travels and a spot points; of any length but zero.
    Vector const& Direction() const noexcept { return _direction; }
    bool SetDirection(Vector const& p_direction) { return DirectionProperty.Set(*this, p_direction); }

    QColor const& Ambient() const noexcept { return _ambient; }
    bool SetAmbient(QColor const& p_color) { return AmbientProperty.Set(*this, p_color); }
    QColor const& Diffuse() const noexcept { return _diffuse; }
    bool SetDiffuse(QColor const& p_color) { return DiffuseProperty.Set(*this, p_color); }
    QColor const& Specular() const noexcept { return _specular; }
    bool SetSpecular(QColor const& p_color) { return SpecularProperty.Set(*this, p_color); }

    /// The factors c, l and q of the intensity 1 / (c + l d + q d²) at the distance d from a positional light or a spot;
    /// none negative and not all zero.
    Vector const& Attenuation() const noexcept { return _attenuation; }
    bool SetAttenuation(Vector const& p_factors) { return AttenuationProperty.Set(*this, p_factors); }

    /// Half the opening angle of a spot's cone, from 0 to 90 degrees.
    double SpotCutoff() const noexcept { return _spotCutoff; }
    bool SetSpotCutoff(double p_degrees) { return SpotCutoffProperty.Set(*this, p_degrees); }

    /// How much the light of a spot gathers in the middle, from 0 (not at all) to 128.
    double SpotExponent() const noexcept { return _spotExponent; }
    bool SetSpotExponent(double p_exponent) { return SpotExponentProperty.Set(*this, p_exponent); }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Light() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    Kind _kind = Kind::Directional;
    QColor _ambient{0, 0, 0};
    QColor _diffuse{255, 255, 255};
    QColor _specular{255, 255, 255};
    Vector _position;
    Vector _direction{0, 0, -1};
    Vector _attenuation{1, 0, 0};
    double _spotCutoff = 45;
    double _spotExponent = 0;
};

QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(Light::Kind) noexcept;

} // namespace Qor::Chart::Model
