#pragma once

#include "tests/render/DrawFixture.h"
#include "render/context/UpdateContext.h"
#include "render/core/Registrar.h"
#include "render/loops/Generator.h"
#include "render/loops/RenderLoop.h"
#include "render/loops/UpdateLoop.h"
#include "render/nodes/NodeFactories.h"
#include "render/units/UnitSystemConverter.h"
#include "framework/library/SymbolRegistry.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Qor::Chart::Render::Fixtures {

/// The recorder on a machine whose device may lack a feature.
class FeatureBackend : public Ogl::RecorderBackend {
public:
    explicit FeatureBackend(bool p_hasStipple) {
        _features = RecorderBackend::Features();
        _features.Set(Ogl::DeviceFeature::PolygonStipple, p_hasStipple);
    }
    Ogl::DeviceFeatures const& Features() override { return _features; }

private:
    Ogl::DeviceFeatures _features;
};

/// A scene graph with its visual tree, brought up to date and drawn as a host does it.
struct SceneFixture : DrawFixture {
    SceneFixture() { RegisterNodeFactories(generator); }

    Core::Ptr<Model::SimpleObject> AddCube() const {
        auto object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        scene->Add(object);
        return object;
    }

    void Generate() { root = generator(scene); }

    /// Updates the tree and gives the number of update hooks that ran.
    unsigned Update() {
        if (!root)
            Generate();
        unsigned visited = 0;
        unsigned updated = 0;
        UpdateContext const context(handle, resource, imageCache, schema, numberFormat, registrar, geometry, symbols,
            generator, dispatcher, units, Core::Verbosity::Quiet, capabilities);
        UpdateLoop()(root, context, visited, updated);
        return updated;
    }

    /// Draws the base layer and gives the commands that reached the back end.
    std::vector<Ogl::RecordedCommand> Draw(DrawContext::DrawMode p_mode = DrawContext::DrawMode::Draw) {
        return DrawOn(agl, p_mode);
    }
    std::vector<Ogl::RecordedCommand> DrawOn(
        Ogl::Agl& p_agl, DrawContext::DrawMode p_mode = DrawContext::DrawMode::Draw) {
        handle = Utility::Unscoped<Ogl::Agl>(p_agl);
        p_agl.Enable(Ogl::Tokens::AGL_DEPTH_TEST);
        DrawContext context = MakeContext(p_mode);
        p_agl.BeginFrame();
        RenderLoop loop(LayerBase, p_mode);
        loop(root, context);
        drawn = loop.DrawnCount();
        p_agl.EndFrame();
        return static_cast<Ogl::RecorderBackend&>(p_agl.GetBackend()).Commands();
    }

    /// The visual node of the model node at a place among the scene's children.
    Vis& Child(std::size_t p_place = 0) const {
        return **std::next(root->begin(), static_cast<std::ptrdiff_t>(p_place));
    }

    Library::SymbolRegistry symbols;
    Registrar registrar;
    Generator generator;
    Core::Ptr<UnitSystemConverter> units = Core::MakeNode<UnitSystemConverter>();
    Core::Ptr<Model::SceneGraph> scene = Core::MakeNode<Model::SceneGraph>();
    Core::Ptr<Vis> root;
    unsigned drawn = 0;
};

} // namespace Qor::Chart::Render::Fixtures
