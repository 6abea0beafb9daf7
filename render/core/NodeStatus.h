#pragma once

namespace Qor::Chart::Render {

/// What an update hook says of its node.
enum NodeStatusValue : int {
    NodeStatusOk = 0,
    NodeStatusInvalid = 1, ///< something is wrong; the node is retried when it is touched
    NodeStatusPending = 2, ///< not ready yet; a touch brings the node back
};

/// The answer of an update hook.
class NodeStatus {
public:
    constexpr NodeStatus(NodeStatusValue p_value) noexcept : _value(p_value) {}
    constexpr int Value() const noexcept { return _value; }
    constexpr bool operator==(NodeStatus const&) const noexcept = default;

private:
    int _value;
};

/// The answer of a draw hook: 0 goes on with the children, everything else leaves them out.
enum DrawResult : int {
    DrawResultDescend = 0,
    DrawResultSkipChildren = 1,
};

} // namespace Qor::Chart::Render
