#include "render/nodes/Statistics.h"

#include "render/nodes/OverlayShapes.h"

#include "render/context/DrawContext.h"
#include "render/context/SceneCapabilities.h"
#include "framework/qordebug/highrestimer.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Rows = StatisticsPanel::Rows;

/// Appends the rows of a group to the others.
class RowList {
public:
    explicit RowList(FrameStatistics const* p_figures) : _figures(p_figures) {}

    void BeginGroup() { _isFirst = true; }
    /// @param p_value  gives the figure of a frame
    template <class Value>
    void Add(char const* p_name, Value const& p_value) {
        rows.push_back({p_name, _figures ? p_value(*_figures) : CompactNumber::Dash(), std::exchange(_isFirst, false)});
    }

    Rows rows;

private:
    FrameStatistics const* _figures;
    bool _isFirst = false;
};

void AddTimes(RowList& p_list) {
    using Figures = FrameStatistics;
    auto const add = [&](char const* p_name, auto const& p_value) {
        p_list.Add(p_name, [&](Figures const& p_figures) { return CompactNumber::Milliseconds(p_value(p_figures)); });
    };
    auto const pass = [](Figures::PassName p_pass) {
        return [p_pass](Figures const& p_figures) { return p_figures.passes[p_pass].milliseconds; };
    };
    p_list.BeginGroup();
    add("Update", [](Figures const& p_figures) { return p_figures.updateMilliseconds; });
    add("Paths", [](Figures const& p_figures) { return p_figures.pathMilliseconds; });
    add("Draw", pass(Figures::BaseDraw));
    add("Highlight", pass(Figures::BaseHighlight));
    add("Overlay", pass(Figures::OverlayDraw));
    add("Overlay highlight", pass(Figures::OverlayHighlight));
    add("Finish", [](Figures const& p_figures) { return p_figures.finishMilliseconds; });
    add("Total", [](Figures const& p_figures) {
        return p_figures.updateMilliseconds + p_figures.pathMilliseconds + p_figures.DrawMilliseconds();
    });
}

template <class Value>
void AddCount(RowList& p_list, char const* p_name, Value const& p_value) {
    p_list.Add(p_name, [&](FrameStatistics const& p_figures) { return CompactNumber::Count(p_value(p_figures)); });
}

void AddNodes(RowList& p_list) {
    using Figures = FrameStatistics;
    p_list.BeginGroup();
    AddCount(p_list, "Nodes visited", [](Figures const& p_figures) { return p_figures.visited; });
    AddCount(p_list, "Nodes updated", [](Figures const& p_figures) { return p_figures.updated; });
    AddCount(p_list, "Nodes drawn", [](Figures const& p_figures) { return p_figures.Drawn(); });
}

void AddDrawing(RowList& p_list) {
    using Figures = FrameStatistics;
    p_list.BeginGroup();
    AddCount(p_list, "Draw calls", [](Figures const& p_figures) { return p_figures.graphics.drawCalls; });
    AddCount(p_list, "Instances", [](Figures const& p_figures) { return p_figures.graphics.instances; });
    AddCount(p_list, "Triangles", [](Figures const& p_figures) { return p_figures.graphics.triangles; });
}

std::uint32_t GroupsOf(Model::Statistics const& p_model) {
    std::uint32_t groups = 0;
    for (bool const isShown : {p_model.ShowsRate(), p_model.ShowsTimes(), p_model.ShowsNodes(), p_model.ShowsDrawing(),
             p_model.ShowsMemory()})
        groups = 2 * groups + (isShown ? 1 : 0);
    return groups;
}

} // namespace

Statistics::Statistics() : Vis(VisFlagSecond | VisFlagSelfManaged), _model(*this, "model") {
    SetLayer(HighestLayer);
    RegisterCB(HandledHighlightOverlay);
}

Statistics::~Statistics() = default;

void Statistics::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> Statistics::SourceModel() const {
    return _model.Get();
}

Rows Statistics::RowsOf(Model::Statistics const& p_model, FrameStatistics const* p_figures) {
    RowList list(p_figures);
    if (p_model.ShowsRate()) {
        list.BeginGroup();
        list.Add(
            "Frame rate", [](FrameStatistics const& p_frame) { return CompactNumber::Rate(p_frame.framesPerSecond); });
    }
    if (p_model.ShowsTimes())
        AddTimes(list);
    if (p_model.ShowsNodes())
        AddNodes(list);
    if (p_model.ShowsDrawing())
        AddDrawing(list);
    if (p_model.ShowsMemory()) {
        list.BeginGroup();
        list.Add("Memory on device",
            [](FrameStatistics const& p_frame) { return CompactNumber::Bytes(p_frame.graphics.heldBytes); });
    }
    return std::move(list.rows);
}

Statistics::View& Statistics::ViewOf(FrameStatistics const* p_figures) {
    auto const found = std::ranges::find(_views, p_figures, &View::figures);
    if (found != _views.end())
        return *found;
    bool const hasRoom = _views.size() < MaxViews;
    View& view = hasRoom ? _views.emplace_back() : _views[_replaced++ % MaxViews];
    view = View();
    view.figures = p_figures;
    return view;
}

void Statistics::Renew(View& p_view, Model::Statistics const& p_model) {
    std::uint32_t const groups = GroupsOf(p_model);
    std::uint64_t const now = qordebug::now();
    bool const isOld = !p_view.renewed || static_cast<double>(now - *p_view.renewed) / 1e6 >= p_model.Interval();
    if (!isOld && p_view.groups == groups)
        return;
    p_view.panel.SetRows(RowsOf(p_model, p_view.figures));
    p_view.groups = groups;
    p_view.renewed = now;
}

DrawResult Statistics::DoHighlightOverlay(DrawContext const& p_context) {
    Model::Statistics const* const model = _model.Peek();
    Types::Viewport<0> const& pane = p_context.Viewport().Top();
    if (!model || !model->IsVisible() || pane.IsEmpty())
        return DrawResultDescend;
    View& view = ViewOf(p_context.LastFrame());
    Renew(view, *model);
    view.panel.SetPlace(
        p_context, {pane.Extent(), model->GetXPosition(), model->GetYPosition(), OverlayShapes::PixelRatio(p_context)});
    view.panel.Draw(p_context);
    return DrawResultDescend;
}

} // namespace Qor::Chart::Render
