#pragma once

#include "apps/qorview/Options.h"
#include "framework/core/Ptr.h"
#include "framework/model/ModelNode.h"
#include "framework/model/Pane.h"
#include "framework/types/Viewport.h"
#include "host/CameraNode.h"
#include "host/Scene.h"

#include <vector>

namespace Qor::Chart::QorView {

/// One model in several panes side by side, each seen from another direction: the first one as the options say, the others
/// from the named directions without perspective. The panes can be moved and resized and have title bars.
class PaneGrid {
public:
    /// Puts the panes into the scene, from the upper left one on.
    PaneGrid(Host::Scene& p_scene, Options const& p_options);

    /// What is shown in all panes is added to this.
    Model::ModelNode& Content() { return *_content; }

    /// Looks at all of the content in each pane.
    /// @param p_window  that the scene is drawn into
    void Fit(Types::Viewport<0> const& p_window);

    /// Turns the view of every pane by some degrees around the up axis.
    void Orbit(double p_degrees);

private:
    struct Cell {
        Core::Ptr<Host::CameraNode> camera;
        Core::Ptr<Model::Pane> pane;
    };

    void AddCell(Types::Viewport<1> const& p_place, Host::Camera const& p_camera, std::wstring const& p_title);
    void FitCell(Cell const& p_cell, Render::Vis const& p_pane, Types::Viewport<0> const& p_window) const;

    Host::Scene& _scene;
    QColor _background;
    Core::Ptr<Model::ModelNode> _content;
    std::vector<Cell> _cells;
};

} // namespace Qor::Chart::QorView
