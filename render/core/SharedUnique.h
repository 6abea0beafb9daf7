#pragma once

#include "render/core/Registrar.h"

#include <memory>

namespace Qor::Chart::Render {

/// An object that the nodes of one scene share: one of its type in a registrar, gone with its last user.
template <class T>
struct SharedUnique {
    /// Null when nobody has it.
    static std::shared_ptr<T> Find(Registrar const& p_registrar) {
        Core::TimeStamp stamp;
        auto const known = p_registrar.GetUnique<std::weak_ptr<T>>(stamp);
        return known ? known->lock() : nullptr;
    }
    /// Makes it, with the handle of its registration, when nobody has it.
    static std::shared_ptr<T> Get(Registrar& p_registrar) {
        if (std::shared_ptr<T> known = Find(p_registrar))
            return known;
        auto made = std::make_shared<T>(p_registrar.RegisterUnique<std::weak_ptr<T>>());
        p_registrar.UpdateUnique(std::weak_ptr<T>(made));
        return made;
    }
};

} // namespace Qor::Chart::Render
