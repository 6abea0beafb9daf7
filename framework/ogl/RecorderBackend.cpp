#include "framework/ogl/RecorderBackend.h"

#include <bit>

namespace Qor::Chart::Ogl {

namespace {

/// Number of groups in which two state keys differ.
std::uint64_t Difference(StateKey const& p_a, StateKey const& p_b) {
    auto changes = static_cast<std::uint64_t>(std::popcount(p_a.enables ^ p_b.enables));
    for (std::size_t item = 0; item < StateItem::Count; ++item) {
        changes += p_a.version[item] != p_b.version[item] ? 1U : 0U;
    }
    return changes;
}

void Count(Command const& p_command, Statistics& p_statistics) {
    std::size_t const perPrimitive = IndicesPerPrimitive(p_command.pipeline);
    ++p_statistics.drawCalls;
    if (p_command.kind == Command::Kind::Immediate) {
        ++p_statistics.instances;
        CountPrimitives(p_command, p_command.count / perPrimitive, p_statistics);
        p_statistics.bufferBytes += p_command.count * sizeof(ImmediateVertex);
        return;
    }
    p_statistics.instances += p_command.count;
    p_statistics.bufferBytes += p_command.count * sizeof(Instance);
    CountPrimitives(p_command,
        p_command.count * (p_command.buffer->Assembled(p_command.pipeline).size() / perPrimitive), p_statistics);
}

std::uint64_t BytesOf(VertexData const& p_data) {
    auto const bytes = [](auto const& p_values) { return p_values.size() * sizeof(p_values[0]); };
    std::uint64_t sum = bytes(p_data.positions) + bytes(p_data.normals) + bytes(p_data.colors);
    for (auto const& texCoords : p_data.texCoords) {
        sum += bytes(texCoords);
    }
    return sum;
}

RecordedCommand Copy(CommandList const& p_list, Command const& p_command) {
    RecordedCommand copy;
    copy.kind = p_command.kind;
    copy.pipeline = p_command.pipeline;
    copy.faces = p_command.faces;
    copy.clearMask = p_command.clearMask;
    copy.buffer = p_command.buffer;
    copy.shader = p_command.shader;
    copy.state = p_list.Resolve(p_command);
    if (p_command.kind == Command::Kind::Draw) {
        auto const first = p_list.instances.begin() + p_command.first;
        copy.instances.assign(first, first + p_command.count);
    } else if (p_command.kind == Command::Kind::Immediate) {
        copy.vertices.reserve(p_command.count);
        for (std::uint32_t i = 0; i < p_command.count; ++i) {
            std::uint32_t const vertex = p_list.indices[p_command.first + i];
            copy.vertices.push_back(p_list.vertices[vertex]);
            if (copy.state.UsedTextureUnits() != 0) {
                copy.texCoords.push_back(p_list.texCoords[vertex]);
            }
            if (copy.state.IsLineStippled()) {
                copy.stippleStarts.push_back(p_list.stippleStarts.empty() ? 0 : p_list.stippleStarts[vertex]);
            }
        }
    }
    return copy;
}

} // namespace

RecorderBackend::RecorderBackend(Keep p_keep) : _keep(p_keep) {
    _features.Set(DeviceFeature::PolygonStipple)
        .Set(DeviceFeature::WideLines)
        .Set(DeviceFeature::SmoothPoints)
        .Set(DeviceFeature::Instancing);
    _features.renderer = "recorder";
}

RecorderBackend::~RecorderBackend() = default;

void RecorderBackend::BeginFrame() {
    ++_frames;
    Forget();
}

void RecorderBackend::EndFrame() {}

RecorderBackend::Held& RecorderBackend::HeldFor(DeviceResource const& p_resource, std::uint64_t p_bytes) {
    auto const [entry, isNew] = _held.try_emplace(p_resource.Id());
    if (isNew) {
        p_resource.NotifyWhenGone(_graveyard);
        entry->second.bytes = p_bytes;
        _heldBytes += p_bytes;
    }
    return entry->second;
}

void RecorderBackend::HoldShape(PrimitiveBuffer const& p_buffer, Pipeline p_pipeline) {
    VertexBuffer const& vertices = *p_buffer.Vertices();
    HeldFor(vertices, BytesOf(vertices.Data()));
    Held& shape = HeldFor(p_buffer, 0);
    std::uint32_t const pipeline = 1U << static_cast<unsigned>(p_pipeline);
    if ((shape.pipelines & pipeline) == 0) {
        std::uint64_t const indices = p_buffer.Assembled(p_pipeline).size_bytes();
        shape.pipelines |= pipeline;
        shape.bytes += indices;
        _heldBytes += indices;
    }
}

void RecorderBackend::LetGo() {
    _buried.clear();
    _graveyard->Empty(_buried);
    for (std::uint64_t const id : _buried) {
        if (auto const found = _held.find(id); found != _held.end()) {
            _heldBytes -= found->second.bytes;
            _held.erase(found);
        }
    }
}

void RecorderBackend::Hold(CommandList const& p_commands) {
    LetGo();
    for (std::shared_ptr<Texture const> const& texture : p_commands.Textures()) {
        HeldFor(*texture, static_cast<std::uint64_t>(texture->Image().sizeInBytes()));
    }
    for (Command const& command : p_commands.commands) {
        if (command.kind == Command::Kind::Draw) {
            HoldShape(*command.buffer, command.pipeline);
        }
    }
}

void RecorderBackend::Execute(CommandList const& p_commands, Statistics& p_statistics) {
    Hold(p_commands);
    p_statistics.heldBytes = _heldBytes;
    std::uint32_t state = p_commands.commands.empty() ? 0 : p_commands.commands.front().state;
    for (Command const& command : p_commands.commands) {
        p_statistics.stateChanges += Difference(p_commands.states[state], p_commands.states[command.state]);
        state = command.state;
        if (command.kind != Command::Kind::Clear) {
            Count(command, p_statistics);
        }
        if (_keep == Keep::Commands) {
            _commands.push_back(Copy(p_commands, command));
        }
    }
}

void RecorderBackend::Prepare(Shader const&) {}

QImage RecorderBackend::ReadPixels(PixelRectangle const&) {
    return {};
}

DeviceFeatures const& RecorderBackend::Features() {
    return _features;
}

void RecorderBackend::TakeErrors(std::vector<std::string>&) {}

} // namespace Qor::Chart::Ogl
