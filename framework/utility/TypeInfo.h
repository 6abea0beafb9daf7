#pragma once

#include "framework/Export.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <typeinfo>

namespace Qor::Chart::Utility {

/// The identity of a type as a value: it can be copied, compared, ordered and used as a key. Default-constructed it is
/// the type void.
class QOR_FRAMEWORK_API TypeInfo {
public:
    TypeInfo() noexcept : _info(&typeid(void)) {}
    TypeInfo(std::type_info const& p_info) noexcept : _info(&p_info) {}

    template <class T>
    static TypeInfo Of() noexcept {
        return typeid(T);
    }

    /// The type's name as it is written in a program, with its namespaces.
    std::string Name() const;

    friend bool operator==(TypeInfo const& p_a, TypeInfo const& p_b) noexcept { return *p_a._info == *p_b._info; }
    friend std::strong_ordering operator<=>(TypeInfo const& p_a, TypeInfo const& p_b) noexcept {
        if (*p_a._info == *p_b._info) {
            return std::strong_ordering::equal;
        }
        return p_a._info->before(*p_b._info) ? std::strong_ordering::less : std::strong_ordering::greater;
    }
    std::size_t Hash() const noexcept { return _info->hash_code(); }

private:
    std::type_info const* _info;
};

/// Writes the name.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, TypeInfo const& p_type);

} // namespace Qor::Chart::Utility

template <>
struct std::hash<Qor::Chart::Utility::TypeInfo> {
    std::size_t operator()(Qor::Chart::Utility::TypeInfo const& p_type) const noexcept { return p_type.Hash(); }
};
