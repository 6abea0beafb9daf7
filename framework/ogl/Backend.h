#pragma once

#include "framework/Export.h"
#include "framework/ogl/CommandList.h"
#include "framework/ogl/DeviceFeatures.h"
#include "framework/ogl/Statistics.h"

#include <QImage>

#include <cstdint>
#include <string>
#include <vector>

namespace Qor::Chart::Ogl {

/// Adds the primitives that a command draws to the statistics.
inline void CountPrimitives(Command const& p_command, std::uint64_t p_count, Statistics& p_statistics) {
    std::uint64_t const seen = p_command.pipeline == Pipeline::BackThenFront ? p_count / 2 : p_count;
    p_statistics.primitives += seen;
    p_statistics.triangles += IsFilled(p_command.pipeline) ? seen : 0;
}

/// What carries out the commands that an `Agl` records. It is called once per flush, never per state change or draw. No
/// operation throws; what goes wrong is kept as sentences until it is asked for.
class QOR_FRAMEWORK_API Backend {
public:
    Backend() = default;
    virtual ~Backend();
    Backend(Backend const&) = delete;
    Backend& operator=(Backend const&) = delete;

    /// Told before the first and after the last command of a frame.
    virtual void BeginFrame() = 0;
    virtual void EndFrame() = 0;
    /// Carries out all commands in order, adds what it did to the statistics and says there what it holds. Outside of a
    /// frame it leaves the device as it found it by itself.
    virtual void Execute(CommandList const& p_commands, Statistics& p_statistics) = 0;

    /// Makes sure that the shader can be used; if it can't, the shader knows its log afterwards.
    virtual void Prepare(Shader const& p_shader) = 0;
    /// The colours of a rectangle of the current target, top row first, in 32 bits RGBA; null when there is nothing to
    /// read. Pixels outside of the target are undefined.
    virtual QImage ReadPixels(PixelRectangle const& p_rectangle) = 0;
    virtual DeviceFeatures const& Features() = 0;

    /// Moves the sentences about what went wrong to the end of p_errors.
    virtual void TakeErrors(std::vector<std::string>& p_errors) = 0;
};

} // namespace Qor::Chart::Ogl
