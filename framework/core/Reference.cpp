#include "framework/core/Reference.h"

#include <boost/any.hpp>

namespace Qor::Chart::Core::Detail {

void Reference::TouchOwner() {
    _owner->TouchThis(IModifiable::ModifiableTypeReference, IModifiable::ChangeModified, IModifiable::RelationshipSelf,
        {}, _name, {});
}

} // namespace Qor::Chart::Core::Detail
