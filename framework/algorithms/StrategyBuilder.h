#pragma once

#include "framework/core/Ptr.h"
#include "framework/utility/TypeInfo.h"

#include <functional>
#include <map>
#include <type_traits>
#include <utility>

namespace Qor::Chart::Algorithms {

namespace Detail {

/// Asks a handle for the run-time type of what it refers to: the type of the object, not that of the handle.
struct TypeInfoFromPtr {
    /// The type void for an empty handle.
    template <class Handle>
    static Utility::TypeInfo QueryTypeOf(Handle const& p_handle) {
        if (!p_handle) {
            return {};
        }
        auto const& object = *p_handle;
        return typeid(object);
    }
};

} // namespace Detail

/// A registry of factories by type: for an In of a certain run-time type it knows how to make the matching Out. Types are
/// matched exactly; a class that derives from a registered one is not registered by that. Copies are independent.
///
/// @tparam In         base of what is looked up
/// @tparam Out        base of what the factories make
/// @tparam Argument   the handle to an In that factories receive
/// @tparam TypeQuery  tells the type of an Argument, as `Detail::TypeInfoFromPtr` does
template <class In, class Out, class Argument, class TypeQuery>
class StrategyBuilder {
public:
    using Factory = std::function<Core::Ptr<Out>(Argument const&)>;

    /// Registers the factory of one type, a callable that takes an `Argument const&` or a `Core::Ptr<Type> const&`. A type
    /// that is registered already keeps its factory; false then, and for an empty callable.
    template <class Type, class Callable>
    bool Register(Callable p_factory) {
        static_assert(std::is_base_of_v<In, Type>, "Only types derived from In can be looked up");
        Factory factory = Adapt<Type>(std::move(p_factory));
        return factory && _factories.try_emplace(Utility::TypeInfo::Of<Type>(), std::move(factory)).second;
    }

    /// Takes over the other's entries; types that are registered here already keep their factories.
    void Merge(StrategyBuilder const& p_other) {
        _factories.insert(p_other._factories.begin(), p_other._factories.end());
    }
    StrategyBuilder& operator+=(StrategyBuilder const& p_other) {
        Merge(p_other);
        return *this;
    }

    /// The factory for the exact run-time type of what p_argument refers to; an empty callable when there is none. Valid
    /// until the registry changes.
    Factory const& Find(Argument const& p_argument) const {
        static Factory const none;
        auto const found = _factories.find(QueryTypeOf(p_argument));
        return found == _factories.end() ? none : found->second;
    }
    bool IsRegistered(Argument const& p_argument) const { return _factories.contains(QueryTypeOf(p_argument)); }

private:
    static Utility::TypeInfo QueryTypeOf(Argument const& p_argument) { return TypeQuery::QueryTypeOf(p_argument); }

    template <class Type, class Callable>
    static Factory Adapt(Callable p_factory) {
        if constexpr (std::is_invocable_v<Callable&, Argument const&>) {
            return Factory(std::move(p_factory));
        } else {
            return [factory = std::move(p_factory)](
                       Argument const& p_argument) { return factory(Core::StaticCast<Type>(p_argument)); };
        }
    }

    std::map<Utility::TypeInfo, Factory> _factories;
};

} // namespace Qor::Chart::Algorithms
