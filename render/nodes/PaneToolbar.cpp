#include "render/nodes/PaneToolbar.h"

#include "framework/utility/Ensure.h"

#include <utility>

namespace Qor::Chart::Render {

using Mode = Model::Pane::ProjectionMode;

ChangeProjectionMode::ChangeProjectionMode(Core::WeakPtr<Model::Pane> p_viewport,
    Core::WeakPtr<Model::Action> p_thisAction, Core::WeakPtr<Model::Action> p_other, Mode p_mode)
    : _viewport(std::move(p_viewport))
    , _thisAction(std::move(p_thisAction))
    , _other(std::move(p_other))
    , _mode(p_mode) {}

void ChangeProjectionMode::operator()() const {
    (void)QOR_ENSURE(!_viewport.Expired() && !_thisAction.Expired() && !_other.Expired());
    Core::Ptr<Model::Pane> const pane = _viewport.Lock();
    if (pane && (pane->GetProjectionMode() != _mode || !pane->IsSet(Model::Pane::ProjectionModeProperty)))
        pane->SetProjectionMode(_mode);
    if (Core::Ptr<Model::Action> const action = _thisAction.Lock())
        action->SetChecked(true);
    if (Core::Ptr<Model::Action> const other = _other.Lock())
        other->SetChecked(false);
}

Core::Ptr<Model::Toolbar> PaneToolbar::Make(Core::Ptr<Model::Pane> const& p_pane, unsigned p_titleHeight) {
    auto toolbar = Core::MakeNode<Model::Toolbar>();
    toolbar->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Right, 0});
    toolbar->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, static_cast<double>(p_titleHeight)});
    toolbar->SetVertical(false);

    auto const ortho = Core::MakeNode<Model::Action>("ortho", L"Orthographic Projection");
    ortho->SetImageFile("Ortho");
    ortho->SetChecked(true);
    auto const perspective = Core::MakeNode<Model::Action>("perspective", L"Perspective Projection");
    perspective->SetImageFile("Perspective");
    toolbar->Add(ortho);
    toolbar->Add(perspective);
    ortho->SetExecute(ChangeProjectionMode(p_pane, ortho, perspective, Mode::Orthographic));
    perspective->SetExecute(ChangeProjectionMode(p_pane, perspective, ortho, Mode::Perspective));
    return toolbar;
}

void PaneToolbar::Follow(Model::Pane const& p_pane, Model::Toolbar const& p_toolbar) {
    auto const actions = p_toolbar.Actions();
    for (std::size_t i = 0; i < actions.size(); ++i) {
        bool const isChecked = static_cast<int>(p_pane.GetProjectionMode()) == static_cast<int>(i);
        if (actions[i]->IsChecked() != isChecked)
            actions[i]->SetChecked(isChecked);
    }
}

} // namespace Qor::Chart::Render
