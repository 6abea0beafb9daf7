#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Qor::Chart::Model {

class ModelNode;

/// What a class of model nodes knows of one of its properties: name, meaning, default, and how to read and write it as
/// text. There is one such object per class and property; a node itself keeps the value and one bit, which tells whether
/// the value was set or is the default.
class QOR_FRAMEWORK_API PropertyInfo {
public:
    struct Declaration {
        std::uint32_t bit; ///< from 0 to 31, different for all properties that a node has; 0 is `enabled`
        std::string name;
        std::string documentation;
    };

    PropertyInfo(PropertyInfo const&) = delete;
    PropertyInfo& operator=(PropertyInfo const&) = delete;
    virtual ~PropertyInfo();

    std::string const& Name() const noexcept { return _declaration.name; }
    /// One or two sentences for people.
    std::string const& Documentation() const noexcept { return _declaration.documentation; }
    std::uint32_t Bit() const noexcept { return _declaration.bit; }
    std::uint32_t Mask() const noexcept { return std::uint32_t{1} << _declaration.bit; }

    /// What a text for the property must look like, such as "true or false".
    virtual std::string Form() const = 0;
    virtual std::string DefaultText() const = 0;

    /// The value that holds for the node, set or default.
    virtual std::string Text(ModelNode const& p_node) const = 0;

    /// Sets the value. Throws a `Utility::Exception`, and leaves the node as it is, when the text is no such value or the
    /// value is not allowed; its sentence names the node, the property, the text and what is expected.
    virtual void SetText(ModelNode& p_node, std::string_view p_text) const = 0;

    /// Falls back to the default and reports the change; nothing when the value was never set.
    virtual void Reset(ModelNode& p_node) const = 0;

    /// Gives the second node the value of the first, or the default when the first has it not set.
    virtual void Copy(ModelNode const& p_from, ModelNode& p_to) const = 0;

    /// Whether the node has a value of its own.
    bool IsSet(ModelNode const& p_node) const noexcept;

protected:
    explicit PropertyInfo(Declaration p_declaration);

    /// Notes whether the node's value was set and reports the change.
    void Mark(ModelNode& p_node, bool p_isSet) const;

    /// The sentence for a value that was refused.
    std::string Refusal(ModelNode const& p_node, std::string const& p_why) const;
    void ReportRefusal(ModelNode const& p_node, std::string const& p_why) const;
    [[noreturn]] void ThrowRefusal(ModelNode const& p_node, std::string const& p_why) const;
    [[noreturn]] void ThrowBadText(ModelNode const& p_node, std::string_view p_text) const;
    [[noreturn]] void ThrowWrongNode(ModelNode const& p_node) const;

private:
    Declaration _declaration;
};

} // namespace Qor::Chart::Model
