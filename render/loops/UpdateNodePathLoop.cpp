#include "render/loops/UpdateNodePathLoop.h"

#include "framework/core/Exceptions.h"
#include "framework/utility/StackLimit.h"

namespace Qor::Chart::Render {

namespace {

[[noreturn, gnu::noinline, gnu::cold]] void ThrowTooDeep(std::size_t p_depth) {
    throw Core::TreeTooDeepExcept("giving the visual nodes their paths", p_depth);
}

} // namespace

void UpdateNodePathLoop::operator()(Core::Ptr<Vis> const& p_root) const {
    if (!p_root)
        return;
    Core::WorkingPath path;
    Update(*p_root, path, Utility::StackLimit::Current());
}

void UpdateNodePathLoop::Update(Vis& p_vis, Core::WorkingPath& p_path, Utility::StackLimit p_limit) {
    bool const needsPath = !p_vis.GetPath().IsDefined();
    if (!needsPath && !HasNewPaths(p_vis))
        return;
    if (p_limit.IsNear())
        ThrowTooDeep(p_path.Size());
    p_path.Push(static_cast<std::int32_t>(p_vis.Id()));
    if (needsPath)
        SetPath(p_vis, p_path.Path());
    for (Core::Ptr<Vis> const& child : p_vis)
        Update(*child, p_path, p_limit);
    p_path.Pop();
    ClearNewPaths(p_vis);
}

} // namespace Qor::Chart::Render
