#pragma once

#include "render/context/DrawContext.h"
#include "render/core/Vis.h"
#include "framework/ogl/Agl.h"
#include "framework/utility/Scoped.h"

#include <functional>
#include <map>
#include <string>
#include <utility>

namespace Qor::Chart::Render::Fixtures {

/// A node that notes its hooks in a trace, if there is one, and does what it is told in them. A hook is noted by its mark,
/// + for setup, . for drawing and - for teardown, before the node's name. Its setup moves what is below it by 1 along x.
class TraceNode : public Vis {
public:
    using Action = std::function<void(DrawContext const&)>;

    TraceNode(std::string* p_trace, std::string p_name, int p_flags = 0)
        : Vis(VisFlagSelfManaged | p_flags), _trace(p_trace) {
        SetName(std::move(p_name));
        for (auto const callback : {HandledSetup, HandledDraw, HandledTeardown})
            RegisterCB(callback);
        OptimalPaths().SetAll();
        SetActive(true);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }
    using Vis::RegisterCB;
    using Vis::UnregisterCB;

    void Append(Core::Ptr<Vis> const& p_child) {
        struct Hooks : VisHooks {
            using VisHooks::SetHasActiveChildren;
        };
        Add(p_child);
        Hooks::SetHasActiveChildren(*this, true);
    }

    std::map<char, Action> actions; ///< by mark
    DrawResult result = DrawResultDescend;

protected:
    using Agl = Utility::Scoped<Ogl::Agl>;

    void Note(char p_mark, DrawContext const& p_context) {
        if (_trace)
            *_trace += " " + (p_mark + Name());
        if (auto const it = actions.find(p_mark); it != actions.end())
            it->second(p_context);
    }
    void NoteSetup(char p_mark, DrawContext& p_context, Agl& p_agl) {
        p_context.ModelView().Set(p_context.ModelView().Top() * Types::Matrix4::Translation({1, 0, 0}));
        p_agl->LoadMatrix(p_context.ModelView().Top());
        p_agl->PushAttrib(Ogl::Tokens::AGL_ENABLE_BIT);
        Note(p_mark, p_context);
    }
    void NoteTeardown(char p_mark, DrawContext const& p_context, Agl& p_agl) {
        Note(p_mark, p_context);
        p_agl->PopAttrib();
    }

private:
    void DoSetup(DrawContext& p_context, Agl& p_agl) override { NoteSetup('+', p_context, p_agl); }
    DrawResult DoDraw(DrawContext const& p_context) override {
        Note('.', p_context);
        return result;
    }
    void DoTeardown(DrawContext const& p_context, Agl& p_agl) override { NoteTeardown('-', p_context, p_agl); }

    std::string* _trace;
};

} // namespace Qor::Chart::Render::Fixtures
