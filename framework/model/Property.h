#pragma once

#include "framework/Export.h"
#include "framework/model/PropertyInfo.h"
#include "framework/model/ValueText.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace Qor::Chart::Model {

/// Names the data member in which the nodes keep a property.
template <auto Member>
struct FieldTag {};
template <auto Member>
inline constexpr FieldTag<Member> Field{};

/// A property of type T of the node class Owner.
///
/// A class declares its properties as public static constants, keeps each value in a plain member that starts with the
/// default, and has plain accessors in front of both.
template <class Owner, class T>
class QOR_FRAMEWORK_API Property final : public PropertyInfo {
public:
    /// Says why a value is not allowed, as a sentence, or gives an empty text for one that is.
    using Check = std::string (*)(T const& p_value);

    template <auto Member>
    Property(FieldTag<Member>, Declaration p_declaration, T p_default, Check p_check = nullptr)
        : PropertyInfo(std::move(p_declaration))
        , _default(std::move(p_default))
        , _check(p_check)
        , _field([](Owner& p_node) -> T& { return p_node.*Member; }) {}

    T const& Default() const noexcept { return _default; }

    /// The value that holds for the node, set or default.
    T const& Get(Owner const& p_node) const { return _field(const_cast<Owner&>(p_node)); }

    /// Sets the value and reports the change; a value that is set already and equal is no change. A value that is not
    /// allowed is refused: one sentence goes to the logger, nothing changes, and the result is false.
    bool Set(Owner& p_node, T p_value) const {
        std::string const objection = Objection(p_value);
        if (objection.empty())
            Store(p_node, std::move(p_value));
        else
            ReportRefusal(p_node, objection);
        return objection.empty();
    }

    std::string Form() const override { return ValueText<T>::Form(); }
    std::string DefaultText() const override { return ValueText<T>::Write(_default); }
    std::string Text(ModelNode const& p_node) const override { return ValueText<T>::Write(Get(Own(p_node))); }

    void SetText(ModelNode& p_node, std::string_view p_text) const override {
        Owner& owner = Own(p_node);
        std::optional<T> value = ValueText<T>::Read(p_text);
        if (!value)
            ThrowBadText(p_node, p_text);
        std::string const objection = Objection(*value);
        if (!objection.empty())
            ThrowRefusal(p_node, objection);
        Store(owner, std::move(*value));
    }

    void Reset(ModelNode& p_node) const override {
        Owner& owner = Own(p_node);
        if (!IsSet(p_node))
            return;
        _field(owner) = _default;
        Mark(p_node, false);
    }

    void Copy(ModelNode const& p_from, ModelNode& p_to) const override {
        if (IsSet(p_from))
            Store(Own(p_to), Get(Own(p_from)));
        else
            Reset(p_to);
    }

private:
    std::string Objection(T const& p_value) const { return _check ? _check(p_value) : std::string(); }

    void Store(Owner& p_node, T p_value) const {
        T& field = _field(p_node);
        if (IsSet(p_node) && field == p_value)
            return;
        field = std::move(p_value);
        Mark(p_node, true);
    }

    template <class Node>
    auto& Own(Node& p_node) const {
        using Result = std::conditional_t<std::is_const_v<Node>, Owner const, Owner>;
        auto* const owner = dynamic_cast<Result*>(&p_node);
        if (!owner)
            ThrowWrongNode(p_node);
        return *owner;
    }

    T _default;
    Check _check;
    T& (*_field)(Owner& p_node);
};

} // namespace Qor::Chart::Model
