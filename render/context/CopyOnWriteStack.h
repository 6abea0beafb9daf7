#pragma once

#include "render/context/CheckPointManager.h"

#include <cstddef>
#include <functional>
#include <new>
#include <utility>

namespace Qor::Chart::Utility {

/// One changeable value of a context. Writing it keeps the value that was current when the innermost check point was
/// opened; closing the check point brings that one back. However often a value is written, there is at most one more of
/// it per open check point.
///
/// Values never move: a reference got from Top() keeps naming the same value, which stays unchanged until the check
/// point in which it was written is closed or writes it again. Room once made for a value is kept for later ones, so that
/// a traversal in a steady state allocates nothing here.
template <class T, std::size_t Id, std::size_t N>
class CopyOnWriteStack final : public ICheckPointEntry {
    static_assert(Id < N, "a stack's id must be below the number of entries of its manager");

public:
    /// Called with the value that becomes current again when a check point is closed.
    using ApplyFunction = std::function<void(T const&)>;

    /// @param p_manager  must live longer than the stack
    /// @param p_apply    may be empty
    CopyOnWriteStack(CheckPointManager<N>& p_manager, T p_initial, ApplyFunction p_apply = {})
        : _manager(&p_manager), _apply(std::move(p_apply)) {
        new (static_cast<void*>(_base.storage)) T(std::move(p_initial));
        p_manager.RegisterEntry(Id, this);
    }
    CopyOnWriteStack(CopyOnWriteStack const&) = delete;
    CopyOnWriteStack& operator=(CopyOnWriteStack const&) = delete;
    ~CopyOnWriteStack() {
        Slot* spare = std::exchange(_top->above, nullptr);
        DeleteFrom(spare);
        while (_top != &_base) {
            Slot* const dropped = std::exchange(_top, _top->below);
            dropped->Value().~T();
            delete dropped;
        }
        _base.Value().~T();
    }

    /// The current value.
    T const& Top() const noexcept { return _top->Value(); }

    /// Writes the value. The graphics state is the caller's affair: the apply function is not called.
    void Set(T const& p_value) { Write(p_value); }
    void Set(T&& p_value) { Write(std::move(p_value)); }

    /// Number of values kept: 1, and one more for each open check point in which the stack was written.
    std::size_t Size() const noexcept {
        std::size_t size = 1;
        for (Slot const* slot = _top; slot != &_base; slot = slot->below)
            ++size;
        return size;
    }

    void Restore() override {
        if (_top != &_base) {
            Slot* const dropped = std::exchange(_top, _top->below);
            dropped->Value().~T();
        }
        if (_apply)
            _apply(_top->Value());
    }

private:
    /// Room for one value; rooms above the current one are spare.
    struct Slot {
        Slot* below = nullptr;
        Slot* above = nullptr;
        alignas(T) std::byte storage[sizeof(T)];

        T& Value() noexcept { return *std::launder(reinterpret_cast<T*>(storage)); }
        T const& Value() const noexcept { return *std::launder(reinterpret_cast<T const*>(storage)); }
    };

    template <class U>
    void Write(U&& p_value) {
        if (_manager->Damaged(Id)) {
            _top->Value() = std::forward<U>(p_value);
            return;
        }
        if (!_top->above) {
            _top->above = new Slot;
            _top->above->below = _top;
        }
        new (static_cast<void*>(_top->above->storage)) T(std::forward<U>(p_value));
        _top = _top->above;
        _manager->Touch(Id);
    }

    static void DeleteFrom(Slot* p_slot) noexcept {
        while (p_slot)
            delete std::exchange(p_slot, p_slot->above);
    }

    CheckPointManager<N>* _manager;
    ApplyFunction _apply;
    Slot _base;
    Slot* _top = &_base;
};

} // namespace Qor::Chart::Utility
