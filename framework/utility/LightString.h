#pragma once

#include "framework/Export.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace Qor::Chart::Utility {

/// A text that never changes and costs next to nothing to copy: copies share it, and a literal is not copied at all.
/// Meant for names that many objects carry. Always ends with a zero character.
class QOR_FRAMEWORK_API LightString {
public:
    LightString() noexcept = default;
    /// Refers to a string literal, or to another array of characters that lives for ever.
    template <std::size_t Size>
    constexpr LightString(char const (&p_literal)[Size]) noexcept : _text(p_literal), _size(Size - 1) {}
    template <std::size_t Size>
    LightString(char (&p_buffer)[Size]) = delete;
    /// Copies the text once.
    explicit LightString(std::string_view p_text);
    explicit LightString(std::string const& p_text) : LightString(std::string_view(p_text)) {}

    std::string_view View() const noexcept { return {_text, _size}; }
    char const* CStr() const noexcept { return _text; }
    std::size_t Size() const noexcept { return _size; }
    bool IsEmpty() const noexcept { return _size == 0; }
    std::string ToString() const { return std::string(View()); }
    std::size_t Hash() const noexcept { return std::hash<std::string_view>()(View()); }

    friend bool operator==(LightString const& p_a, LightString const& p_b) noexcept { return p_a.View() == p_b.View(); }
    friend bool operator==(LightString const& p_a, std::string_view p_b) noexcept { return p_a.View() == p_b; }
    friend std::strong_ordering operator<=>(LightString const& p_a, LightString const& p_b) noexcept {
        return p_a.View() <=> p_b.View();
    }
    friend std::strong_ordering operator<=>(LightString const& p_a, std::string_view p_b) noexcept {
        return p_a.View() <=> p_b;
    }

private:
    char const* _text = "";
    std::size_t _size = 0;
    std::shared_ptr<char const> _owner;
};

/// Writes the text.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, LightString const& p_string);

} // namespace Qor::Chart::Utility

template <>
struct std::hash<Qor::Chart::Utility::LightString> {
    std::size_t operator()(Qor::Chart::Utility::LightString const& p_string) const noexcept { return p_string.Hash(); }
};
