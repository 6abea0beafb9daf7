#pragma once

#include "framework/Export.h"
#include "framework/ogl/Backend.h"

#include <memory>

namespace Qor::Chart::Ogl {

/// The back end that draws with OpenGL 3.3 or later, core or compatibility profile, in whatever context is current when it
/// is used, whoever made it. It can be made without a context; without one, or in one that is too old, nothing is drawn and
/// there is one sentence about it. Device objects belong to the context in which they were made: when another context turns
/// up (a window was re-created, say), shapes and textures are sent again.
class QOR_FRAMEWORK_API OpenGlBackend : public Backend {
public:
    OpenGlBackend();
    /// Frees the device objects when their context is current; else they end with their context.
    ~OpenGlBackend() override;

    void BeginFrame() override;
    void EndFrame() override;
    void Execute(CommandList const& p_commands, Statistics& p_statistics) override;
    void Prepare(Shader const& p_shader) override;
    QImage ReadPixels(PixelRectangle const& p_rectangle) override;
    DeviceFeatures const& Features() override;
    void TakeErrors(std::vector<std::string>& p_errors) override;

    /// Frees the device objects of the current context, which is about to end. Drawing in it again sends everything again.
    void Release();

    /// Device objects (vertex, index, texture and program objects) that exist in the current context.
    std::size_t DeviceObjectCount() const;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace Qor::Chart::Ogl
