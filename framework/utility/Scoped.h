#pragma once

#include "framework/Export.h"
#include "framework/utility/Unscoped.h"

#include <typeinfo>

namespace Qor::Chart::Utility {

namespace Detail {
[[noreturn]] QOR_FRAMEWORK_API void ThrowEmptyScope(std::type_info const& p_type);
QOR_FRAMEWORK_API void ReportLeaveScope(std::type_info const& p_type) noexcept;
} // namespace Detail

/// The right to use a T until the end of the block: calls T::EnterScope() at its beginning and T::LeaveScope() at its
/// end. Scopes of one object may nest. What LeaveScope throws is reported to the shared logger.
template <class T>
class Scoped {
public:
    /// Throws Exception when the handle is empty, and whatever EnterScope throws; the scope is not entered then.
    explicit Scoped(Unscoped<T> const& p_handle) : _object(p_handle.Get()) {
        if (_object == nullptr) {
            Detail::ThrowEmptyScope(typeid(T));
        }
        _object->EnterScope();
    }
    ~Scoped() {
        if constexpr (noexcept(_object->LeaveScope())) {
            _object->LeaveScope();
        } else {
            try {
                _object->LeaveScope();
            } catch (...) {
                Detail::ReportLeaveScope(typeid(T));
            }
        }
    }
    Scoped(Scoped const&) = delete;
    Scoped& operator=(Scoped const&) = delete;

    T* operator->() const noexcept { return _object; }
    T& operator*() const noexcept { return *_object; }
    /// A handle to the same object, to be kept beyond the scope.
    Unscoped<T> Handle() const noexcept { return Unscoped<T>(_object); }

private:
    T* _object;
};

} // namespace Qor::Chart::Utility
