#pragma once

#include "framework/ogl/Agl.h"
#include "framework/ogl/StackDepths.h"
#include "framework/utility/Scoped.h"
#include "render/context/UpdateContext.h"
#include "render/core/CallbackTypeBitSet.h"

#include <cstdint>
#include <vector>

namespace Qor::Chart::Render {

class Vis;

/// What one update traversal carries along: its copy of the context, the counters of its caller, what the nodes on the
/// path have gathered so far. While it lives all drawing attributes are pushed.
class UpdateRun {
public:
    /// @param p_visited  nodes reached
    /// @param p_updated  update hooks called
    UpdateRun(UpdateContext const& p_context, unsigned& p_visited, unsigned& p_updated);
    /// Takes back what hooks left on the graphics' stacks.
    ~UpdateRun();
    UpdateRun(UpdateRun const&) = delete;
    UpdateRun& operator=(UpdateRun const&) = delete;

    UpdateContext context;
    std::vector<CallbackTypeBitSet> accumulators; ///< one per node on the path: what its children have work for
    unsigned& visited;
    unsigned& updated;
    /// Whether the children being visited were just asked whether they are enabled. One of them that has not changed
    /// since need not be asked again, which spares the way to its model node.
    bool areChildrenFresh = false;

    /// Takes up what a hook threw; it is the exception that is being handled.
    [[gnu::cold]] void Caught(Vis const& p_vis, char const* p_stage, char const* p_signature, int p_line);

    void PassUp(CallbackTypeBitSet p_paths) {
        if (!accumulators.empty())
            accumulators.back() |= p_paths;
    }

    /// \name The log of the nodes whose hooks run
    /// @{
    void EnterLog(Vis const& p_vis) {
        if (_isLogged)
            Log(p_vis);
    }
    void LeaveLog() {
        if (_isLogged)
            _typePath.pop_back();
    }
    /// @}

private:
    [[gnu::cold]] void Log(Vis const& p_vis);

    Utility::Scoped<Ogl::Agl> _agl;
    Ogl::StackDepths _depths;
    bool _isLogged;
    std::vector<std::uint16_t> _typePath; ///< type numbers of the nodes on the path
};

} // namespace Qor::Chart::Render
