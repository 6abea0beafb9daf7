#pragma once

#include "framework/core/Reference.h"
#include "framework/model/Statistics.h"
#include "render/Export.h"
#include "render/context/FrameStatistics.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"
#include "render/nodes/StatisticsPanel.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Qor::Chart::Render {

/// The visual node of statistics: a panel over the scene of its pane with the figures of the last frame in the view
/// that draws it, as the draw context has them. Figures stay for the model's interval at least and are renewed by the
/// frames that come anyway: the node never asks for one, so it keeps no idle window awake, and what it shows there are
/// the figures of the last frames that there were. Until there is one, and where the host does not measure, there are
/// dashes.
///
/// Between two renewals a frame costs two draws, lays nothing out and allocates nothing. The pointer goes through the
/// panel. Without its model, or while that is not visible, the node shows nothing.
class QOR_VIS_API Statistics : public Vis, public SelectsBelow {
public:
    /// For how many views at once the panel is kept; one more has those of all laid out again and again.
    static constexpr std::size_t MaxViews = 8;

    Statistics();
    ~Statistics() override;

    /// Mirrors a model node from now on. One that is no statistics node is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    /// The rows for the figures of a frame, null for those of none, as the model wants them.
    static StatisticsPanel::Rows RowsOf(Model::Statistics const& p_model, FrameStatistics const* p_figures);

private:
    /// What is shown in one view.
    struct View {
        FrameStatistics const* figures = nullptr; ///< tells the views apart
        std::optional<std::uint64_t> renewed; ///< when, in nanoseconds; nothing before the first time
        std::uint32_t groups = 0; ///< of rows that are shown, a bit for each
        StatisticsPanel panel;
    };

    /// In the last pass of a frame, so that nothing is drawn across the figures: no frame of a pane, no tool tip.
    DrawResult DoHighlightOverlay(DrawContext const& p_context) override;

    View& ViewOf(FrameStatistics const* p_figures);
    static void Renew(View& p_view, Model::Statistics const& p_model);

    Core::WeakRef<Model::Statistics> _model;
    std::vector<View> _views;
    std::size_t _replaced = 0; ///< views that made room for others
};

} // namespace Qor::Chart::Render
