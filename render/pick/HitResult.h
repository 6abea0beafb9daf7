#pragma once

#include "framework/ogl/HitRecord.h"

#include <boost/any.hpp>

#include <memory>
#include <vector>

namespace Qor::Chart::Render {

/// What a node answers when it is asked whether a point hits it. A node that draws its primitives into a pick fills it
/// like this:
///
///     Ogl::HitBuffer buffer(2);
///     {
///         Ogl::HitDetect detect(agl, viewport, projection, p_point.position, p_point.tolerance, buffer);
///         Ogl::AutoNameLoader names(detect, Ogl::HitRecord::NameFirst);
///         names.Next();
///         agl->Draw(shape);
///     }
///     p_result.records = buffer.Records();
struct HitResult {
    std::vector<Ogl::HitRecord> records; ///< empty when the node was not hit
    boost::any data; ///< for the node's own later use: copied with the result
    std::shared_ptr<void const> shared; ///< the same, shared by all copies
};

} // namespace Qor::Chart::Render
