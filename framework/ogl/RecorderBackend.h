#pragma once

#include "framework/Export.h"
#include "framework/ogl/Backend.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Ogl {

/// A command as the recorder keeps it: with its state resolved and its data copied.
struct RecordedCommand {
    Command::Kind kind = Command::Kind::Draw;
    Pipeline pipeline = Pipeline::Triangles;
    std::uint8_t faces = FaceBit::Both;
    Token clearMask = 0;
    PrimitiveBuffer const* buffer = nullptr; ///< only to compare: it may be gone
    Shader const* shader = nullptr; ///< only to compare: it may be gone
    State state;
    std::vector<Instance> instances; ///< of a draw
    std::vector<ImmediateVertex> vertices; ///< of an immediate draw, assembled: one per index
    std::vector<ImmediateTexCoords> texCoords; ///< likewise; empty when it is not textured
    std::vector<float> stippleStarts; ///< likewise; empty unless lines are stippled
};

/// A back end without a device, for tests, measurements and machines without OpenGL. It counts what it is told to do as
/// OpenGL would and, unless told otherwise, keeps the commands.
class QOR_FRAMEWORK_API RecorderBackend : public Backend {
public:
    enum class Keep {
        Commands, ///< keep the commands of the current frame
        Counters, ///< only count, as in measurements
    };

    explicit RecorderBackend(Keep p_keep = Keep::Commands);
    ~RecorderBackend() override;

    /// What was carried out since the last `BeginFrame` or `Forget`, in order.
    std::vector<RecordedCommand> const& Commands() const { return _commands; }
    void Forget() { _commands.clear(); }
    /// Frames begun since construction.
    std::size_t Frames() const { return _frames; }

    void BeginFrame() override;
    void EndFrame() override;
    void Execute(CommandList const& p_commands, Statistics& p_statistics) override;
    void Prepare(Shader const& p_shader) override;
    QImage ReadPixels(PixelRectangle const& p_rectangle) override;
    DeviceFeatures const& Features() override;
    void TakeErrors(std::vector<std::string>& p_errors) override;

private:
    /// What a device would hold for a resource.
    struct Held {
        std::uint64_t bytes = 0;
        std::uint32_t pipelines = 0; ///< a bit for each whose indices are there, of a shape
    };

    void Hold(CommandList const& p_commands);
    Held& HeldFor(DeviceResource const& p_resource, std::uint64_t p_bytes);
    void HoldShape(PrimitiveBuffer const& p_buffer, Pipeline p_pipeline);
    void LetGo();

    Keep _keep;
    std::shared_ptr<Graveyard> _graveyard = std::make_shared<Graveyard>();
    std::unordered_map<std::uint64_t, Held> _held;
    std::uint64_t _heldBytes = 0;
    std::vector<std::uint64_t> _buried;
    DeviceFeatures _features;
    std::vector<RecordedCommand> _commands;
    std::size_t _frames = 0;
};

} // namespace Qor::Chart::Ogl
