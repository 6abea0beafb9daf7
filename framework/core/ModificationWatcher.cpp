#include "framework/core/ModificationWatcher.h"

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <utility>

namespace Qor::Chart::Core {

ModificationWatcher::ModificationWatcher(WeakPtr<Node> p_node) noexcept : _node(std::move(p_node)), _seen(Now()) {}

struct ModificationWatcherList::Shared {
    std::uint32_t lists = 1;
    bool isTouched = false;
    boost::container::small_vector<ModificationWatcher, 2> watchers;
};

ModificationWatcherList::ModificationWatcherList(ModificationWatcherList const& p_other) noexcept
    : _shared(p_other._shared) {
    if (_shared)
        ++_shared->lists;
}

ModificationWatcherList::ModificationWatcherList(ModificationWatcherList&& p_other) noexcept
    : _shared(std::exchange(p_other._shared, nullptr)) {}

ModificationWatcherList& ModificationWatcherList::operator=(ModificationWatcherList p_other) noexcept {
    std::swap(_shared, p_other._shared);
    return *this;
}

ModificationWatcherList::~ModificationWatcherList() {
    Clear();
}

void ModificationWatcherList::Add(WeakPtr<Node> p_node) {
    Own().watchers.emplace_back(std::move(p_node));
}

void ModificationWatcherList::Clear() noexcept {
    Shared* const shared = std::exchange(_shared, nullptr);
    if (shared && --shared->lists == 0)
        delete shared;
}

void ModificationWatcherList::Touch() {
    Own().isTouched = true;
}

void ModificationWatcherList::Reset() {
    if (!Modified())
        return;
    Shared& own = Own();
    own.isTouched = false;
    for (ModificationWatcher& watcher : own.watchers)
        watcher.Reset();
}

bool ModificationWatcherList::Modified() const noexcept {
    return _shared && (_shared->isTouched || std::ranges::any_of(_shared->watchers, &ModificationWatcher::Modified));
}

bool ModificationWatcherList::Empty() const noexcept {
    return Size() == 0;
}

std::size_t ModificationWatcherList::Size() const noexcept {
    return _shared ? _shared->watchers.size() : 0;
}

/// The block behind this list, made or copied when it is not this list's alone.
ModificationWatcherList::Shared& ModificationWatcherList::Own() {
    if (!_shared) {
        _shared = new Shared;
    } else if (_shared->lists > 1) {
        auto* const copy = new Shared(*_shared);
        copy->lists = 1;
        --_shared->lists;
        _shared = copy;
    }
    return *_shared;
}

} // namespace Qor::Chart::Core
