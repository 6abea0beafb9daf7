#include "framework/model/SimpleObject.h"

#include "framework/model/PropertyChecks.h"

#include <utility>

namespace Qor::Chart::Model {

namespace {

std::string CheckTransform(SharedMatrix const& p_transform) {
    if (!p_transform->IsFinite())
        return "the matrix has an element that is infinite or not a number; give sixteen finite numbers.";
    return p_transform->IsAffine() ? "" : "the matrix is not affine; give one whose last row is 0 0 0 1.";
}

} // namespace

Property<SimpleObject, SharedMatrix> const SimpleObject::TransformProperty(Field<&SimpleObject::_transform>,
    {1, "transform", "From the symbol's coordinates to the scene's, in metres: any affine matrix."}, SharedMatrix(),
    CheckTransform);

Property<SimpleObject, QColor> const SimpleObject::ColorProperty(Field<&SimpleObject::_color>,
    {2, "color", "The colour of the whole object."}, QColor(200, 200, 200), Detail::CheckColor);

Property<SimpleObject, bool> const SimpleObject::PulseProperty(Field<&SimpleObject::_pulse>,
    {3, "pulse", "Whether the object's brightness swells and fades, to catch the eye."}, false);

Property<SimpleObject, bool> const SimpleObject::PickableProperty(
    Field<&SimpleObject::_pickable>, {4, "pickable", "Whether the pointer finds the object."}, true);

Property<SimpleObject, bool> const SimpleObject::FrontProperty(Field<&SimpleObject::_front>,
    {5, "front", "Whether a pickable object is drawn after, and found before, those around it."}, false);

Property<SimpleObject, bool> const SimpleObject::VisibleBehindGeometryProperty(
    Field<&SimpleObject::_visibleBehindGeometry>,
    {6, "visibleBehindGeometry", "Whether the object shimmers through what is in front of it."}, false);

PropertyList const& SimpleObject::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&TransformProperty, &ColorProperty, &PulseProperty, &PickableProperty, &FrontProperty,
            &VisibleBehindGeometryProperty});
    return properties;
}

SimpleObject::SimpleObject() : _symbol(*this, "symbol") {}

SimpleObject::SimpleObject(Core::Ptr<Symbol> p_symbol) : SimpleObject() {
    SetSymbol(std::move(p_symbol));
}

SimpleObject::~SimpleObject() = default;

void SimpleObject::SetSymbol(Core::Ptr<Symbol> p_symbol) {
    _symbol.Attach(std::move(p_symbol));
}

Core::Ptr<ModelNode> SimpleObject::NewOfSameClass() const {
    return Core::MakeNode<SimpleObject>();
}

void SimpleObject::CopyTo(ModelNode& p_clone) const {
    static_cast<SimpleObject&>(p_clone).SetSymbol(GetSymbol());
}

} // namespace Qor::Chart::Model
