#include "framework/ogl/Agl.h"

#include "framework/ogl/HitDetect.h"
#include "framework/ogl/LineStippleCounter.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <numeric>
#include <utility>

// What draws, and how draws become commands.

namespace Qor::Chart::Ogl {

namespace {

/// Groups that no command depends on: the colour goes with the instance or the vertex.
constexpr StateMask UndrawnItems =
    StateBit(StateItem::CurrentColor) | StateBit(StateItem::Transform) | StateBit(StateItem::TextureSelect);
Pipeline PipelineOf(Token p_polygonMode) {
    switch (p_polygonMode) {
    case Tokens::AGL_POINT:
        return Pipeline::Corners;
    case Tokens::AGL_LINE:
        return Pipeline::Edges;
    default:
        return Pipeline::Triangles;
    }
}

/// Which faces culling leaves.
std::uint8_t VisibleFaces(State const& p_state) {
    if (!p_state.IsEnabled(EnableBit::CullFace)) {
        return FaceBit::Both;
    }
    switch (p_state.polygon.cullFace) {
    case Tokens::AGL_FRONT:
        return FaceBit::Back;
    case Tokens::AGL_BACK:
        return FaceBit::Front;
    default:
        return 0;
    }
}

/// Groups that a primitive of a kind does not depend on: those of points and lines, but for points, lines and polygons that
/// are drawn as such.
StateMask UnusedItems(Token p_kind, State const& p_state) {
    if (p_kind == Tokens::AGL_POINTS) {
        return StateBit(StateItem::Line);
    }
    if (!IsPolygonKind(p_kind)) {
        return StateBit(StateItem::Point);
    }
    bool const isFilled = p_state.polygon.frontMode == Tokens::AGL_FILL && p_state.polygon.backMode == Tokens::AGL_FILL;
    return isFilled ? StateBit(StateItem::Line) | StateBit(StateItem::Point) : 0;
}

/// The same for a shape, which does not depend on the current normal and texture coordinates either, if it has or needs
/// none.
StateMask UnusedItems(PrimitiveBuffer const& p_buffer, State const& p_state) {
    bool const isUnused = p_buffer.Info().flags[AttributeInfo::Normal] && !p_state.IsEnabled(EnableBit::Textures);
    return UnusedItems(p_buffer.Kind(), p_state) | (isUnused ? StateBit(StateItem::CurrentVertex) : 0);
}

/// The inverse transpose of the upper left three by three elements, row by row. Without an inverse the cofactors, which
/// still have the right direction.
void NormalMatrix(double const* p_m, double* p_result) {
    for (std::size_t column = 0; column < 3; ++column) {
        double const* const b = p_m + 4 * ((column + 1) % 3);
        double const* const c = p_m + 4 * ((column + 2) % 3);
        p_result[column] = b[1] * c[2] - b[2] * c[1];
        p_result[3 + column] = b[2] * c[0] - b[0] * c[2];
        p_result[6 + column] = b[0] * c[1] - b[1] * c[0];
    }
    double const determinant = p_m[0] * p_result[0] + p_m[1] * p_result[3] + p_m[2] * p_result[6];
    if (determinant != 0) {
        std::for_each(p_result, p_result + 9, [determinant](double& p) { p /= determinant; });
    }
}

/// Divides by the length of the third row of the inverse, which is the third column here.
void Rescale(double* p_normalMatrix) {
    double const length = Length(Agl::Vector3(p_normalMatrix[2], p_normalMatrix[5], p_normalMatrix[8]));
    if (length > 0) {
        std::for_each(p_normalMatrix, p_normalMatrix + 9, [length](double& p) { p /= length; });
    }
}

/// How many corners each polygon of a kind has that is made of so many vertices.
std::size_t CornersOf(Token p_kind, std::size_t p_vertices) {
    switch (p_kind) {
    case Tokens::AGL_QUADS:
    case Tokens::AGL_QUAD_STRIP:
        return 4;
    case Tokens::AGL_POLYGON:
        return p_vertices;
    default:
        return 3;
    }
}

/// The edge with which the stipple pattern of an outline begins. OpenGL leaves that open; this is what drivers do.
std::size_t FirstEdge(Token p_kind) {
    switch (p_kind) {
    case Tokens::AGL_POLYGON:
        return 0;
    case Tokens::AGL_QUADS:
        return 3;
    default:
        return 2;
    }
}

float ToFloat(double p_value) {
    return static_cast<float>(p_value);
}

} // namespace

std::size_t Agl::BufferPairHash::operator()(BufferPair const& p_pair) const {
    std::size_t const indices = std::hash<void const*>()(p_pair.indices);
    std::size_t const vertices = std::hash<void const*>()(p_pair.vertices);
    return indices ^ (vertices * 0x9E3779B97F4A7C15U);
}

void Agl::Color(QColor const& p_color) {
    Color(Types::Color4f(p_color));
}

void Agl::Normal(Vector3 const& p_normal) {
    Assign(StateItem::CurrentVertex, _state.currentVertex.normal, Types::Vector3_Base<float>(p_normal));
}

void Agl::MultiTexCoord(Token p_unit, double p_s, double p_t, double p_r, double p_q) {
    if (p_unit < Tokens::AGL_TEXTURE0 || p_unit >= Tokens::AGL_TEXTURE0 + TextureUnitCount) {
        ErrorToken("MultiTexCoord", p_unit);
        return;
    }
    Assign(StateItem::CurrentVertex, _state.currentVertex.texCoords[p_unit - Tokens::AGL_TEXTURE0],
        Types::Vector4_Base<float>(Vector4(p_s, p_t, p_r, p_q)));
}

void Agl::Clear(Token p_mask) {
    constexpr Token buffers =
        Tokens::AGL_COLOR_BUFFER_BIT | Tokens::AGL_DEPTH_BUFFER_BIT | Tokens::AGL_STENCIL_BUFFER_BIT;
    if (!CheckOutside("Clear")) {
        return;
    }
    if ((p_mask & ~buffers) != 0) {
        ErrorToken("Clear", p_mask);
        return;
    }
    if (_detect != nullptr) {
        return;
    }
    ++_statistics.clears;
    CarryOutTransparent();
    EnableBit::Type const enables = _state.enables;
    _state.enables &= ~EnableBit::Transparency; // a clear never waits
    ResolveState(StateBit(StateItem::CurrentVertex));
    _state.enables = enables;
    Command command;
    command.kind = Command::Kind::Clear;
    command.state = static_cast<std::uint32_t>(_list.states.size() - 1);
    command.clearMask = p_mask;
    _list.commands.push_back(command);
}

void Agl::Begin(Token p_kind) {
    if (!CheckOutside("Begin")) {
        return;
    }
    if (p_kind > Tokens::AGL_POLYGON) {
        ErrorToken("Begin", p_kind);
        return;
    }
    if (_detect != nullptr) {
        _primitive.firstVertex = static_cast<std::uint32_t>(_list.vertices.size());
        _depths.primitive = 1;
        _detect->Begin(p_kind);
        return;
    }
    _primitive.kind = p_kind;
    BeginVertices();
    _depths.primitive = 1;
}

// Vertices are recorded in eye coordinates, so the model-view matrix of their draw is the identity.
void Agl::BeginVertices() {
    Assign(StateItem::PerspectiveRow, _state.perspectiveRow.row, PerspectiveRowState().row);
    ResolveState(StateBit(StateItem::CurrentVertex));
    _primitive.firstVertex = static_cast<std::uint32_t>(_list.vertices.size());
    _primitive.isTextured = _state.UsedTextureUnits() != 0;
    if (_primitive.isTextured) {
        _list.texCoords.resize(_list.vertices.size());
    }
    NormalMatrix(_modelView.back().Data(), _primitive.normalMatrix);
    if (_state.IsEnabled(EnableBit::RescaleNormal)) {
        Rescale(_primitive.normalMatrix);
    }
}

void Agl::Vertex(Vector4 const& p_position) {
    if (_depths.primitive == 0) {
        Error("Vertex: only allowed between Begin and End; nothing is drawn.");
        return;
    }
    if (_detect != nullptr) [[unlikely]] {
        _detect->Vertex(p_position);
        return;
    }
    AppendVertex(p_position, _state.currentVertex.normal, _state.currentColor.color);
    if (_primitive.isTextured) {
        _list.texCoords.push_back(_state.currentVertex.texCoords);
    }
}

inline void Agl::AppendVertex(
    Vector4 const& p_position, Types::Vector3_Base<float> const& p_normal, Types::Color4f const& p_color) {
    double const* const m = _modelView.back().Data();
    double const* const n = _primitive.normalMatrix;
    auto const& origin = _state.projection.origin;
    double const nx = static_cast<double>(p_normal.x);
    double const ny = static_cast<double>(p_normal.y);
    double const nz = static_cast<double>(p_normal.z);
    auto const row = [&](std::size_t p_row) {
        return m[p_row] * p_position.x + m[4 + p_row] * p_position.y + m[8 + p_row] * p_position.z +
            m[12 + p_row] * p_position.w;
    };
    double const w = row(3);
    ImmediateVertex& vertex = _list.vertices.emplace_back();
    vertex.position = {
        ToFloat(row(0) - origin[0] * w), ToFloat(row(1) - origin[1] * w), ToFloat(row(2) - origin[2] * w), ToFloat(w)};
    vertex.normal = {ToFloat(n[0] * nx + n[1] * ny + n[2] * nz), ToFloat(n[3] * nx + n[4] * ny + n[5] * nz),
        ToFloat(n[6] * nx + n[7] * ny + n[8] * nz)};
    vertex.color = p_color;
}

// Only quads have a provoking vertex that not all of their triangles end with.
template <class Append>
inline void Agl::ForEachPass(Token p_kind, Append const& p_append) {
    if (!IsPolygonKind(p_kind)) {
        p_append({FilledPipeline(p_kind), FaceBit::Both});
        return;
    }
    bool const isQuad = p_kind == Tokens::AGL_QUADS || p_kind == Tokens::AGL_QUAD_STRIP;
    bool const isFlatQuad = isQuad && _state.lightModel.shadeModel == Tokens::AGL_FLAT;
    for (std::size_t i = 0; i < _passCount; ++i) {
        PolygonPass pass = _passes[i];
        if (isFlatQuad && IsFilled(pass.pipeline)) [[unlikely]] {
            if (pass.pipeline == Pipeline::BackThenFront) {
                p_append({Pipeline::FlatTriangles, FaceBit::Back});
                pass.faces = FaceBit::Front;
            }
            pass.pipeline = Pipeline::FlatTriangles;
        }
        p_append(pass);
    }
}

void Agl::End() {
    if (_depths.primitive == 0) {
        Error("End: there is no Begin that it belongs to; nothing is drawn.");
        return;
    }
    _depths.primitive = 0;
    if (_detect != nullptr) {
        _detect->End();
        return;
    }
    ++_statistics.draws;
    // What a vertex takes from the current values went into it already. A dashed pass appends copies of the vertices, which
    // are none of the primitive's.
    std::size_t const count = _list.vertices.size() - _primitive.firstVertex;
    ForEachPass(_primitive.kind, [&](PolygonPass const& p_pass) { AppendImmediate(p_pass, count); });
    FlushWhenFull();
}

void Agl::AppendImmediate(PolygonPass const& p_pass, std::size_t p_count) {
    if (p_pass.pipeline == Pipeline::BackThenFront) {
        AppendImmediate({Pipeline::Triangles, FaceBit::Back}, p_count);
        AppendImmediate({Pipeline::Triangles, FaceBit::Front}, p_count);
        return;
    }
    auto const firstIndex = static_cast<std::uint32_t>(_list.indices.size());
    if (NeedsStippleCounts(_primitive.kind, p_pass.pipeline)) [[unlikely]] {
        AppendStippled(_primitive.kind, p_pass.pipeline, p_count, [this](std::size_t p_index) {
            std::size_t const source = _primitive.firstVertex + p_index;
            _list.vertices.push_back(_list.vertices[source]);
            if (_primitive.isTextured) {
                _list.texCoords.push_back(_list.texCoords[source]);
            }
        });
    } else {
        _assembly.resize(p_count);
        std::iota(_assembly.begin(), _assembly.end(), _primitive.firstVertex);
        AssemblePrimitives(_primitive.kind, _assembly, p_pass.pipeline, _list.indices);
    }
    Command command;
    command.pipeline = p_pass.pipeline;
    command.faces = p_pass.faces;
    command.hasNormals = IsPolygonKind(_primitive.kind);
    AppendIndices(firstIndex, command);
}

void Agl::AppendIndices(std::uint32_t p_first, Command p_command) {
    p_command.kind = Command::Kind::Immediate;
    p_command.state = static_cast<std::uint32_t>(_list.states.size() - 1);
    p_command.first = p_first;
    p_command.count = static_cast<std::uint32_t>(_list.indices.size()) - p_first;
    p_command.shader = EffectiveShader();
    if (p_command.count == 0) {
        return;
    }
    if (!_isDeferring && _list.Join(p_command)) {
        return;
    }
    KeepShader();
    _list.commands.push_back(p_command);
    if (_isDeferring) {
        DeferImmediate(p_command);
    }
}

// Lines of their own start with the pattern, which the shader can do alone.
bool Agl::NeedsStippleCounts(Token p_kind, Pipeline p_pipeline) const {
    return _state.IsLineStippled() &&
        (p_pipeline == Pipeline::Edges || p_kind == Tokens::AGL_LINE_STRIP || p_kind == Tokens::AGL_LINE_LOOP);
}

template <class Copy>
void Agl::AppendStippled(Token p_kind, Pipeline p_pipeline, std::size_t p_count, Copy const& p_copy) {
    LineStippleCounter counter(_state);
    _assembly.resize(p_count);
    std::iota(_assembly.begin(), _assembly.end(), 0U);
    std::vector<std::uint32_t> edges;
    std::size_t corners = p_count;
    if (p_pipeline == Pipeline::Edges) {
        AssemblePrimitives(p_kind, _assembly, p_pipeline, edges);
        corners = CornersOf(p_kind, p_count);
    }
    // Copies the vertices of a chain, and lets each know the count where it starts.
    auto const chain = [&](std::size_t p_size, auto const& p_vertex) {
        auto const first = static_cast<std::uint32_t>(_list.vertices.size());
        counter.Reset();
        for (std::size_t i = 0; i < p_size; ++i) {
            p_copy(p_vertex(i));
            if (i > 0) {
                counter.Advance(_list.vertices[first + i - 1].position, _list.vertices[first + i].position);
            }
            _list.stippleStarts.resize(_list.vertices.size() - 1);
            _list.stippleStarts.push_back(counter.Pixels());
        }
        return first;
    };
    if (p_pipeline == Pipeline::Lines) {
        std::uint32_t const first = chain(p_count, [](std::size_t p_index) { return p_index; });
        std::iota(_assembly.begin(), _assembly.end(), first);
        AssemblePrimitives(p_kind, _assembly, p_pipeline, _list.indices);
        return;
    }
    std::size_t const begin = FirstEdge(p_kind);
    constexpr std::size_t stride = IndicesPerPrimitive(Pipeline::Edges);
    auto const size = static_cast<std::uint32_t>(corners);
    for (std::size_t at = 0; corners >= 3 && at + stride * corners <= edges.size(); at += stride * corners) {
        auto const corner = [&](std::size_t p_index) { return edges[at + stride * ((p_index + begin) % corners) + 1]; };
        std::uint32_t const first = chain(corners, corner);
        std::uint32_t provoking = 0;
        while (provoking + 1 < size && corner(provoking) != edges[at + 3]) {
            ++provoking;
        }
        for (std::uint32_t i = 0; i < size; ++i) {
            _list.indices.insert(
                _list.indices.end(), {first + (i + 2) % size, first + i, first + (i + 1) % size, first + provoking});
        }
    }
}

// The count of a stipple pattern along strips and outlines depends on where their vertices are in the window, so they are
// recorded vertex by vertex.
void Agl::AppendExpanded(PrimitiveBuffer const& p_buffer, PolygonPass const& p_pass) {
    BeginVertices();
    VertexData const& data = p_buffer.Vertices()->Data();
    std::vector<std::uint32_t> const& indices = p_buffer.Indices()->Indices();
    auto const firstIndex = static_cast<std::uint32_t>(_list.indices.size());
    auto const orCurrent = [](auto const& p_values, std::size_t p_index, auto const& p_current) {
        return p_values.empty() ? p_current : p_values[p_index];
    };
    AppendStippled(p_buffer.Kind(), p_pass.pipeline, indices.size(), [&](std::size_t p_index) {
        std::size_t const source = indices[p_index];
        Types::Vector3_Base<double> const position(data.positions[source]);
        AppendVertex(Vector4(position, 1), orCurrent(data.normals, source, _state.currentVertex.normal),
            orCurrent(data.colors, source, _state.currentColor.color));
        if (_primitive.isTextured) {
            ImmediateTexCoords& texCoords = _list.texCoords.emplace_back();
            for (std::size_t unit = 0; unit < TextureUnitCount; ++unit) {
                texCoords[unit] = orCurrent(data.texCoords[unit], source, _state.currentVertex.texCoords[unit]);
            }
        }
    });
    Command command;
    command.pipeline = p_pass.pipeline;
    command.faces = p_pass.faces;
    command.hasNormals = !data.normals.empty();
    command.hasColors = !data.colors.empty();
    if (command.hasColors && _list.indices.size() > firstIndex) {
        command.colorInstance = static_cast<std::uint32_t>(_list.instances.size());
        AppendInstance(Types::Matrix4());
    }
    AppendIndices(firstIndex, command);
}

void Agl::Draw(std::shared_ptr<PrimitiveBuffer const> const& p_buffer) {
    if (!CheckOutside("Draw")) {
        return;
    }
    if (!p_buffer || !p_buffer->IsValid()) {
        return;
    }
    if (_detect != nullptr) [[unlikely]] {
        _detect->Draw(*p_buffer);
        return;
    }
    ++_statistics.draws;
    Types::Matrix4 const& modelView = _modelView.back();
    ResolvePerspectiveRow(modelView);
    StateMask const unused = UnusedItems(*p_buffer, _state);
    if ((_dirty & ~UndrawnItems & ~unused) != 0 || _key.enables != _state.enables || _keyIsNew) {
        ResolveState(unused);
    }
    ForEachPass(p_buffer->Kind(), [&](PolygonPass const& p_pass) { AppendDraw(p_buffer, p_pass); });
    FlushWhenFull();
}

void Agl::Draw() {
    if (!QOR_ENSURE(_boundBuffer)) {
        return;
    }
    Draw(_boundBuffer);
}

inline void Agl::AppendDraw(std::shared_ptr<PrimitiveBuffer const> const& p_buffer, PolygonPass const& p_pass) {
    if (NeedsStippleCounts(p_buffer->Kind(), p_pass.pipeline)) [[unlikely]] {
        AppendExpanded(*p_buffer, p_pass);
        ResolvePerspectiveRow(_modelView.back());
        ResolveState(0);
        return;
    }
    Command command;
    command.kind = Command::Kind::Draw;
    command.pipeline = p_pass.pipeline;
    command.faces = p_pass.faces;
    command.state = static_cast<std::uint32_t>(_list.states.size() - 1);
    command.first = static_cast<std::uint32_t>(_list.instances.size());
    command.count = 1;
    command.buffer = p_buffer.get();
    command.shader = EffectiveShader();
    if (!_list.Join(command)) {
        AddShape(p_buffer, command);
    }
    AppendInstance(_modelView.back());
    if (_isDeferring) [[unlikely]] {
        DeferInstance(*p_buffer);
    }
}

void Agl::AddShape(std::shared_ptr<PrimitiveBuffer const> const& p_buffer, Command p_command) {
    p_command.hasNormals = p_buffer->Info().flags[AttributeInfo::Normal];
    p_command.hasColors = p_buffer->Info().flags[AttributeInfo::Color];
    _list.Keep(p_buffer);
    KeepShader();
    _list.commands.push_back(p_command);
}

void Agl::KeepShader() {
    if (_boundShader) {
        _list.Keep(_boundShader);
    }
}

void Agl::AppendInstance(Types::Matrix4 const& p_modelView) {
    double const* const m = p_modelView.Data();
    auto const& origin = _state.projection.origin;
    Instance& instance = _list.instances.emplace_back();
    for (std::size_t row = 0; row < 3; ++row) {
        double const shift = origin[row];
        for (std::size_t column = 0; column < 4; ++column) {
            instance.rows[row][column] = ToFloat(m[4 * column + row] - shift * m[4 * column + 3]);
        }
    }
    instance.color = _state.currentColor.color;
}

// The last row is that of an affine matrix in all but exotic cases, and then nothing changes between draws.
void Agl::ResolvePerspectiveRow(Types::Matrix4 const& p_modelView) {
    double const* const m = p_modelView.Data();
    std::array<float, 4> const row{ToFloat(m[3]), ToFloat(m[7]), ToFloat(m[11]), ToFloat(m[15])};
    Assign(StateItem::PerspectiveRow, _state.perspectiveRow.row, row);
}

void Agl::ResolveState(StateMask p_unused) {
    bool const defers = _state.IsEnabled(EnableBit::Transparency) && _transparencyScopes != 0;
    bool const isSwitched = defers != _isDeferring;
    if (isSwitched) [[unlikely]] {
        SwitchRecording();
    }
    if (!isSwitched) {
        _resolved |= _dirty; // what the other recording just handed over is no news to it
    }
    ResolveTextures();
    StateMask dirty = _dirty & ~UndrawnItems;
    StateMask skipped = 0;
    if ((dirty & StateBit(StateItem::Projection)) != 0) {
        ResolveProjection();
    }
    for (std::size_t unit = 0; unit < TextureUnitCount; ++unit) {
        double const* const m = _textureMatrices[unit].back().Data();
        if ((dirty & StateBit(StateItem::TextureMatrix0 + unit)) != 0) {
            std::transform(m, m + 16, _state.textureMatrices[unit].matrix.begin(), ToFloat);
        }
    }
    if ((dirty & StateBit(StateItem::Polygon)) != 0 || _key.enables != _state.enables) {
        ResolvePolygonPasses();
    }
    for (; dirty != 0; dirty &= dirty - 1) {
        auto const item = static_cast<std::size_t>(std::countr_zero(dirty));
        std::uint32_t& version = _key.version[item];
        if ((p_unused & StateBit(item)) != 0 && version != StateKey::NoVersion) {
            skipped |= StateBit(item);
            continue;
        }
        bool const isSame = version != StateKey::NoVersion &&
            std::memcmp(_list.Version(item, version), _state.Item(item), State::ItemSize(item)) == 0;
        if (!isSame) {
            version = _list.AddVersion(item, _state);
            _keyIsNew = true;
        }
    }
    if (_key.enables != _state.enables) {
        _key.enables = _state.enables;
        _keyIsNew = true;
    }
    if (_keyIsNew) {
        _list.states.push_back(_key);
        _keyIsNew = false;
    }
    _dirty = skipped;
}

void Agl::ResolvePolygonPasses() {
    std::uint8_t const visible = VisibleFaces(_state);
    Pipeline const front = PipelineOf(_state.polygon.frontMode);
    Pipeline const back = PipelineOf(_state.polygon.backMode);
    _passCount = 0;
    if (visible != 0 && front == back) {
        bool const isSorted = _isDeferring && front == Pipeline::Triangles && visible == FaceBit::Both;
        _passes[_passCount++] = {isSorted ? Pipeline::BackThenFront : front, visible};
        return;
    }
    if ((visible & FaceBit::Front) != 0) {
        _passes[_passCount++] = {front, FaceBit::Front};
    }
    if ((visible & FaceBit::Back) != 0) {
        _passes[_passCount++] = {back, FaceBit::Back};
    }
}

// A texture that is gone leaves its unit without one. Those in force are kept until the commands are carried out.
void Agl::ResolveTextures() {
    for (std::size_t unit = 0; unit < TextureUnitCount; ++unit) {
        std::uint64_t& id = _state.textures[unit].texture;
        if (id == 0 || _list.FindTexture(id) != nullptr) {
            continue;
        }
        if (std::shared_ptr<Texture const> texture = _boundTextures[id].lock()) {
            _list.KeepTexture(std::move(texture));
        } else {
            _boundTextures.erase(id);
            Assign(StateItem::Texture0 + unit, id, std::uint64_t(0));
            _resolved |= StateBit(StateItem::Texture0 + unit);
        }
    }
}

void Agl::FlushWhenFull() {
    if (IsFull() && !_isDeferring) [[unlikely]] {
        Flush();
    }
}

std::shared_ptr<PrimitiveBuffer const> Agl::Exchange(std::shared_ptr<PrimitiveBuffer const> p_buffer) {
    return std::exchange(_boundBuffer, std::move(p_buffer));
}

std::shared_ptr<Shader const> Agl::Exchange(std::shared_ptr<Shader const> p_shader) {
    return std::exchange(_boundShader, std::move(p_shader));
}

std::shared_ptr<PrimitiveBuffer const> Agl::CreatePrimitiveBuffer(
    std::shared_ptr<IndexBuffer const> const& p_indices, std::shared_ptr<VertexBuffer const> const& p_vertices) {
    if (!QOR_ENSURE(p_indices && p_vertices)) {
        return {};
    }
    if (_buffers.size() >= _buffersToSweep) {
        std::erase_if(_buffers, [](auto const& p_entry) { return p_entry.second.expired(); });
        _buffersToSweep = std::max<std::size_t>(1024, 2 * _buffers.size());
    }
    std::weak_ptr<PrimitiveBuffer const>& known = _buffers[{p_indices.get(), p_vertices.get()}];
    std::shared_ptr<PrimitiveBuffer const> buffer = known.lock();
    if (!buffer) {
        buffer = std::make_shared<PrimitiveBuffer>(p_indices, p_vertices);
        known = buffer;
    }
    return buffer;
}

std::shared_ptr<Shader const> Agl::GenFixedFunctionShader() {
    _backend->Prepare(*_fixedFunction);
    return _fixedFunction;
}

namespace {

template <class T, class Make>
std::shared_ptr<T const> FindOrMake(std::vector<std::weak_ptr<T const>>& p_known, ShaderSource const& p_source,
    std::uint32_t p_options, Make const& p_make) {
    for (std::weak_ptr<T const> const& weak : p_known) {
        std::shared_ptr<T const> shader = weak.lock();
        if (shader && shader->Options() == p_options && shader->Source() == p_source) {
            return shader;
        }
    }
    std::erase_if(p_known, [](std::weak_ptr<T const> const& p_weak) { return p_weak.expired(); });
    std::shared_ptr<T const> shader = p_make();
    p_known.emplace_back(shader);
    return shader;
}

} // namespace

std::shared_ptr<Shader const> Agl::GenShader(ShaderSource const& p_source, std::uint32_t p_options) {
    auto shader =
        FindOrMake(_shaders, p_source, p_options, [&] { return std::make_shared<Shader const>(p_source, p_options); });
    _backend->Prepare(*shader);
    return shader;
}

std::shared_ptr<GenericShader const> Agl::GenGenericShader(
    ShaderSource const& p_source, GenericShader::State const& p_state) {
    auto shader = FindOrMake(_genericShaders, p_source, p_state.ProgramOptions(),
        [&] { return std::make_shared<GenericShader const>(p_state, p_source); });
    _backend->Prepare(*shader);
    return shader;
}

QImage Agl::ReadPixels(int p_x, int p_y, int p_width, int p_height) {
    if (!CheckOutside("ReadPixels")) {
        return {};
    }
    if (p_width <= 0 || p_height <= 0) {
        Error("ReadPixels: width and height must be greater than 0; nothing is read.");
        return {};
    }
    Flush();
    QImage image = _backend->ReadPixels({p_x, p_y, p_width, p_height});
    if (image.isNull()) {
        Error("ReadPixels: there is nothing to read; it takes a back end that draws and a current context.");
    }
    return image;
}

unsigned Agl::GetMaxStencilBits() const {
    return _backend->Features().maxStencilBits;
}

DeviceFeatures const& Agl::Features() const {
    return _backend->Features();
}

} // namespace Qor::Chart::Ogl
