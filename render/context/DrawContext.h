#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/Verbosity.h"
#include "framework/core/WeakPtr.h"
#include "framework/ogl/GenericShader.h"
#include "framework/ogl/Highlight.h"
#include "framework/types/Matrix4.h"
#include "framework/types/NumberFormat.h"
#include "framework/types/Schema.h"
#include "framework/types/TextureUnit.h"
#include "framework/types/Vector2.h"
#include "framework/types/Viewport.h"
#include "framework/utility/BoundedCounter.h"
#include "framework/utility/Unscoped.h"
#include "render/Export.h"
#include "render/context/CheckPointManager.h"
#include "render/context/CopyOnWriteStack.h"
#include "render/context/ProjectionMode.h"
#include "render/context/ShaderStateEntry.h"

#include <boost/shared_ptr.hpp>

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace Qor::Chart::Assets {
class Resource;
class ImageCache;
} // namespace Qor::Chart::Assets

namespace Qor::Chart::Library {
class Geometry;
}

namespace Qor::Chart::Model {
class Light;
}

namespace Qor::Chart::Render {

class EventDispatcher;
class Vis;
struct FrameStatistics;
struct SceneCapabilities;

/// What the draw and pick traversals hand down the tree. Its changeable values stand in sixteen stacks: a node writes
/// them in its setup hook, for itself and its subtree, and the traversal's check point brings the former values back,
/// together with the graphics state that belongs to them. Everything else is fixed for the traversal. The context refers
/// to what it was given: the host keeps that alive.
///
/// A fresh context has an empty viewport and identity matrices; the host writes and loads viewport, camera, model-view
/// and projection before it draws or picks. A copy starts at the source's present values, without its history; copies are
/// made at context roots.
class QOR_VIS_API DrawContext : public Utility::CheckPointManager<17> {
public:
    enum class DrawMode : std::uint32_t {
        Draw = 0,
        DrawInPlace = 1, ///< for viewports that stay where they are, whatever the per-viewport offset; not drawable
        Highlight = 2,
    };

    /// Draws a single viewport at an offset; bit 0 of the draw flags.
    static constexpr std::size_t PerViewportDraw = 0;

    struct DrawInfo {
        DrawMode mode = DrawMode::Draw;
        std::bitset<32> flags;
    };

    /// Whether to suppress a node: true leaves out its own drawing. The flag, false at first, asks to leave out its
    /// setup, teardown and subtree as well.
    using NodeFilterDelegate = std::function<bool(Core::Ptr<Vis> const&, bool&)>;
    using LightList = std::vector<Core::WeakPtr<Model::Light>>;
    using GenericShaderEntry = ShaderStateEntry<Ogl::GenericShader, Ogl::GenericShader::State>;

    template <class T, std::size_t Id>
    using Stack = Utility::CopyOnWriteStack<T, Id, 17>;
    using ViewportStack = Stack<Types::Viewport<0>, 0>;
    using ModelViewStack = Stack<Types::Matrix4, 1>;
    using CameraStack = Stack<Types::Matrix4, 2>;
    using ProjectionStack = Stack<Types::Matrix4, 3>;
    using SchemaStack = Stack<Types::Schema, 4>;
    using NumberFormatStack = Stack<Types::NiceIntervals::NumberFormat, 5>;
    using ProjectionModeStack = Stack<Render::ProjectionMode, 6>;
    using LightCountStack = Stack<std::uint32_t, 7>;
    using StencilBitsStack = Stack<Utility::BoundedCounter, 8>;
    using ClipPlanesStack = Stack<Utility::BoundedCounter, 9>;
    using TexturesStack = Stack<Utility::BoundedCounter, 10>;
    using LightsStack = Stack<LightList, 11>;
    using NodeFilterStack = Stack<NodeFilterDelegate, 12>;
    using FirstTextureStack = Stack<Types::TextureUnit, 14>;
    using SecondTextureStack = Stack<Types::TextureUnit, 15>;
    using ShaderStack = Stack<GenericShaderEntry, 16>;

    /// The root context of a frame.
    /// @param p_shaderOptions  options of the shader of the scene, see `Ogl::GenericShader::State`
    DrawContext(Utility::Unscoped<Ogl::Agl> p_agl, Assets::Resource const& p_resource,
        Assets::ImageCache const& p_imageCache, EventDispatcher& p_dispatcher, Types::Schema const& p_schema,
        Types::NiceIntervals::NumberFormat const& p_numberFormat, Library::Geometry const& p_geometry, DrawMode p_mode,
        std::bitset<2> const& p_shaderOptions, Core::Verbosity p_verbosity, SceneCapabilities const& p_capabilities,
        boost::shared_ptr<Ogl::Highlight> const& p_highlighter);
    DrawContext(DrawContext const& p_other);
    /// A copy for the subtree of a context root.
    DrawContext(DrawContext const& p_other, EventDispatcher& p_dispatcher);
    /// A copy for another kind of pass.
    DrawContext(DrawContext const& p_other, DrawInfo const& p_info);
    DrawContext& operator=(DrawContext const&) = delete;
    ~DrawContext();

    /// \name Stacks
    /// `Top()` reads, `Set()` writes until the check point is restored.
    /// @{
    /// The rectangle that is drawn into, in pixels of the window.
    ViewportStack const& Viewport() const noexcept { return _viewport; }
    ViewportStack& Viewport() noexcept { return _viewport; }
    ModelViewStack const& ModelView() const noexcept { return _modelView; }
    ModelViewStack& ModelView() noexcept { return _modelView; }
    /// What viewports make their projection with; the host writes it, or a node of the host's.
    CameraStack const& Camera() const noexcept { return _camera; }
    CameraStack& Camera() noexcept { return _camera; }
    ProjectionStack const& Projection() const noexcept { return _projection; }
    ProjectionStack& Projection() noexcept { return _projection; }
    SchemaStack const& Schema() const noexcept { return _schema; }
    SchemaStack& Schema() noexcept { return _schema; }
    NumberFormatStack const& NumberFormat() const noexcept { return _numberFormat; }
    NumberFormatStack& NumberFormat() noexcept { return _numberFormat; }
    /// How the enclosing viewport projects.
    ProjectionModeStack const& ProjectionMode() const noexcept { return _projectionMode; }
    ProjectionModeStack& ProjectionMode() noexcept { return _projectionMode; }
    /// Number of lights that are switched on, from `AGL_LIGHT0` on.
    LightCountStack const& LightCount() const noexcept { return _lightCount; }
    LightCountStack& LightCount() noexcept { return _lightCount; }
    StencilBitsStack const& StencilBits() const noexcept { return _stencilBits; }
    StencilBitsStack& StencilBits() noexcept { return _stencilBits; }
    ClipPlanesStack const& ClipPlanes() const noexcept { return _clipPlanes; }
    ClipPlanesStack& ClipPlanes() noexcept { return _clipPlanes; }
    /// Texture units that are taken.
    TexturesStack const& Textures() const noexcept { return _textures; }
    TexturesStack& Textures() noexcept { return _textures; }
    /// The model's lights that are in force.
    LightsStack const& Lights() const noexcept { return _lights; }
    LightsStack& Lights() noexcept { return _lights; }
    /// Asked about every node that is about to be drawn or picked; empty lets all through.
    NodeFilterStack const& NodeFilter() const noexcept { return _nodeFilter; }
    NodeFilterStack& NodeFilter() noexcept { return _nodeFilter; }
    FirstTextureStack const& FirstTexture() const noexcept { return _firstTexture; }
    FirstTextureStack& FirstTexture() noexcept { return _firstTexture; }
    SecondTextureStack const& SecondTexture() const noexcept { return _secondTexture; }
    SecondTextureStack& SecondTexture() noexcept { return _secondTexture; }
    ShaderStack const& Shader() const noexcept { return _shader; }
    ShaderStack& Shader() noexcept { return _shader; }
    /// @}

    Utility::Unscoped<Ogl::Agl> Graphics() const noexcept { return _agl; }
    /// The dispatcher of the nearest context root; it also takes the reports of the traversals.
    EventDispatcher& Dispatcher() const noexcept { return *_dispatcher; }
    DrawMode Mode() const noexcept { return _mode; }
    Library::Geometry const& Geometry() const noexcept { return *_geometry; }
    Assets::Resource const& Resource() const noexcept { return *_resource; }
    Assets::ImageCache const& ImageCache() const noexcept { return *_imageCache; }
    /// The host's number of the frame, 0 until it is set.
    std::uint32_t FrameNumber() const noexcept { return _frameNumber; }
    void SetFrameNumber(std::uint32_t p_number) noexcept { _frameNumber = p_number; }
    /// What the frame before this one did in the same view, and how many of them there are a second by now; null when
    /// there was none, and where the host does not measure.
    FrameStatistics const* LastFrame() const noexcept { return _lastFrame; }
    void SetLastFrame(FrameStatistics const* p_statistics) noexcept { _lastFrame = p_statistics; }
    /// By how many pixels a viewport is drawn away from its place in a per-viewport draw.
    Types::Vector2_Base<double> const& PerViewportOffset() const noexcept { return _perViewportOffset; }
    void SetPerViewportOffset(Types::Vector2_Base<double> const& p_pixels) noexcept { _perViewportOffset = p_pixels; }
    /// How highlighted nodes look. The context must have been given a highlighter; else this is reported, and the
    /// default look returned.
    Ogl::Highlight const& GetHighlighter() const;
    std::bitset<32> const& Flags() const noexcept { return _flags; }
    bool IsPerViewportDraw() const noexcept { return _flags[PerViewportDraw]; }
    SceneCapabilities const& Capabilities() const noexcept { return *_capabilities; }
    /// Whether the base draw pass outlines the bounding box of every node.
    bool ShowBounds() const noexcept { return _showBounds; }
    void SetShowBounds(bool p_show) noexcept { _showBounds = p_show; }
    /// How much is said about a node in messages.
    Core::Verbosity Verbosity() const noexcept { return _verbosity; }

private:
    ViewportStack _viewport;
    ModelViewStack _modelView;
    CameraStack _camera;
    ProjectionStack _projection;
    SchemaStack _schema;
    NumberFormatStack _numberFormat;
    ProjectionModeStack _projectionMode;
    LightCountStack _lightCount;
    StencilBitsStack _stencilBits;
    ClipPlanesStack _clipPlanes;
    TexturesStack _textures;
    LightsStack _lights;
    NodeFilterStack _nodeFilter;
    FirstTextureStack _firstTexture;
    SecondTextureStack _secondTexture;
    ShaderStack _shader;

    Utility::Unscoped<Ogl::Agl> _agl;
    EventDispatcher* _dispatcher;
    DrawMode _mode;
    Library::Geometry const* _geometry;
    Assets::Resource const* _resource;
    Assets::ImageCache const* _imageCache;
    std::uint32_t _frameNumber = 0;
    FrameStatistics const* _lastFrame = nullptr;
    Types::Vector2_Base<double> _perViewportOffset;
    boost::shared_ptr<Ogl::Highlight> _highlighter;
    std::bitset<32> _flags;
    SceneCapabilities const* _capabilities;
    bool _showBounds = false;
    Core::Verbosity _verbosity;
};

} // namespace Qor::Chart::Render
