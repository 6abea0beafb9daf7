#include "host/Importer.h"

#include "framework/library/SymbolRegistry.h"
#include "framework/model/RenderStyle.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/Tokens.h"

#include <compare>
#include <map>
#include <utility>

namespace Qor::Chart::Host {

namespace {

using AlphaMode = Library::MeshFile::AlphaMode;
using MeshInfo = Library::MeshFile::MeshInfo;
using Style = Model::RenderStyle;

bool NeedsStyle(MeshInfo const& p_mesh) {
    return !p_mesh.surface.texture.empty() || p_mesh.color.alpha < 1;
}

/// Elsewhere back faces do no harm, and some files have faces the wrong way round.
Style::Culling CullingOf(MeshInfo const& p_mesh, bool p_mirrored) {
    if (!p_mesh.surface.isOneSided || p_mesh.surface.alphaMode != AlphaMode::Blend)
        return Style::Culling::None;
    return p_mirrored ? Style::Culling::Front : Style::Culling::Back;
}

void SetAlpha(Style& p_style, MeshInfo const& p_mesh) {
    if (p_mesh.color.alpha < 1)
        p_style.SetOpacity(static_cast<double>(p_mesh.color.alpha));
    if (p_mesh.surface.alphaMode == AlphaMode::Opaque)
        p_style.SetAlphaMode(Style::AlphaMode::Opaque);
    if (p_mesh.surface.alphaMode == AlphaMode::Mask) {
        p_style.SetAlphaMode(Style::AlphaMode::Cutout);
        p_style.SetAlphaCutoff(static_cast<double>(p_mesh.surface.alphaCutoff));
    }
}

void SetTexture(Style& p_style, Library::MeshFile::Surface const& p_surface) {
    using Filter = Types::TextureUnit::Filter;
    using Wrap = Types::TextureUnit::Wrap;
    p_style.SetTexture(p_surface.texture);
    Model::TextureFilters const filters{
        static_cast<Filter>(p_surface.sampling.minification), static_cast<Filter>(p_surface.sampling.magnification)};
    if (filters != Model::TextureFilters())
        p_style.SetTextureFilters(filters);
    Model::TextureWraps const wraps{
        static_cast<Wrap>(p_surface.sampling.wrapS), static_cast<Wrap>(p_surface.sampling.wrapT)};
    if (wraps != Model::TextureWraps())
        p_style.SetTextureWraps(wraps);
}

} // namespace

/// Makes the model tree of one file. The file lists parents before their children, so one pass over the list does it.
class Importer::Builder {
public:
    explicit Builder(Library::MeshFile const& p_file)
        : _file(p_file)
        , _symbols(p_file.Meshes().size())
        , _groups(p_file.Nodes().size())
        , _children(p_file.Nodes().size()) {}

    Result Build() {
        _result.root = MakeGroup(_file.Path().filename());
        _result.dropped = _file.DroppedPrimitives();
        for (std::size_t number = 0; number < _file.Nodes().size(); ++number)
            AddNode(number);
        Link();
        return std::move(_result);
    }

private:
    using Node = Library::MeshFile::Node;
    using Children = std::vector<Core::Ptr<Model::ModelNode>>;

    /// What tells the styles of a group apart.
    struct StyleKey {
        Children const* siblings;
        std::uint32_t material;
        bool isTextured; ///< a mesh may lack the texture coordinates for it
        Style::Culling culling;

        auto operator<=>(StyleKey const&) const = default;
    };
    struct StyledObjects {
        Core::Ptr<Style> style;
        Children objects;
    };

    void AddNode(std::size_t p_number) {
        Node const& node = _file.Nodes()[p_number];
        Children& siblings = node.parent == Library::MeshFile::NoParent ? _top : _children[node.parent];
        if (node.children.empty() && node.meshes.size() == 1) {
            AddObject(siblings, node, node.meshes.front(), node.name);
            return;
        }
        // A nameless root that holds everything is the file itself.
        if (node.parent == Library::MeshFile::NoParent && node.name.empty()) {
            _groups[p_number] = _result.root;
        } else {
            _groups[p_number] = MakeGroup(node.name.empty() ? "node " + std::to_string(p_number) : node.name);
            siblings.push_back(_groups[p_number]);
        }
        for (std::uint32_t const mesh : node.meshes)
            AddObject(_children[p_number], node, mesh, _file.Meshes()[mesh].name);
    }

    /// Puts the tree together from its leaves up: a change spreads to all that is above, and here that is nothing yet.
    void Link() {
        for (auto const& [key, styled] : _styles) {
            for (Core::Ptr<Model::ModelNode> const& object : styled.objects)
                styled.style->Add(object);
        }
        for (std::size_t number = _children.size(); number-- > 0;) {
            for (Core::Ptr<Model::ModelNode> const& child : _children[number])
                _groups[number]->Add(child);
        }
        for (Core::Ptr<Model::ModelNode> const& child : _top)
            _result.root->Add(child);
    }

    Core::Ptr<Model::Group> MakeGroup(std::string p_name) {
        Core::Ptr<Model::Group> group = Core::MakeNode<Model::Group>();
        group->SetName(std::move(p_name));
        ++_result.groups;
        return group;
    }

    void AddObject(Children& p_siblings, Node const& p_node, std::uint32_t p_mesh, std::string const& p_name) {
        MeshInfo const& mesh = _file.Meshes()[p_mesh];
        if (!mesh.symbol)
            return;
        Core::Ptr<Model::SimpleObject> const object = Core::MakeNode<Model::SimpleObject>(SymbolOf(p_mesh));
        object->SetName(p_name.empty() ? NameOf(mesh, p_mesh) : p_name);
        Types::Color4f const color = mesh.color;
        object->SetColor(Types::Color4f(color.red, color.green, color.blue).ToQColor());
        if (!p_node.world.IsIdentity() && !object->SetTransform(p_node.world)) {
            ++_result.dropped;
            return;
        }
        Place(p_siblings, mesh, p_node.world.Determinant() < 0).push_back(object);
        ++_result.objects;
        Count(mesh);
    }

    /// Where an object of the mesh goes: among the siblings, or below a style that stands there.
    Children& Place(Children& p_siblings, MeshInfo const& p_mesh, bool p_mirrored) {
        if (!NeedsStyle(p_mesh))
            return p_siblings;
        StyleKey const key{
            &p_siblings, p_mesh.materialNumber, !p_mesh.surface.texture.empty(), CullingOf(p_mesh, p_mirrored)};
        auto const [place, isNew] = _styles.try_emplace(key);
        if (isNew) {
            place->second.style = MakeStyle(p_mesh, key.culling);
            p_siblings.push_back(place->second.style);
        }
        return place->second.objects;
    }

    Core::Ptr<Style> MakeStyle(MeshInfo const& p_mesh, Style::Culling p_culling) {
        Core::Ptr<Style> style = Core::MakeNode<Style>();
        style->SetName(p_mesh.material.empty() ? "material " + std::to_string(p_mesh.materialNumber) : p_mesh.material);
        SetAlpha(*style, p_mesh);
        if (p_culling != Style::Culling::None)
            style->SetCulling(p_culling);
        if (!p_mesh.surface.texture.empty())
            SetTexture(*style, p_mesh.surface);
        ++_result.styles;
        return style;
    }

    Core::Ptr<Model::Symbol> const& SymbolOf(std::uint32_t p_mesh) {
        Core::Ptr<Model::Symbol>& symbol = _symbols[p_mesh];
        if (!symbol) {
            symbol = Core::MakeNode<Model::Symbol>(_file.Path().string() + "#" + std::to_string(p_mesh));
            symbol->SetName(NameOf(_file.Meshes()[p_mesh], p_mesh));
        }
        return symbol;
    }

    static std::string NameOf(MeshInfo const& p_mesh, std::uint32_t p_number) {
        if (!p_mesh.name.empty())
            return p_mesh.name;
        return p_mesh.material.empty() ? "mesh " + std::to_string(p_number) : p_mesh.material;
    }

    void Count(MeshInfo const& p_mesh) {
        switch (p_mesh.kind) {
        case Ogl::Tokens::AGL_LINES:
            _result.lines += p_mesh.primitives;
            break;
        case Ogl::Tokens::AGL_POINTS:
            _result.points += p_mesh.primitives;
            break;
        default:
            _result.triangles += p_mesh.primitives;
        }
    }

    Library::MeshFile const& _file;
    std::vector<Core::Ptr<Model::Symbol>> _symbols; ///< by mesh, made when first used
    std::vector<Core::Ptr<Model::Group>> _groups; ///< by node; empty where the node became an object
    std::vector<Children> _children; ///< by node, of its group
    Children _top; ///< of the root
    std::map<StyleKey, StyledObjects> _styles;
    Result _result;
};

Importer::Importer(Library::SymbolRegistry const& p_symbols) : _symbols(p_symbols) {}

Importer::~Importer() = default;

Importer::Result Importer::Import(qorfile::filepath const& p_file, Progress const& p_progress) {
    std::shared_ptr<Library::MeshFile const> file = _symbols.OpenModel(p_file.string(), p_progress);
    Result result = Builder(*file).Build();
    _files.push_back(std::move(file));
    return result;
}

} // namespace Qor::Chart::Host
