#include "framework/ogl/Agl.h"

#include "framework/utility/Logger.h"

#include <algorithm>
#include <atomic>
#include <array>
#include <bit>
#include <cstdio>
#include <cstring>
#include <utility>

// Construction, frames, errors and the stacks of attributes, scissor boxes and layers. The other operations stand in
// AglMatrix.cpp, AglState.cpp, AglLighting.cpp, AglTexture.cpp, AglDraw.cpp, AglText.cpp and AglTransparency.cpp.

namespace Qor::Chart::Ogl {

static_assert(StackDepths::TextureUnits == TextureUnitCount, "each unit has a stack of texture matrices");

namespace {

constexpr std::size_t MaxErrors = 32;
constexpr StateMask AllItems = (StateMask(1) << StateItem::Count) - 1;

constexpr StateMask LightItems = ((StateMask(1) << LightCount) - 1) << StateItem::Light0;
constexpr StateMask TextureItems = ((StateMask(1) << TextureUnitCount) - 1) << StateItem::Texture0;
constexpr StateMask MatrixItems = StateBit(StateItem::Projection) | StateBit(StateItem::PerspectiveRow) |
    (((StateMask(1) << TextureUnitCount) - 1) << StateItem::TextureMatrix0);

/// What a bit of PushAttrib covers.
struct AttribGroup {
    Token bit = 0;
    StateMask items = 0;
    EnableBit::Type enables = 0;
};

constexpr std::array<AttribGroup, 14> AttribGroups = {{
    {Tokens::AGL_CURRENT_BIT, StateBit(StateItem::CurrentColor) | StateBit(StateItem::CurrentVertex), 0},
    {Tokens::AGL_POINT_BIT, StateBit(StateItem::Point), EnableBit::PointSmooth},
    {Tokens::AGL_LINE_BIT, StateBit(StateItem::Line), EnableBit::LineSmooth | EnableBit::LineStipple},
    {Tokens::AGL_POLYGON_BIT, StateBit(StateItem::Polygon),
        EnableBit::CullFace | EnableBit::PolygonStipple | EnableBit::OffsetFill | EnableBit::OffsetLine |
            EnableBit::OffsetPoint},
    {Tokens::AGL_POLYGON_STIPPLE_BIT, StateBit(StateItem::PolygonStipple), 0},
    {Tokens::AGL_LIGHTING_BIT, StateBit(StateItem::LightModel) | StateBit(StateItem::Material) | LightItems,
        EnableBit::Lighting | EnableBit::ColorMaterial | EnableBit::Lights},
    {Tokens::AGL_DEPTH_BUFFER_BIT, StateBit(StateItem::Depth), EnableBit::DepthTest},
    {Tokens::AGL_STENCIL_BUFFER_BIT, StateBit(StateItem::Stencil), EnableBit::StencilTest},
    {Tokens::AGL_VIEWPORT_BIT, StateBit(StateItem::Viewport), 0},
    {Tokens::AGL_TRANSFORM_BIT, StateBit(StateItem::Transform) | StateBit(StateItem::ClipPlanes),
        EnableBit::Normalize | EnableBit::RescaleNormal | EnableBit::ClipPlanes},
    {Tokens::AGL_ENABLE_BIT, 0, EnableBit::All},
    {Tokens::AGL_COLOR_BUFFER_BIT, StateBit(StateItem::ColorBuffer), EnableBit::Blend | EnableBit::Transparency},
    {Tokens::AGL_TEXTURE_BIT, StateBit(StateItem::TextureSelect) | TextureItems, EnableBit::Textures},
    {Tokens::AGL_SCISSOR_BIT, StateBit(StateItem::Scissor), EnableBit::ScissorTest},
}};

AttribGroup Covered(Token p_mask) {
    if (p_mask == Tokens::AGL_ALL_ATTRIB_BITS) {
        return {p_mask, AllItems & ~MatrixItems, EnableBit::All};
    }
    AttribGroup covered;
    for (AttribGroup const& group : AttribGroups) {
        if ((p_mask & group.bit) != 0) {
            covered.items |= group.items;
            covered.enables |= group.enables;
        }
    }
    return covered;
}

PixelRectangle Intersection(PixelRectangle const& p_a, PixelRectangle const& p_b) {
    PixelRectangle result;
    result.x = std::max(p_a.x, p_b.x);
    result.y = std::max(p_a.y, p_b.y);
    result.width = std::max(0, std::min(p_a.x + p_a.width, p_b.x + p_b.width) - result.x);
    result.height = std::max(0, std::min(p_a.y + p_a.height, p_b.y + p_b.height) - result.y);
    return result;
}

} // namespace

std::uint64_t Agl::NextId() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

Agl::Agl(std::unique_ptr<Backend> p_backend)
    : _backend(std::move(p_backend))
    , _dirty(AllItems)
    , _modelView(1)
    , _projection(1)
    , _fixedFunction(std::make_shared<Shader>(ShaderSource::FixedFunction())) {
    for (std::vector<Types::Matrix4>& stack : _textureMatrices) {
        stack.resize(1);
    }
    _key.version.fill(StateKey::NoVersion);
}

Agl::~Agl() = default;

void Agl::BeginFrame() {
    if (!CheckOutside("BeginFrame")) {
        return;
    }
    if (_inFrame) {
        Error("BeginFrame: the frame before was not ended. Call EndFrame first.");
        return;
    }
    Flush();
    _inFrame = true;
    _frameDepths = _depths;
    _backend->BeginFrame();
}

void Agl::EndFrame() {
    if (!_inFrame) {
        Error("EndFrame: no frame was begun. Call BeginFrame first.");
        return;
    }
    if (!(_depths == _frameDepths)) {
        Error("EndFrame: the stacks are not as deep as at the beginning of the frame. Every push needs its pop.");
        RestoreDepths(_frameDepths);
    }
    if (_transparencyScopes != 0) {
        Error("EndFrame: a transparency scope is still open. Every BeginTransparency needs its EndTransparency.");
        CarryOutTransparent();
        _transparencyScopes = 0;
    }
    Flush();
    _inFrame = false;
    _backend->EndFrame();
}

void Agl::Flush() {
    if (_isDeferring && _depths.primitive == 0) {
        SwitchRecording();
    }
    if (_list.IsEmpty() || !CheckOutside("Flush")) {
        return;
    }
    ++_statistics.flushes;
    _list.Pad();
    _backend->Execute(_list, _statistics);
    _list.Clear();
    _key.version.fill(StateKey::NoVersion);
    _keyIsNew = true;
    _dirty = AllItems;
}

std::string Agl::CheckError() {
    if (_depths.primitive == 0) {
        Flush();
    } else {
        Error("CheckError: called between Begin and End; what is recorded is not drawn yet.");
    }
    _backend->TakeErrors(_errors);
    std::string text;
    for (std::string const& error : _errors) {
        Utility::GetLogger().error(error);
        text += text.empty() ? error : "\n" + error;
    }
    _errors.clear();
    return text;
}

void Agl::Error(std::string p_sentence) {
    if (_errors.size() < MaxErrors) {
        _errors.push_back(std::move(p_sentence));
    } else if (_errors.size() == MaxErrors) {
        _errors.emplace_back("More errors followed.");
    }
}

void Agl::ErrorToken(char const* p_operation, Token p_token) {
    std::array<char, 16> hex{};
    std::snprintf(hex.data(), hex.size(), "0x%04X", p_token);
    Error(std::string(p_operation) + ": " + hex.data() + " is not a constant that it takes; nothing is changed.");
}

bool Agl::CheckOutside(char const* p_operation) {
    if (_depths.primitive == 0) [[likely]] {
        return true;
    }
    Error(std::string(p_operation) + ": not allowed between Begin and End; nothing is changed.");
    return false;
}

void Agl::PushAttrib(Token p_mask) {
    if (!CheckOutside("PushAttrib")) {
        return;
    }
    AttribGroup const covered = Covered(p_mask);
    AttribFrame& frame = _attribs.emplace_back();
    frame.covered = covered.items;
    frame.armedBefore = _armed;
    frame.coveredEnables = covered.enables;
    frame.armedEnablesBefore = _armedEnables;
    _armed |= covered.items;
    _armedEnables |= covered.enables;
    ++_depths.attrib;
    ++_statistics.pushes;
}

void Agl::PopAttrib() {
    if (!CheckOutside("PopAttrib")) {
        return;
    }
    if (_attribs.empty()) {
        Error("PopAttrib: there is no PushAttrib that it belongs to; nothing is changed.");
        return;
    }
    PopFrame();
}

void Agl::PopFrame() {
    EnableBit::Type const goingOff = _attribs.back().savedEnables & ~_attribs.back().enableValues;
    if (TracksColor() && (goingOff & EnableBit::ColorMaterial) != 0) {
        CommitColorMaterial();
    }
    AttribFrame const& frame = _attribs.back();
    for (StateMask saved = frame.saved; saved != 0; saved &= saved - 1) {
        auto const item = static_cast<std::size_t>(std::countr_zero(saved));
        std::vector<std::byte>& stack = _savedItems[item];
        std::size_t const rest = stack.size() - State::ItemSize(item);
        std::memcpy(_state.Item(item), stack.data() + rest, State::ItemSize(item));
        stack.resize(rest);
    }
    _dirty |= frame.saved;
    _state.enables = (_state.enables & ~frame.savedEnables) | frame.enableValues;
    _armed = (_armed & ~frame.covered) | (frame.armedBefore & frame.covered);
    _armedEnables = (_armedEnables & ~frame.coveredEnables) | (frame.armedEnablesBefore & frame.coveredEnables);
    _attribs.pop_back();
    --_depths.attrib;
    ++_statistics.pops;
}

// The innermost frame that covers the group is the one that will bring it back.
void Agl::Save(std::size_t p_item) {
    StateMask const bit = StateBit(p_item);
    auto const frame = std::find_if(
        _attribs.rbegin(), _attribs.rend(), [bit](AttribFrame const& p) { return (p.covered & bit) != 0; });
    frame->saved |= bit;
    _armed &= ~bit;
    std::byte const* const bytes = _state.Item(p_item);
    _savedItems[p_item].insert(_savedItems[p_item].end(), bytes, bytes + State::ItemSize(p_item));
}

void Agl::SetEnables(EnableBit::Type p_bits, bool p_on) {
    EnableBit::Type const wanted = p_on ? _state.enables | p_bits : _state.enables & ~p_bits;
    EnableBit::Type toSave = (wanted ^ _state.enables) & _armedEnables;
    _armedEnables &= ~toSave;
    for (auto frame = _attribs.rbegin(); toSave != 0; ++frame) {
        EnableBit::Type const here = toSave & frame->coveredEnables;
        frame->savedEnables |= here;
        frame->enableValues |= _state.enables & here;
        toSave &= ~here;
    }
    _state.enables = wanted;
}

void Agl::PushScissor() {
    if (!CheckOutside("PushScissor")) {
        return;
    }
    _scissors.push_back({_state.scissor});
    ++_depths.scissor;
    ++_statistics.pushes;
}

void Agl::PopScissor() {
    if (!CheckOutside("PopScissor")) {
        return;
    }
    if (_scissors.empty()) {
        Error("PopScissor: there is no PushScissor that it belongs to; nothing is changed.");
        return;
    }
    Write(StateItem::Scissor);
    _state.scissor = _scissors.back().previous;
    _scissors.pop_back();
    --_depths.scissor;
    ++_statistics.pops;
}

void Agl::Scissor(Types::Viewport<0> const& p_box) {
    if (!CheckOutside("Scissor")) {
        return;
    }
    PixelRectangle box = RoundToPixels(p_box);
    box.width = std::max(0, box.width);
    box.height = std::max(0, box.height);
    bool const isCut = !_scissors.empty() && _scissors.back().previous.defined != 0;
    Write(StateItem::Scissor);
    _state.scissor.box = isCut ? Intersection(box, _scissors.back().previous.box) : box;
    _state.scissor.defined = 1;
}

void Agl::PushLayerId(std::uint32_t p_id) {
    _layers.push_back(p_id);
    ++_depths.layer;
    ++_statistics.pushes;
}

void Agl::PopLayerId() {
    if (_layers.empty()) {
        Error("PopLayerId: there is no PushLayerId that it belongs to; nothing is changed.");
        return;
    }
    _layers.pop_back();
    --_depths.layer;
    ++_statistics.pops;
}

template <class Pop, class Push>
bool Agl::RestoreDepth(std::uint32_t const& p_depth, std::uint32_t p_wanted, Pop const& p_pop, Push const& p_push) {
    while (p_depth > p_wanted) {
        p_pop();
    }
    bool const wasEnough = p_depth == p_wanted;
    while (p_depth < p_wanted) {
        p_push();
    }
    return wasEnough;
}

void Agl::RestoreDifferingDepths(StackDepths const& p_depths) {
    if (_depths.primitive != 0) {
        _list.vertices.resize(_primitive.firstVertex);
        _list.texCoords.resize(std::min<std::size_t>(_list.texCoords.size(), _primitive.firstVertex));
        _depths.primitive = 0;
    }
    constexpr StateMask textureMatrixBit = StateBit(StateItem::TextureMatrix0);
    bool wasEnough = RestoreDepth(
        _depths.scissor, p_depths.scissor, [this] { PopScissor(); }, [this] { PushScissor(); });
    wasEnough &= RestoreDepth(
        _depths.attrib, p_depths.attrib, [this] { PopAttrib(); }, [this] { PushAttrib(Tokens::AGL_ALL_ATTRIB_BITS); });
    wasEnough &= RestoreDepth(
        _depths.layer, p_depths.layer, [this] { PopLayerId(); }, [this] { PushLayerId(LayerId()); });
    wasEnough &= RestoreDepth(
        _depths.modelView, p_depths.modelView, [this] { PopFrom(_modelView, _depths.modelView, 0); },
        [this] { PushOn(_modelView, _depths.modelView); });
    wasEnough &= RestoreDepth(
        _depths.projection, p_depths.projection,
        [this] { PopFrom(_projection, _depths.projection, StateBit(StateItem::Projection)); },
        [this] { PushOn(_projection, _depths.projection); });
    for (std::size_t unit = 0; unit < TextureUnitCount; ++unit) {
        wasEnough &= RestoreDepth(
            _depths.texture[unit], p_depths.texture[unit],
            [&] { PopFrom(_textureMatrices[unit], _depths.texture[unit], textureMatrixBit << unit); },
            [&] { PushOn(_textureMatrices[unit], _depths.texture[unit]); });
    }
    if (!wasEnough) {
        Error("RestoreDepths: more was popped than pushed; what was popped too much cannot be brought back, so the "
              "current "
              "values take its place.");
    }
}

} // namespace Qor::Chart::Ogl
