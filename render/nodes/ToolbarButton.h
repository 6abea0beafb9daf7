#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/library/Texture.h"
#include "framework/model/Action.h"
#include "render/Export.h"

#include <memory>
#include <string>

namespace Qor::Chart::Render {

class UpdateContext;
class Vis;

/// What a toolbar shows of one action.
struct QOR_VIS_API ToolbarButton {
    Core::WeakPtr<Model::Action> action;
    std::wstring label; ///< shown when there is no texture
    std::wstring tip; ///< what is said about it; empty says nothing
    std::string imageFile; ///< what the texture was made of, or could not be made of
    std::shared_ptr<Library::Texture const> texture;
    bool isSign = false; ///< the texture is white and takes the colour of texts
    bool isEnabled = true;
    bool isChecked = false;

    /// An action as it is now.
    /// @param p_former  what was shown of it before, for its texture; null when it is new
    /// @param p_node    is named in the warning about an image that cannot be had
    static ToolbarButton Of(UpdateContext const& p_context, Core::Ptr<Model::Action> const& p_action,
        ToolbarButton const* p_former, Vis const& p_node);

private:
    void LoadImage(UpdateContext const& p_context, Vis const& p_node);
};

} // namespace Qor::Chart::Render
