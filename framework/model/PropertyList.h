#pragma once

#include "framework/Export.h"
#include "framework/model/PropertyInfo.h"

#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace Qor::Chart::Model {

/// The properties of a class of model nodes: those of its base class first, then its own, in the order of declaration.
class QOR_FRAMEWORK_API PropertyList {
public:
    explicit PropertyList(std::initializer_list<PropertyInfo const*> p_own);
    /// A property whose name or bit is taken already is reported and left out.
    PropertyList(PropertyList const& p_base, std::initializer_list<PropertyInfo const*> p_own);

    std::size_t Size() const noexcept { return _properties.size(); }
    PropertyInfo const& operator[](std::size_t p_index) const noexcept { return *_properties[p_index]; }
    auto begin() const noexcept { return _properties.begin(); }
    auto end() const noexcept { return _properties.end(); }

    /// The property of that name, or null.
    PropertyInfo const* Find(std::string_view p_name) const noexcept;

private:
    void Add(PropertyInfo const& p_property);

    std::vector<PropertyInfo const*> _properties;
};

} // namespace Qor::Chart::Model
