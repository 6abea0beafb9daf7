#pragma once

#include "framework/core/ModificationWatcher.h"
#include "framework/core/Reference.h"
#include "framework/model/RenderStyle.h"
#include "framework/ogl/GenericShader.h"
#include "render/Export.h"
#include "render/context/DrawContext.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"

#include <array>
#include <memory>

namespace Qor::Chart::Types {
struct TextureUnit;
}

namespace Qor::Chart::Render {

class StyleTextures;
struct StyleTexture;

/// The visual node of a render style: its setup writes what the model sets, and nothing else, for its subtree, on top
/// of what an outer style wrote. The schema, both texture units and the state of the shader are handed down in the
/// context; lines, points, polygons and lighting are set in the graphics, and so are the texture units, but for being
/// on: what draws symbols turns those on that it has coordinates for. Overlay passes take the context alone.
///
/// An image that cannot be had is reported once, and the subtree is drawn without it. What is transparent is sorted;
/// see `Ogl::Agl::BeginTransparency`.
class QOR_VIS_API RenderStyle : public Vis, public SelectsBelow {
public:
    RenderStyle();
    ~RenderStyle() override;

    /// Mirrors a model node from now on. One that is no render style is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

private:
    static constexpr std::size_t Units = 2;

    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    void DoSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    void DoTeardown(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;

    void LoadTexture(UpdateContext const& p_context, std::size_t p_unit, std::string const& p_name);
    void WriteContext(DrawContext& p_context, Model::RenderStyle const& p_model);
    void WriteShader(DrawContext& p_context, Model::RenderStyle const& p_model);
    Ogl::GenericShader::State StateUnder(Ogl::GenericShader::State const& p_outer, DrawContext const& p_context,
        Model::RenderStyle const& p_model) const;
    void ChangeUnit(Types::TextureUnit& p_unit, std::size_t p_number, Model::RenderStyle const& p_model) const;
    void SetUpUnit(Ogl::Agl& p_agl, std::size_t p_number, Types::TextureUnit const& p_unit);

    Core::WeakRef<Model::RenderStyle> _model;
    Core::ModificationWatcherList _watchers;
    std::shared_ptr<StyleTextures> _loader; ///< empty while no image is named
    std::array<std::shared_ptr<StyleTexture const>, Units> _textures; ///< the model's own, where they could be loaded
    std::array<bool, Units> _hasPushedMatrix{}; ///< by the setup of the present pass
    bool _hasPushedAttributes = false;
    DrawContext::GenericShaderEntry _outerShader; ///< what the style's own entry was made of
    DrawContext::GenericShaderEntry _shader;
};

} // namespace Qor::Chart::Render
