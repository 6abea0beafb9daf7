#pragma once

#include "framework/core/NodePath.h"
#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "framework/model/ModelNode.h"
#include "framework/types/Pos.h"
#include "framework/types/Vector3.h"
#include "render/Export.h"
#include "render/core/Vis.h"

#include <boost/operators.hpp>

#include <cstdint>
#include <iosfwd>
#include <optional>

namespace Qor::Chart::Render {

/// One thing that can be selected: the visual node that handles it, the model node that is meant, where there are several
/// things in one node the index of this one, and where it was hit. A plain value that keeps no node alive: a stored
/// selection outlives what it names.
///
/// Two records are equal when they name the same two nodes; the order by `<` also tells the things in one node apart.
class QOR_VIS_API SelectRecord : private boost::equality_comparable<SelectRecord>,
                                 private boost::less_than_comparable<SelectRecord> {
public:
    SelectRecord() = default;
    SelectRecord(
        Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection, Core::NodePath const& p_path);
    /// @param p_index  of the thing in the node, such as the name of a hit
    SelectRecord(Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection, std::uint64_t p_index,
        Core::NodePath const& p_path);
    /// @param p_location   of the hit, in the handler's coordinates
    /// @param p_screenPos  of the hit, in pixels of the window, origin in the lower left corner
    SelectRecord(Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection,
        Types::Vector3_Base<double> const& p_location, Types::Pos const& p_screenPos, Core::NodePath const& p_path);
    SelectRecord(Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection, std::uint64_t p_index,
        Types::Vector3_Base<double> const& p_location, Types::Pos const& p_screenPos, Core::NodePath const& p_path);

    Core::WeakPtr<Vis> const& Handler() const noexcept { return _handler; }
    Core::WeakPtr<Model::ModelNode> const& Selection() const noexcept { return _selection; }
    /// May be undefined.
    Core::NodePath const& Path() const noexcept { return _path; }
    std::optional<std::uint64_t> const& Subordinate() const noexcept { return _subordinate; }
    /// Whether the index names something; one that is there may still be `Ogl::HitRecord::NameInvalid`.
    bool IsSubordinateValid() const noexcept;
    std::optional<std::uint64_t> const& SecondIndex() const noexcept { return _secondIndex; }
    void SetSecondIndex(std::optional<std::uint64_t> p_index) noexcept { _secondIndex = p_index; }
    std::optional<Types::Vector3_Base<double>> const& Location() const noexcept { return _location; }
    std::optional<Types::Pos> const& ScreenPos() const noexcept { return _screenPos; }

    /// True while both nodes live.
    bool IsValid() const;

    /// Whether handler and selection are the same; indices, place and path do not count.
    bool operator==(SelectRecord const& p_other) const;
    /// By selection, handler, index and second index; absent indices count as 0.
    bool operator<(SelectRecord const& p_other) const;

private:
    Core::WeakPtr<Vis> _handler;
    Core::WeakPtr<Model::ModelNode> _selection;
    Core::NodePath _path;
    std::optional<std::uint64_t> _subordinate;
    std::optional<std::uint64_t> _secondIndex;
    std::optional<Types::Vector3_Base<double>> _location;
    std::optional<Types::Pos> _screenPos;
};

/// Writes handler, selection, index, place and path, each where there is one; of nodes that are gone only that.
QOR_VIS_API std::ostream& operator<<(std::ostream& p_stream, SelectRecord const& p_record);

} // namespace Qor::Chart::Render
