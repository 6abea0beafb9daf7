#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"
#include "framework/model/SymbolShape.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Qor::Chart::Model {

/// What simple objects look like: a built-in shape, or the content of a model file. Many objects share one symbol, and
/// all follow when it changes.
class QOR_FRAMEWORK_API Symbol : public ModelNode {
public:
    using Shape = SymbolShape;

    /// Where the look comes from.
    enum class SourceKind : int {
        Unset = 0,
        Shape = 1,
        File = 2,
    };

    static Property<Symbol, SymbolShape> const ShapeProperty;
    static Property<Symbol, std::string> const FileProperty;
    static PropertyList const& ClassProperties();

    Symbol() = default;
    explicit Symbol(SymbolShape p_shape);
    explicit Symbol(std::string p_file);

    SymbolShape GetShape() const noexcept { return _shape; }
    /// Takes a built-in shape in place of a file.
    void SetShape(SymbolShape p_shape);

    /// The path of a model file, UTF-8; with "#" and a number at its end, such as "car.glb#12", the mesh of that number,
    /// counted from 0, instead of all meshes as the file arranges them.
    std::string const& GetFile() const noexcept { return _file; }
    /// Takes a file in place of a shape.
    void SetFile(std::string p_file);

    /// The path alone.
    std::string FilePath() const;
    /// The number of the mesh, when the file names one.
    std::optional<unsigned> MeshIndex() const;

    /// A file goes before a shape when both are set.
    SourceKind Source() const noexcept {
        if (!_file.empty())
            return SourceKind::File;
        return _shape == SymbolShape::Unset ? SourceKind::Unset : SourceKind::Shape;
    }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Symbol() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    SymbolShape _shape = SymbolShape::Unset;
    std::string _file;
};

QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(Symbol::SourceKind) noexcept;

} // namespace Qor::Chart::Model
