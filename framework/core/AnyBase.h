#pragma once

#include <boost/any.hpp>

#include <typeinfo>
#include <utility>

namespace Qor::Chart::Core {

namespace Detail {

/// Keeps a value of any copyable type in a `boost::any`.
class BoostAny {
public:
    template <class T>
    void Set(T p_value) {
        _value = std::move(p_value);
    }
    template <class T>
    T const* Get() const noexcept {
        return boost::any_cast<T>(&_value);
    }
    bool Empty() const noexcept { return _value.empty(); }
    std::type_info const& Type() const noexcept { return _value.type(); }

private:
    boost::any _value;
};

} // namespace Detail

/// A value whose type is known only to who put it in and who takes it out.
template <class Storage>
class AnyBase {
public:
    AnyBase() = default;

    template <class T>
    static AnyBase Of(T p_value) {
        AnyBase any;
        any._storage.Set(std::move(p_value));
        return any;
    }

    bool Empty() const noexcept { return _storage.Empty(); }
    std::type_info const& Type() const noexcept { return _storage.Type(); }

    /// The value when it is a T, else null.
    template <class T>
    T const* Get() const noexcept {
        return _storage.template Get<T>();
    }

private:
    Storage _storage;
};

using Any = AnyBase<Detail::BoostAny>;

} // namespace Qor::Chart::Core
