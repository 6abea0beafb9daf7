#include "framework/model/PropertyList.h"

#include "framework/utility/Ensure.h"

#include <algorithm>

namespace Qor::Chart::Model {

PropertyList::PropertyList(std::initializer_list<PropertyInfo const*> p_own) {
    for (PropertyInfo const* const property : p_own)
        Add(*property);
}

PropertyList::PropertyList(PropertyList const& p_base, std::initializer_list<PropertyInfo const*> p_own)
    : _properties(p_base._properties) {
    for (PropertyInfo const* const property : p_own)
        Add(*property);
}

PropertyInfo const* PropertyList::Find(std::string_view p_name) const noexcept {
    auto const found = std::find_if(_properties.begin(), _properties.end(),
        [&](PropertyInfo const* p_property) { return p_property->Name() == p_name; });
    return found == _properties.end() ? nullptr : *found;
}

void PropertyList::Add(PropertyInfo const& p_property) {
    bool const isNew = std::none_of(_properties.begin(), _properties.end(), [&](PropertyInfo const* p_other) {
        return p_other->Name() == p_property.Name() || p_other->Bit() == p_property.Bit();
    });
    if (QOR_ENSURE(isNew && p_property.Bit() < 32))
        _properties.push_back(&p_property);
}

} // namespace Qor::Chart::Model
