#pragma once

#include "host/CameraNode.h"
#include "host/Scene.h"
#include "framework/model/Group.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"

#include <map>
#include <random>

namespace Qor::Chart::Host {

/// Symbols and nested panes at random, the same ones for the same seed, and a camera that looks at them.
class RandomScene {
public:
    enum class Kind {
        Plain, ///< what can be told by colours: no fronts, panes without decoration
        Decorated, ///< fronts, panes that can be moved, resized and picked
        Mixed ///< fronts, symbols below symbols and in groups, some not to be picked, and panes without extent
    };

    RandomScene(Scene& p_scene, unsigned p_seed, Kind p_kind) : _random(p_seed), _kind(p_kind) {
        AddSymbols(*p_scene.Model(), IsMixed() ? 25 : 150);
        AddPanes(*p_scene.Model(), 3);
        camera = RandomCamera();
    }
    /// Looks at the scene so that it fills the window and goes beyond it.
    void Fit(Scene const& p_scene, Types::Viewport<0> const& p_window) {
        camera.Fit(p_scene.Bounds(), p_window, p_scene.Parts());
        camera.ZoomAbout(1.7, {p_window.width / 2.0, p_window.height / 2.0}, p_window);
    }
    double Number(double p_low, double p_high) {
        return p_low + (p_high - p_low) * (static_cast<double>(_random()) / 4294967295.0);
    }
    int Whole(int p_below) { return static_cast<int>(_random() % static_cast<unsigned>(p_below)); }
    bool OneIn(int p_count) { return Whole(p_count) == 0; }

    /// By colour as it is drawn; the background of a pane has none.
    std::map<QRgb, Model::ModelNode const*> nodes;
    std::size_t panes = 0;
    Camera camera;

private:
    using Vector = Types::Vector3_Base<double>;

    bool IsMixed() const { return _kind == Kind::Mixed; }
    Camera RandomCamera() {
        Camera result;
        result.SetProjectionMode(OneIn(2) ? Render::ProjectionMode::Perspective : Render::ProjectionMode::Orthographic);
        result.Look(Number(-180, 180), Number(-90, 90));
        return result;
    }
    void AddSymbols(Model::ModelNode& p_parent, int p_count) {
        Core::Ptr<Model::Symbol> symbol;
        Types::Matrix4 place;
        for (int i = 0; i < p_count; ++i) {
            if (i == 0 || !OneIn(8)) { // else the same again, in the very same place
                symbol = Core::MakeNode<Model::Symbol>(static_cast<Model::SymbolShape>(1 + Whole(8)));
                auto const extent = [&] { return Number(0.3, 2.5) * (OneIn(4) ? -1 : 1); };
                place = Types::Matrix4::Translation({Number(-4, 4), Number(-4, 4), Number(-4, 4)}) *
                    Types::Matrix4::Rotation(Number(0, 360), Normalized(Vector(Number(-1, 1), Number(-1, 1), 1))) *
                    Types::Matrix4::Scaling({extent(), extent(), extent()});
            }
            auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
            object->SetTransform(place);
            auto const id = static_cast<int>(nodes.size()) + 1;
            QColor const color(40 + id % 200, id / 200, 0);
            object->SetColor(color);
            object->SetFront(_kind != Kind::Plain && OneIn(4));
            object->SetPickable(!IsMixed() || !OneIn(5));
            nodes[color.rgb()] = object.Get();
            p_parent.Add(object);
            if (IsMixed() && OneIn(4))
                AddSymbols(*object, 2);
        }
    }
    void AddPanes(Model::ModelNode& p_parent, int p_levels) {
        for (int i = 0; p_levels > 0 && i < 1 + Whole(3); ++i) {
            auto const pane = Core::MakeNode<Model::Pane>();
            pane->SetViewport(
                {Number(-0.1, 0.6), Number(-0.1, 0.6), IsMixed() && OneIn(8) ? 0 : Number(0.3, 0.7), Number(0.3, 0.7)});
            pane->SetProjectionMode(static_cast<Model::Pane::ProjectionMode>(Whole(2)));
            pane->SetBackgroundColor(QColor(0, 0, 255, OneIn(2) ? 255 : 0));
            pane->SetKeepInsideParent(OneIn(3));
            pane->SetBackgroundPickable(_kind != Kind::Plain && OneIn(2));
            pane->SetMovable(_kind == Kind::Decorated && OneIn(2));
            pane->SetResizable(_kind == Kind::Decorated && OneIn(2));
            AddSymbols(*pane, IsMixed() ? 10 : 25);
            Core::Ptr<Model::ModelNode> content = pane;
            if (IsMixed()) {
                content = Core::MakeNode<Model::Group>();
                AddSymbols(*content, 10);
                pane->Add(content);
            }
            AddPanes(*content, p_levels - 1);
            ++panes;
            if (OneIn(2)) {
                auto const view = Core::MakeNode<CameraNode>();
                view->SetCamera(RandomCamera());
                view->Add(pane);
                p_parent.Add(view);
            } else {
                p_parent.Add(pane);
            }
        }
    }

    std::mt19937 _random;
    Kind _kind;
};

} // namespace Qor::Chart::Host
