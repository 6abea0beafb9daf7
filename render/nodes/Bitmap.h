#pragma once

#include "framework/core/ModificationWatcher.h"
#include "framework/core/Reference.h"
#include "framework/library/Texture.h"
#include "framework/model/Bitmap.h"
#include "framework/qorfile/filepath.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"

#include <memory>

namespace Qor::Chart::Render {

/// The visual node of a bitmap: one image over the scene of its pane, as large as fits with its sides in proportion, in
/// the middle of the pane. Parts of it that are transparent let the scene through; the pointer goes through all of it.
///
/// The file is read when the model changes. A file that is missing or broken makes the node invalid and is reported, once
/// per change of the model, and so does an empty name; the node stays invalid until the model names another file.
class QOR_VIS_API Bitmap : public Vis, public SelectsBelow {
public:
    Bitmap();
    ~Bitmap() override;

    /// Mirrors a model node from now on. One that is no bitmap is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

private:
    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    DrawResult DoDrawOverlay(DrawContext const& p_context) override;

    /// Begins to watch the model as it is now; what it says counts as changed.
    void WatchModel();
    /// The old image stays when there is no new one.
    NodeStatus Load(UpdateContext const& p_context, qorfile::filepath const& p_file);

    Core::WeakRef<Model::Bitmap> _model;
    Core::ModificationWatcherList _watchers; ///< over the model
    std::shared_ptr<Library::Texture const> _texture; ///< empty until an image was loaded
    NodeStatus _status = NodeStatusOk; ///< what the last reading came to; changes from elsewhere make no file good
};

} // namespace Qor::Chart::Render
