#pragma once

#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"

namespace Qor::Chart::Render::Fixtures {

/// A cube with edges of length 1.
inline Core::Ptr<Model::SimpleObject> MakeCube(Types::Vector3_Base<double> const& p_at = {}) {
    auto cube = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
    cube->SetTransform(Types::Matrix4::Translation(p_at));
    return cube;
}

/// A place in the parent, all in pixels.
inline Types::Viewport<1> PixelViewport(double p_x, double p_y, double p_width, double p_height) {
    auto const pixels = [](double p_count) { return Types::RelativeLength::Pixels(p_count); };
    return {pixels(p_x), pixels(p_y), pixels(p_width), pixels(p_height)};
}

} // namespace Qor::Chart::Render::Fixtures
