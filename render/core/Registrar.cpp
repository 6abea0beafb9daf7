#include "render/core/Registrar.h"

#include "framework/utility/Ensure.h"

#include <boost/make_shared.hpp>

#include <map>

namespace Qor::Chart::Render {

namespace {

using Value = Registrar::Value;

/// What all handles of one entry hold in common; the entry goes when the last of them does.
struct Token {};

struct Entry {
    Core::TimeStamp stamp = Core::TimeStamp::Now();
    Value value;
    std::weak_ptr<Token> token;
};

template <class Key>
using EntryMap = std::map<Key, Entry>;

/// Keeps the entry of a key in its map, and the map itself.
template <class Map, class Key>
class EntryHandle {
public:
    EntryHandle(std::shared_ptr<Map> p_map, Key p_key) : _map(std::move(p_map)), _key(std::move(p_key)) {
        auto const it = _map->find(_key);
        if (!QOR_ENSURE(it != _map->end()))
            return;
        _token = it->second.token.lock();
        if (!_token) {
            _token = std::make_shared<Token>();
            it->second.token = _token;
        }
    }
    EntryHandle(EntryHandle const&) = default;
    EntryHandle(EntryHandle&&) noexcept = default;
    EntryHandle& operator=(EntryHandle const&) = delete;
    ~EntryHandle() {
        _token.reset();
        if (!_map)
            return;
        auto const it = _map->find(_key);
        if (it != _map->end() && it->second.token.expired())
            _map->extract(it); // first out of the map, then destroyed: the value may hold handles of this map
    }

private:
    std::shared_ptr<Map> _map;
    Key _key;
    std::shared_ptr<Token> _token;
};

template <class Key>
Registrar::Handle RegisterIn(std::shared_ptr<EntryMap<Key>> const& p_map, Key const& p_key) {
    p_map->try_emplace(p_key);
    return boost::make_shared<Value>(Value::Of(EntryHandle<EntryMap<Key>, Key>(p_map, p_key)));
}

template <class Key>
Value GetFrom(EntryMap<Key> const& p_map, Key const& p_key, Core::TimeStamp& p_stamp) {
    auto const it = p_map.find(p_key);
    if (it == p_map.end())
        return {};
    p_stamp = it->second.stamp;
    return it->second.value;
}

/// The old value is destroyed last, when the entry is complete again.
Core::TimeStamp UpdateEntry(Entry& p_entry, Value p_value) {
    p_entry.stamp.Touch();
    Core::TimeStamp const stamp = p_entry.stamp;
    std::swap(p_entry.value, p_value);
    return stamp;
}

} // namespace

struct Registrar::State {
    std::shared_ptr<EntryMap<Key>> keyMaps = std::make_shared<EntryMap<Key>>();
    std::shared_ptr<EntryMap<Utility::TypeInfo>> typeMaps = std::make_shared<EntryMap<Utility::TypeInfo>>();
};

Registrar::Registrar() : _state(std::make_unique<State>()) {}

Registrar::~Registrar() = default;

Registrar::Handle Registrar::Register(Key const& p_key) {
    return RegisterIn(_state->keyMaps, p_key);
}

Registrar::Handle Registrar::InternalRegister(Utility::TypeInfo const& p_type) {
    return RegisterIn(_state->typeMaps, p_type);
}

Registrar::Value Registrar::InternalGetObject(Key const& p_key, Core::TimeStamp& p_stamp) const {
    return GetFrom(*_state->keyMaps, p_key, p_stamp);
}

Registrar::Value Registrar::InternalGetUnique(Utility::TypeInfo const& p_type, Core::TimeStamp& p_stamp) const {
    return GetFrom(*_state->typeMaps, p_type, p_stamp);
}

Core::TimeStamp Registrar::InternalUpdate(Key const& p_key, Value const& p_value) {
    auto const it = _state->keyMaps->find(p_key);
    if (!QOR_ENSURE(it != _state->keyMaps->end()))
        return {};
    return UpdateEntry(it->second, p_value);
}

Core::TimeStamp Registrar::InternalUpdateUnique(Utility::TypeInfo const& p_type, Value const& p_value) {
    auto const it = _state->typeMaps->find(p_type);
    if (!QOR_ENSURE(it != _state->typeMaps->end()))
        return {};
    return UpdateEntry(it->second, p_value);
}

} // namespace Qor::Chart::Render
