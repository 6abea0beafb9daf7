#pragma once

#include "framework/ogl/CommandList.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Qor::Chart::Ogl {

/// What draws are recorded in, and what of the state the last one knew.
struct Recording {
    static constexpr StateMask AllGroups = (StateMask(1) << StateItem::Count) - 1;

    CommandList list;
    StateKey key;
    bool keyIsNew = true;
    StateMask dirty = AllGroups; ///< groups that were written since they were last looked at

    Recording() { key.version.fill(StateKey::NoVersion); }
};

/// Draws that wait for each other, recorded apart from those that do not, each with its depth. In the end they are
/// moved to the list of the others, farthest first.
class DeferredDraws {
public:
    /// What is recorded while draws wait; the commands in it are not merged but by shape.
    Recording recording;

    bool IsEmpty() const { return _draws.empty(); }
    std::size_t Count() const { return _draws.size(); }

    /// Adds a draw: one instance of a command, or the whole of an immediate one.
    /// @param p_depth  z in eye coordinates: the smaller, the farther
    void AddInstance(double p_depth, std::uint32_t p_command, std::uint32_t p_instance);
    void AddImmediate(double p_depth, std::uint32_t p_command);

    /// Farthest first; what is equally far stays in the order in which it came.
    void Sort();
    /// Appends the draw of that place to a list, or lets it join the draw before.
    void MoveTo(std::size_t p_place, CommandList& p_list);
    /// To be called when that list was emptied.
    void ForgetStates();
    /// Drops what is left; p_list keeps alive what the draws need.
    void Clear(CommandList& p_list);

private:
    struct Draw {
        std::uint32_t command;
        std::uint32_t instance;
    };
    static constexpr std::uint32_t Unknown = 0xFFFFFFFF;

    void Add(double p_depth, Draw const& p_draw);
    std::uint32_t StateIn(CommandList& p_list, std::uint32_t p_state);
    std::uint32_t VersionIn(CommandList& p_list, std::size_t p_item, std::uint32_t p_version);
    void MoveInstance(Command p_command, std::uint32_t p_instance, CommandList& p_list) const;
    void MoveImmediate(Command p_command, CommandList& p_list) const;

    std::vector<Draw> _draws;
    std::vector<std::uint64_t>
        _order; ///< depth in the upper half, so that smaller ones are farther; number of the draw
    std::vector<std::uint64_t> _scratch;
    std::vector<std::uint32_t> _states; ///< where the recording's states are in the list, and the versions of groups
    std::array<std::vector<std::uint32_t>, StateItem::Count> _versions;
};

} // namespace Qor::Chart::Ogl
