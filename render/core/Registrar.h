#pragma once

#include "framework/core/AnyBase.h"
#include "framework/core/TimeStamp.h"
#include "framework/utility/TypeInfo.h"
#include "render/Export.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <optional>
#include <utility>

namespace Qor::Chart::Render {

/// Objects that nodes share, each with the time of its last change. An object is found by a pair of numbers, or by its
/// type where there is only one of the type. Whoever registers a key gets a handle; the object stays as long as at least
/// one handle for its key exists, also beyond the registrar.
class QOR_VIS_API Registrar {
public:
    using Value = Core::AnyBase<Core::Detail::BoostAny>;
    using Key = std::pair<int, int>;
    /// Keeps a key registered. What is inside concerns nobody.
    using Handle = boost::shared_ptr<Value>;

    Registrar();
    ~Registrar();
    Registrar(Registrar const&) = delete;
    Registrar& operator=(Registrar const&) = delete;

    /// Makes the key known, without an object; one that is known already keeps its object and its time.
    Handle Register(Key const& p_key);
    /// The same for the one object of type T.
    template <class T>
    Handle RegisterUnique() {
        return InternalRegister(Utility::TypeInfo::Of<T>());
    }

    /// The object of a key, with the time of its last change in p_stamp. Nothing when the key is unknown (p_stamp then
    /// stays as it is), has no object yet, or has one that is no T.
    template <class T>
    std::optional<T> GetObject(Key const& p_key, Core::TimeStamp& p_stamp) const {
        return Extract<T>(InternalGetObject(p_key, p_stamp));
    }
    template <class T>
    std::optional<T> GetUnique(Core::TimeStamp& p_stamp) const {
        return Extract<T>(InternalGetUnique(Utility::TypeInfo::Of<T>(), p_stamp));
    }

    /// Puts an object in place of the one before and gives the time of this change. The key must be registered; else
    /// that is reported, nothing is stored and the result is a default stamp.
    template <class T>
    Core::TimeStamp Update(Key const& p_key, T p_object) {
        return InternalUpdate(p_key, Value::Of(std::move(p_object)));
    }
    template <class T>
    Core::TimeStamp UpdateUnique(T p_object) {
        return InternalUpdateUnique(Utility::TypeInfo::Of<T>(), Value::Of(std::move(p_object)));
    }

private:
    struct State;

    template <class T>
    static std::optional<T> Extract(Value const& p_value) {
        T const* const object = p_value.Get<T>();
        return object ? std::optional<T>(*object) : std::nullopt;
    }

    Handle InternalRegister(Utility::TypeInfo const& p_type);
    Value InternalGetObject(Key const& p_key, Core::TimeStamp& p_stamp) const;
    Value InternalGetUnique(Utility::TypeInfo const& p_type, Core::TimeStamp& p_stamp) const;
    Core::TimeStamp InternalUpdate(Key const& p_key, Value const& p_value);
    Core::TimeStamp InternalUpdateUnique(Utility::TypeInfo const& p_type, Value const& p_value);

    std::unique_ptr<State> _state;
};

} // namespace Qor::Chart::Render
