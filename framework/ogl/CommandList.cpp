#include "framework/ogl/CommandList.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Qor::Chart::Ogl {

std::uint32_t CommandList::AddVersion(std::size_t p_item, std::byte const* p_bytes) {
    std::vector<std::byte>& versions = (*_versions)[p_item];
    std::size_t const size = State::ItemSize(p_item);
    auto const number = static_cast<std::uint32_t>(versions.size() / size);
    versions.insert(versions.end(), p_bytes, p_bytes + size);
    return number;
}

State CommandList::Resolve(Command const& p_command) const {
    State state;
    StateKey const& key = states[p_command.state];
    for (std::size_t item = 0; item < StateItem::Count; ++item) {
        if (!(*_versions)[item].empty()) {
            std::memcpy(state.Item(item), Version(item, key.version[item]), State::ItemSize(item));
        }
    }
    state.enables = key.enables;
    return state;
}

Texture const* CommandList::FindTexture(std::uint64_t p_id) const {
    auto const found = std::find_if(_textures.begin(), _textures.end(),
        [p_id](std::shared_ptr<Texture const> const& p_texture) { return p_texture->Id() == p_id; });
    return found == _textures.end() ? nullptr : found->get();
}

void CommandList::KeepTexture(std::shared_ptr<Texture const> p_texture) {
    if (FindTexture(p_texture->Id()) == nullptr) {
        _textures.push_back(std::move(p_texture));
    }
}

void CommandList::TakeKept(CommandList& p_other) {
    _kept.insert(
        _kept.end(), std::make_move_iterator(p_other._kept.begin()), std::make_move_iterator(p_other._kept.end()));
    p_other._kept.clear();
}

void CommandList::Pad() {
    if (!texCoords.empty()) {
        texCoords.resize(vertices.size());
    }
    if (!stippleStarts.empty()) {
        stippleStarts.resize(vertices.size());
    }
}

void CommandList::Clear() {
    commands.clear();
    instances.clear();
    vertices.clear();
    texCoords.clear();
    stippleStarts.clear();
    indices.clear();
    states.clear();
    for (std::vector<std::byte>& versions : *_versions) {
        versions.clear();
    }
    _kept.clear();
    _textures.clear();
}

} // namespace Qor::Chart::Ogl
