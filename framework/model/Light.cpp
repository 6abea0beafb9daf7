#include "framework/model/Light.h"

#include "framework/model/PropertyChecks.h"

#include <array>

namespace Qor::Chart::Model {

namespace {

using Vector = Light::Vector;

std::string CheckDirection(Vector const& p_direction) {
    if (p_direction == Vector())
        return "a direction of zero length points nowhere; give one of any other length.";
    return Detail::CheckFinite(p_direction);
}

std::string CheckAttenuation(Vector const& p_factors) {
    if (p_factors.x < 0 || p_factors.y < 0 || p_factors.z < 0 || p_factors == Vector())
        return "a factor is negative, or all are zero; give three numbers from 0 on, one of them greater.";
    return Detail::CheckFinite(p_factors);
}

std::string CheckCutoff(double const& p_degrees) {
    return p_degrees >= 0 && p_degrees <= 90 ? "" : "the angle is out of range; give one from 0 to 90 degrees.";
}

std::string CheckExponent(double const& p_exponent) {
    return p_exponent >= 0 && p_exponent <= 128 ? "" : "the exponent is out of range; give one from 0 to 128.";
}

} // namespace

Property<Light, Light::Kind> const Light::KindProperty(
    Field<&Light::_kind>, {1, "kind", "What kind of source the light is."}, Kind::Directional);

Property<Light, Vector> const Light::PositionProperty(Field<&Light::_position>,
    {2, "position", "Where a positional light or a spot stands."}, Vector(), Detail::CheckFinite);

Property<Light, Vector> const Light::DirectionProperty(Field<&Light::_direction>,
    {3, "direction", "The way in which directional light travels and a spot points."}, Vector(0, 0, -1),
    CheckDirection);

Property<Light, QColor> const Light::AmbientProperty(Field<&Light::_ambient>,
    {4, "ambient", "The light that reaches every side of things."}, QColor(0, 0, 0), Detail::CheckColor);

Property<Light, QColor> const Light::DiffuseProperty(Field<&Light::_diffuse>,
    {5, "diffuse", "The light that sides turned towards the source scatter."}, QColor(255, 255, 255),
    Detail::CheckColor);

Property<Light, QColor> const Light::SpecularProperty(Field<&Light::_specular>,
    {6, "specular", "The light of highlights on shiny things."}, QColor(255, 255, 255), Detail::CheckColor);

Property<Light, Vector> const Light::AttenuationProperty(Field<&Light::_attenuation>,
    {7, "attenuation",
        "The constant, linear and quadratic factor by which a positional light or a spot weakens with distance."},
    Vector(1, 0, 0), CheckAttenuation);

Property<Light, double> const Light::SpotCutoffProperty(Field<&Light::_spotCutoff>,
    {8, "spotCutoff", "Half the opening angle of a spot's cone, in degrees."}, 45, CheckCutoff);

Property<Light, double> const Light::SpotExponentProperty(Field<&Light::_spotExponent>,
    {9, "spotExponent", "How much the light of a spot gathers in the middle."}, 0, CheckExponent);

PropertyList const& Light::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&KindProperty, &PositionProperty, &DirectionProperty, &AmbientProperty, &DiffuseProperty, &SpecularProperty,
            &AttenuationProperty, &SpotCutoffProperty, &SpotExponentProperty});
    return properties;
}

Light::~Light() = default;

Core::Ptr<ModelNode> Light::NewOfSameClass() const {
    return Core::MakeNode<Light>();
}

std::span<std::string_view const> NamesOf(Light::Kind) noexcept {
    static constexpr std::array<std::string_view, 3> names{"Directional", "Positional", "Spot"};
    return names;
}

} // namespace Qor::Chart::Model
