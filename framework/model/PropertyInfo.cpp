#include "framework/model/PropertyInfo.h"

#include "framework/model/ModelNode.h"
#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"

#include <boost/any.hpp>

#include <algorithm>
#include <sstream>
#include <utility>

namespace Qor::Chart::Model {

namespace {

/// A text as a message quotes it: in one line, not too long, and never cut within a UTF-8 character.
std::string Quoted(std::string_view p_text) {
    constexpr std::size_t longest = 60;
    std::size_t size = p_text.size();
    if (size > longest) {
        size = longest;
        while (size > 0 && (static_cast<unsigned char>(p_text[size]) & 0xC0U) == 0x80U)
            --size;
    }
    std::string quoted(p_text.substr(0, size));
    std::replace_if(
        quoted.begin(), quoted.end(), [](char p_sign) { return static_cast<unsigned char>(p_sign) < ' '; }, '?');
    return '"' + quoted + (size < p_text.size() ? "..." : "") + '"';
}

std::string NamesOfBoth(PropertyInfo const& p_property, ModelNode const& p_node) {
    std::ostringstream text;
    text << "property \"" << p_property.Name() << "\" of " << p_node;
    return text.str();
}

} // namespace

PropertyInfo::PropertyInfo(Declaration p_declaration) : _declaration(std::move(p_declaration)) {}

PropertyInfo::~PropertyInfo() = default;

void PropertyInfo::Mark(ModelNode& p_node, bool p_isSet) const {
    if (p_isSet)
        p_node._set |= Mask();
    else
        p_node._set &= ~Mask();
    p_node.TouchThis(Core::IModifiable::ModifiableTypeProperty, Core::IModifiable::ChangeModified,
        Core::IModifiable::RelationshipSelf, {}, Name(), {});
}

std::string PropertyInfo::Refusal(ModelNode const& p_node, std::string const& p_why) const {
    return "The " + NamesOfBoth(*this, p_node) + " is left as it is: " + p_why;
}

void PropertyInfo::ReportRefusal(ModelNode const& p_node, std::string const& p_why) const {
    Utility::GetLogger().error(Refusal(p_node, p_why));
}

void PropertyInfo::ThrowRefusal(ModelNode const& p_node, std::string const& p_why) const {
    throw Utility::Exception(Refusal(p_node, p_why));
}

void PropertyInfo::ThrowBadText(ModelNode const& p_node, std::string_view p_text) const {
    throw Utility::Exception(
        Quoted(p_text) + " is no value for the " + NamesOfBoth(*this, p_node) + ", which takes " + Form() + '.');
}

void PropertyInfo::ThrowWrongNode(ModelNode const& p_node) const {
    std::ostringstream text;
    text << p_node << " has no property \"" << Name() << "\" of this kind; take one from the node's own list.";
    throw Utility::Exception(text.str());
}

} // namespace Qor::Chart::Model
