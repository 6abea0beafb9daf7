#pragma once

#include "tests/render/support/UpdateFixture.h"
#include "render/loops/RenderLoop.h"
#include "render/nodes/NodeFactories.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"

#include <cstddef>
#include <vector>

namespace Qor::Chart::Render::Fixtures {

/// A scene graph with its visual tree, brought up to date and drawn as a host does it.
struct SceneFixture : UpdateFixture {
    SceneFixture() { RegisterNodeFactories(generator); }

    Core::Ptr<Model::SimpleObject> AddCube() const {
        auto object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        scene->Add(object);
        return object;
    }

    /// Updates the tree and gives the number of update hooks that ran.
    unsigned Update() {
        if (!root)
            root = generator(scene);
        return UpdateFixture::Update(root).updated;
    }

    /// Draws the base layer and gives the commands that reached the back end.
    std::vector<Ogl::RecordedCommand> Draw(DrawContext::DrawMode p_mode = DrawContext::DrawMode::Draw) {
        agl.Enable(Ogl::Tokens::AGL_DEPTH_TEST);
        DrawContext context = MakeContext(p_mode);
        agl.BeginFrame();
        RenderLoop loop(LayerBase, p_mode);
        loop(root, context);
        drawn = loop.DrawnCount();
        agl.EndFrame();
        return Backend().Commands();
    }

    /// The visual node of the model node at a place among the scene's children.
    Vis& Child(std::size_t p_place = 0) const {
        return **std::next(root->begin(), static_cast<std::ptrdiff_t>(p_place));
    }

    Core::Ptr<Model::SceneGraph> scene = Core::MakeNode<Model::SceneGraph>();
    Core::Ptr<Vis> root;
    unsigned drawn = 0;
};

} // namespace Qor::Chart::Render::Fixtures
