#include "render/nodes/Bitmap.h"

#include "render/nodes/PixelScope.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/UpdateContext.h"
#include "framework/assets/ImageCache.h"
#include "framework/assets/ImageError.h"
#include "framework/library/TexturedQuad.h"
#include "framework/ogl/Agl.h"
#include "framework/qorfile/fileexists.h"
#include "framework/qorfile/filepath.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Scoped.h"

#include <cmath>

namespace Qor::Chart::Render {

namespace {

using Agl = Utility::Scoped<Ogl::Agl>;

} // namespace

Bitmap::Bitmap() : _model(*this, "model") {
    RegisterCB(HandledUpdate);
    RegisterCB(HandledDrawOverlay);
}

Bitmap::~Bitmap() = default;

void Bitmap::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
    _watchers.Clear();
}

Core::WeakPtr<Model::ModelNode> Bitmap::SourceModel() const {
    return _model.Get();
}

void Bitmap::WatchModel() {
    _watchers.Clear();
    _watchers.Add(_model.Get());
    _watchers.Touch();
}

/// What changed counts as taken up at the very end, so that an update that ends halfway is made up for.
NodeStatus Bitmap::DoUpdate(UpdateContext const& p_context) {
    if (!_watchers.Empty() && !_watchers.Modified())
        return _status;
    WatchModel();
    Core::Ptr<Model::Bitmap> const model = _model.Lock();
    if (!model)
        return NodeStatusInvalid;
    _status = NodeStatusOk;
    qorfile::filepath const path(model->ImageFile());
    if (!qorfile::fileexists(path)) {
        p_context.Dispatcher().ReportWarning(
            *this, "The given image for Bitmap does not exist", Utility::AtLine(__PRETTY_FUNCTION__, 47), 1);
        _status = NodeStatusInvalid;
    } else {
        _status = Load(p_context, path);
    }
    _watchers.Reset();
    return _status;
}

NodeStatus Bitmap::Load(UpdateContext const& p_context, qorfile::filepath const& p_file) {
    try {
        auto const image = p_context.ImageCache().Image(p_file);
        Agl agl(p_context.Graphics());
        _texture = std::make_shared<Library::Texture const>(*image, agl, p_file.string());
        return NodeStatusOk;
    } catch (Assets::ImageError const& error) {
        p_context.Dispatcher().ReportWarning(*this, error.what(), Utility::AtLine(__PRETTY_FUNCTION__, __LINE__), 1);
        return NodeStatusInvalid;
    }
}

DrawResult Bitmap::DoDrawOverlay(DrawContext const& p_context) {
    Types::Viewport<0> const& viewport = p_context.Viewport().Top();
    if (viewport.IsEmpty())
        return DrawResultSkipChildren;
    if (!_texture || !_texture->IsValid())
        return DrawResultDescend;
    float const viewportAspect = viewport.width / viewport.height;
    float const imageAspect = static_cast<float>(_texture->Width()) / static_cast<float>(_texture->Height());
    bool const isWider = imageAspect > viewportAspect;
    float const width = isWider ? viewport.width : imageAspect * viewport.height;
    float const height = isWider ? viewport.width / imageAspect : viewport.height;

    Library::TexturedQuad quad(width, height);
    quad.SetPosition(std::round((viewport.width - width) / 2), std::round((viewport.height - height) / 2));
    Agl agl(p_context.Graphics());
    PixelScope const pixels(agl, viewport);
    quad(p_context.Graphics(), *_texture);
    return DrawResultDescend;
}

} // namespace Qor::Chart::Render
