#include "host/Importer.h"

#include "framework/library/SymbolRegistry.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/Tokens.h"

#include <utility>

namespace Qor::Chart::Host {

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
    using MeshInfo = Library::MeshFile::MeshInfo;
    using Children = std::vector<Core::Ptr<Model::ModelNode>>;

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
        object->SetColor(mesh.color.ToQColor());
        if (!p_node.world.IsIdentity() && !object->SetTransform(p_node.world)) {
            ++_result.dropped;
            return;
        }
        p_siblings.push_back(object);
        ++_result.objects;
        Count(mesh);
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
