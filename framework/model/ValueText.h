#pragma once

#include "framework/Export.h"
#include "framework/model/SharedMatrix.h"
#include "framework/types/Vector2.h"
#include "framework/types/Vector3.h"
#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <QColor>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Qor::Chart::Model {

/// How values of a type are written as text and read back, for scene files and tools; independent of the locale. For
/// each type there are
/// - `Write(value)`: the text, from which `Read` gives an equal value;
/// - `Read(text)`: the value, or nothing when the text is none; spaces around it are passed over, except in strings;
/// - `Form()`: what a text must look like, to be put after "takes", such as "true or false".
/// Enumerations name their values, counted from 0, in a function `NamesOf(Enum)` beside them.
template <class T>
struct ValueText;

namespace Detail {

QOR_FRAMEWORK_API std::string WriteChoice(std::span<std::string_view const> p_names, int p_value);
QOR_FRAMEWORK_API std::optional<int> ReadChoice(std::span<std::string_view const> p_names, std::string_view p_text);
QOR_FRAMEWORK_API std::string ChoiceForm(std::span<std::string_view const> p_names);

} // namespace Detail

template <>
struct QOR_FRAMEWORK_API ValueText<bool> {
    static std::string Write(bool p_value);
    static std::optional<bool> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<int> {
    static std::string Write(int p_value);
    static std::optional<int> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<double> {
    static std::string Write(double p_value);
    static std::optional<double> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<std::string> {
    static std::string Write(std::string const& p_value);
    static std::optional<std::string> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<std::wstring> {
    static std::string Write(std::wstring const& p_value);
    static std::optional<std::wstring> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<QColor> {
    static std::string Write(QColor const& p_value);
    static std::optional<QColor> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<std::optional<QColor>> {
    static std::string Write(std::optional<QColor> const& p_value);
    static std::optional<std::optional<QColor>> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<std::vector<QColor>> {
    static std::string Write(std::vector<QColor> const& p_value);
    static std::optional<std::vector<QColor>> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<Types::Vector2_Base<double>> {
    static std::string Write(Types::Vector2_Base<double> const& p_value);
    static std::optional<Types::Vector2_Base<double>> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<Types::Vector3_Base<double>> {
    static std::string Write(Types::Vector3_Base<double> const& p_value);
    static std::optional<Types::Vector3_Base<double>> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<SharedMatrix> {
    static std::string Write(SharedMatrix const& p_value);
    static std::optional<SharedMatrix> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<Types::Viewport<1>> {
    static std::string Write(Types::Viewport<1> const& p_value);
    static std::optional<Types::Viewport<1>> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<Types::XPosition> {
    static std::string Write(Types::XPosition const& p_value);
    static std::optional<Types::XPosition> Read(std::string_view p_text);
    static std::string Form();
};
template <>
struct QOR_FRAMEWORK_API ValueText<Types::YPosition> {
    static std::string Write(Types::YPosition const& p_value);
    static std::optional<Types::YPosition> Read(std::string_view p_text);
    static std::string Form();
};

template <class T>
    requires std::is_enum_v<T>
struct ValueText<T> {
    static std::string Write(T p_value) { return Detail::WriteChoice(NamesOf(T{}), static_cast<int>(p_value)); }
    static std::optional<T> Read(std::string_view p_text) {
        std::optional<int> const value = Detail::ReadChoice(NamesOf(T{}), p_text);
        return value ? std::optional<T>(static_cast<T>(*value)) : std::nullopt;
    }
    static std::string Form() { return Detail::ChoiceForm(NamesOf(T{})); }
};

} // namespace Qor::Chart::Model
