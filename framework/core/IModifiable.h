#pragma once

#include "framework/Export.h"
#include "framework/core/TimeStamp.h"
#include "framework/core/WeakPtr.h"

#include <boost/any.hpp>

#include <string>

namespace Qor::Chart::Core {

/// Something that can be changed and asked when it last was.
class QOR_FRAMEWORK_API IModifiable {
public:
    /// What was changed. Libraries above add kinds of their own from 1000 on.
    enum ModifiableType : int {
        ModifiableTypeNode = 0, ///< the child list; the data holds the child or, for ChangeClear, all of them
        ModifiableTypeProperty = 1, ///< a property; the name is the property's
        ModifiableTypeReference = 2, ///< a reference to another node was attached or dropped; the name is its name
        ModifiableTypeName = 3, ///< the node's name
        ModifiableTypeService = 5, ///< a service behind the node was exchanged
        ModifiableTypeGeneric = 1000,
    };

    /// How it was changed.
    enum Change : int {
        ChangeModified = 0,
        ChangeClear = 1, ///< a whole child list left; the data is a `NodeHandles`
        ChangeAdd = 2, ///< a child came; the data is a `WeakPtr<Node>`
        ChangeRemove = 3, ///< a child left; the data is a `WeakPtr<Node>`, possibly expired
    };

    /// How far from the change the receiver stands. Values from 2 on all mean "further away".
    enum Relationship : int {
        RelationshipSelf = 0,
        RelationshipDirect = 1,
        RelationshipFurther = 2,
    };

    virtual ~IModifiable() = default;

    /// Receives a change, the object's own or one of something that it depends on.
    /// @param p_node  the node concerned where the change names one, else empty
    /// @param p_name  the property's or reference's name, or what else was changed
    /// @param p_data  what the kind of change calls for, else empty
    virtual void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        WeakPtr<Node> const& p_node, std::string const& p_name, boost::any const& p_data) = 0;

    /// When the object, or anything it depends on, was last changed; never a default stamp.
    virtual TimeStamp Time() const = 0;

protected:
    IModifiable() = default;
    IModifiable(IModifiable const&) = default;
    IModifiable& operator=(IModifiable const&) = default;
};

} // namespace Qor::Chart::Core
