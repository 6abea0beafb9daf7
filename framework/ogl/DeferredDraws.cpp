#include "framework/ogl/DeferredDraws.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

/// Bits that count up with the number.
std::uint32_t Ordered(float p_number) {
    constexpr std::uint32_t sign = 0x80000000U;
    auto const bits = std::bit_cast<std::uint32_t>(p_number);
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

/// Copies what is there of the numbers [p_from, p_to) to the end of the other array, which is p_size long by then.
template <class T>
void CopyRange(std::vector<T> const& p_source, std::size_t p_from, std::size_t p_to, std::size_t p_size,
    std::vector<T>& p_target) {
    if (p_from >= p_source.size()) {
        return;
    }
    auto const begin = p_source.begin();
    p_target.resize(p_size);
    p_target.insert(p_target.end(), begin + static_cast<std::ptrdiff_t>(p_from),
        begin + static_cast<std::ptrdiff_t>(std::min(p_to, p_source.size())));
}

} // namespace

void DeferredDraws::Add(double p_depth, Draw const& p_draw) {
    auto const depth = static_cast<float>(std::isfinite(p_depth) ? p_depth : 0.0);
    _order.push_back((std::uint64_t(Ordered(depth)) << 32U) | _draws.size());
    _draws.push_back(p_draw);
}

void DeferredDraws::AddInstance(double p_depth, std::uint32_t p_command, std::uint32_t p_instance) {
    Add(p_depth, {p_command, p_instance});
}

void DeferredDraws::AddImmediate(double p_depth, std::uint32_t p_command) {
    Add(p_depth, {p_command, Unknown});
}

// Three passes over eleven bits of the depth each; draws of the same digits keep their order.
void DeferredDraws::Sort() {
    constexpr std::size_t few = 512;
    if (_order.size() < few) {
        std::sort(_order.begin(), _order.end());
        return;
    }
    constexpr unsigned digits = 11;
    constexpr std::uint64_t mask = (1U << digits) - 1;
    std::array<std::uint32_t, mask + 1> places{};
    _scratch.resize(_order.size());
    for (unsigned shift = 32; shift < 64; shift += digits) {
        places.fill(0);
        for (std::uint64_t const draw : _order) {
            ++places[(draw >> shift) & mask];
        }
        std::uint32_t sum = 0;
        for (std::uint32_t& place : places) {
            sum += std::exchange(place, sum);
        }
        for (std::uint64_t const draw : _order) {
            _scratch[places[(draw >> shift) & mask]++] = draw;
        }
        _order.swap(_scratch);
    }
}

void DeferredDraws::MoveTo(std::size_t p_place, CommandList& p_list) {
    Draw const& draw = _draws[static_cast<std::uint32_t>(_order[p_place])];
    Command command = recording.list.commands[draw.command];
    command.state = StateIn(p_list, command.state);
    if (draw.instance == Unknown) {
        MoveImmediate(command, p_list);
    } else {
        MoveInstance(command, draw.instance, p_list);
    }
}

void DeferredDraws::MoveInstance(Command p_command, std::uint32_t p_instance, CommandList& p_list) const {
    p_command.first = static_cast<std::uint32_t>(p_list.instances.size());
    p_command.count = 1;
    p_list.instances.push_back(recording.list.instances[p_instance]);
    if (!p_list.Join(p_command)) {
        p_list.commands.push_back(p_command);
    }
}

// The vertices of a primitive stand together, and so do its indices.
void DeferredDraws::MoveImmediate(Command p_command, CommandList& p_list) const {
    CommandList const& own = recording.list;
    auto const first = own.indices.begin() + p_command.first;
    auto const last = first + p_command.count;
    auto const [lowest, highest] = std::minmax_element(first, last);
    std::size_t const from = *lowest;
    std::size_t const to = std::size_t(*highest) + 1;
    std::size_t const size = p_list.vertices.size();
    CopyRange(own.vertices, from, to, size, p_list.vertices);
    CopyRange(own.texCoords, from, to, size, p_list.texCoords);
    CopyRange(own.stippleStarts, from, to, size, p_list.stippleStarts);
    p_command.first = static_cast<std::uint32_t>(p_list.indices.size());
    for (auto index = first; index != last; ++index) {
        p_list.indices.push_back(static_cast<std::uint32_t>(*index - from + size));
    }
    if (p_command.hasColors) {
        p_list.instances.push_back(own.instances[p_command.colorInstance]);
        p_command.colorInstance = static_cast<std::uint32_t>(p_list.instances.size() - 1);
    }
    if (!p_list.Join(p_command)) {
        p_list.commands.push_back(p_command);
    }
}

std::uint32_t DeferredDraws::StateIn(CommandList& p_list, std::uint32_t p_state) {
    if (_states.empty()) {
        _states.assign(recording.list.states.size(), Unknown);
        for (std::shared_ptr<Texture const> const& texture : recording.list.Textures()) {
            p_list.KeepTexture(texture);
        }
    }
    std::uint32_t& known = _states[p_state];
    if (known == Unknown) {
        StateKey key = recording.list.states[p_state];
        key.enables &= ~EnableBit::Transparency;
        for (std::size_t item = 0; item < StateItem::Count; ++item) {
            if (key.version[item] != StateKey::NoVersion) {
                key.version[item] = VersionIn(p_list, item, key.version[item]);
            }
        }
        known = static_cast<std::uint32_t>(p_list.states.size());
        p_list.states.push_back(key);
    }
    return known;
}

std::uint32_t DeferredDraws::VersionIn(CommandList& p_list, std::size_t p_item, std::uint32_t p_version) {
    std::vector<std::uint32_t>& versions = _versions[p_item];
    if (p_version >= versions.size()) {
        versions.resize(std::size_t(p_version) + 1, Unknown);
    }
    if (versions[p_version] == Unknown) {
        versions[p_version] = p_list.AddVersion(p_item, recording.list.Version(p_item, p_version));
    }
    return versions[p_version];
}

void DeferredDraws::ForgetStates() {
    _states.clear();
    for (std::vector<std::uint32_t>& versions : _versions) {
        versions.clear();
    }
}

void DeferredDraws::Clear(CommandList& p_list) {
    ForgetStates();
    p_list.TakeKept(recording.list);
    recording.list.Clear();
    recording.key.version.fill(StateKey::NoVersion);
    recording.keyIsNew = true;
    recording.dirty = Recording::AllGroups;
    _draws.clear();
    _order.clear();
}

} // namespace Qor::Chart::Ogl
