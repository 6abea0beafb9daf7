#include "framework/model/Symbol.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

namespace Qor::Chart::Model {

namespace {

struct FileParts {
    std::string_view path;
    std::optional<unsigned> mesh;
};

/// A "#" that no number follows is a part of the path.
FileParts Split(std::string_view p_file) {
    std::size_t const mark = p_file.rfind('#');
    if (mark == std::string_view::npos)
        return {p_file, std::nullopt};
    char const* const end = p_file.data() + p_file.size();
    unsigned mesh = 0;
    auto const result = std::from_chars(p_file.data() + mark + 1, end, mesh);
    if (result.ec != std::errc() || result.ptr != end)
        return {p_file, std::nullopt};
    return {p_file.substr(0, mark), mesh};
}

} // namespace

Property<Symbol, SymbolShape> const Symbol::ShapeProperty(
    Field<&Symbol::_shape>, {1, "shape", "The built-in shape to show, unless a file is set."}, SymbolShape::Unset);

Property<Symbol, std::string> const Symbol::FileProperty(Field<&Symbol::_file>,
    {2, "file",
        "The model file to show. With # and a number at its end, the mesh of that number alone, counted from 0."},
    std::string());

PropertyList const& Symbol::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(), {&ShapeProperty, &FileProperty});
    return properties;
}

Symbol::Symbol(SymbolShape p_shape) {
    SetShape(p_shape);
}

Symbol::Symbol(std::string p_file) {
    SetFile(std::move(p_file));
}

Symbol::~Symbol() = default;

void Symbol::SetShape(SymbolShape p_shape) {
    Reset(FileProperty);
    ShapeProperty.Set(*this, p_shape);
}

void Symbol::SetFile(std::string p_file) {
    Reset(ShapeProperty);
    FileProperty.Set(*this, std::move(p_file));
}

std::string Symbol::FilePath() const {
    return std::string(Split(_file).path);
}

std::optional<unsigned> Symbol::MeshIndex() const {
    return Split(_file).mesh;
}

Core::Ptr<ModelNode> Symbol::NewOfSameClass() const {
    return Core::MakeNode<Symbol>();
}

std::span<std::string_view const> NamesOf(Symbol::SourceKind) noexcept {
    static constexpr std::array<std::string_view, 3> names{"Unset", "Shape", "File"};
    return names;
}

} // namespace Qor::Chart::Model
