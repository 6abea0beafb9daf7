#include "render/nodes/ToolbarButton.h"

#include "render/context/EventDispatcher.h"
#include "render/context/UpdateContext.h"
#include "framework/assets/BuiltInImages.h"
#include "framework/assets/ImageCache.h"
#include "framework/assets/ImageError.h"
#include "framework/assets/Resource.h"
#include "framework/ogl/Agl.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Scoped.h"

namespace Qor::Chart::Render {

ToolbarButton ToolbarButton::Of(UpdateContext const& p_context, Core::Ptr<Model::Action> const& p_action,
    ToolbarButton const* p_former, Vis const& p_node) {
    ToolbarButton button;
    button.action = p_action;
    button.label = p_action->Label();
    button.tip = p_action->ToolTip().empty() ? p_action->Label() : p_action->ToolTip();
    button.imageFile = p_action->ImageFile();
    button.isEnabled = p_action->IsEnabled();
    button.isChecked = p_action->IsChecked();
    if (p_former && p_former->imageFile == button.imageFile) {
        button.texture = p_former->texture;
        button.isSign = p_former->isSign;
    } else if (!button.imageFile.empty()) {
        button.LoadImage(p_context, p_node);
    }
    return button;
}

void ToolbarButton::LoadImage(UpdateContext const& p_context, Vis const& p_node) {
    qorfile::filepath path = p_context.Resource().ImageFile(imageFile);
    if (path.empty())
        path = imageFile;
    try {
        auto const image = p_context.ImageCache().Image(path);
        Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
        texture = std::make_shared<Library::Texture>(*image, agl, path.string());
        isSign = Assets::BuiltInImages::IsBuiltIn(path.string());
    } catch (Assets::ImageError const& error) {
        p_context.Dispatcher().ReportWarning(p_node, error.what(), Utility::AtLine(__PRETTY_FUNCTION__, __LINE__), 1);
    }
}

} // namespace Qor::Chart::Render
