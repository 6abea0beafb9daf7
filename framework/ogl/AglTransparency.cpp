#include "framework/ogl/Agl.h"

#include <algorithm>
#include <limits>
#include <utility>

// Draws that wait until they can be carried out from back to front.

namespace Qor::Chart::Ogl {

void Agl::BeginTransparency() {
    if (!CheckOutside("BeginTransparency")) {
        return;
    }
    CarryOutTransparent();
    ++_transparencyScopes;
    _keyIsNew = _keyIsNew || (_key.enables & EnableBit::Transparency) != 0; // what follows in that state waits
}

void Agl::EndTransparency() {
    if (!CheckOutside("EndTransparency")) {
        return;
    }
    if (_transparencyScopes == 0) {
        Error("EndTransparency: there is no BeginTransparency that it belongs to; nothing is changed.");
        return;
    }
    CarryOutTransparent();
    --_transparencyScopes;
}

// Each of the two recordings knows which groups were written since it last looked at them.
void Agl::SwitchRecording() {
    Recording& other = _deferred.recording;
    StateMask const writtenMeanwhile = _dirty | _resolved;
    std::swap(_list, other.list);
    std::swap(_key, other.key);
    std::swap(_keyIsNew, other.keyIsNew);
    std::swap(_dirty, other.dirty);
    _dirty |= writtenMeanwhile | StateBit(StateItem::Polygon); // waiting draws draw the backs apart
    _resolved = 0;
    _isDeferring = !_isDeferring;
}

void Agl::CarryOutTransparent() {
    if (_isDeferring) {
        SwitchRecording();
    }
    if (_deferred.IsEmpty() && _deferred.recording.list.states.empty()) {
        return;
    }
    _deferred.Sort();
    for (std::size_t place = 0; place < _deferred.Count(); ++place) {
        _deferred.MoveTo(place, _list);
        if (IsFull()) {
            Flush();
            _deferred.ForgetStates();
        }
    }
    _deferred.Clear(_list);
    _keyIsNew = true;
}

void Agl::DeferInstance(PrimitiveBuffer const& p_buffer) {
    auto const center = p_buffer.Vertices()->Bounds().Center();
    double const* const m = _modelView.back().Data();
    double const depth = m[2] * center.x + m[6] * center.y + m[10] * center.z + m[14];
    _deferred.AddInstance(depth, static_cast<std::uint32_t>(_list.commands.size() - 1),
        static_cast<std::uint32_t>(_list.instances.size() - 1));
}

void Agl::DeferImmediate(Command const& p_command) {
    auto const first = _list.indices.begin() + p_command.first;
    double nearest = -std::numeric_limits<double>::infinity();
    double farthest = std::numeric_limits<double>::infinity();
    std::for_each(first, first + p_command.count, [&](std::uint32_t p_index) {
        Types::Vector4_Base<float> const& position = _list.vertices[p_index].position;
        auto const z = static_cast<double>(position.w != 0 ? position.z / position.w : position.z);
        nearest = std::max(nearest, z);
        farthest = std::min(farthest, z);
    });
    _deferred.AddImmediate(
        (nearest + farthest) / 2 + _state.projection.origin[2], static_cast<std::uint32_t>(_list.commands.size() - 1));
}

} // namespace Qor::Chart::Ogl
