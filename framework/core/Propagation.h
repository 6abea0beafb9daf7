#pragma once

#include "framework/core/Node.h"

#include <deque>
#include <string>
#include <vector>

namespace Qor::Chart::Core::Detail {

/// Spreads the changes made on one thread, one after the other, breadth first: the direct dependents, then the rest.
/// Nothing recurses, so chains of any length are fine. Nodes that lose their last handle meanwhile are told no more, and
/// are destroyed when all changes have ended.
class Propagation {
public:
    /// Null while the thread ends.
    static Propagation* OfThread() noexcept;

    /// Whether the node is handing on the very change that it is just receiving.
    bool IsHandingOn(Node const& p_node, boost::any const& p_data) const noexcept {
        return _receiver == &p_node && _data == &p_data;
    }
    void HandOn(Node& p_node, IModifiable::Relationship p_relationship);

    /// Spreads a change to the dependents of its origin, now or after the one that is under way.
    void Spread(Node& p_origin, IModifiable::ModifiableType p_type, IModifiable::Change p_change,
        IModifiable::Relationship p_relationship, WeakPtr<Node> const& p_node, std::string const& p_name,
        boost::any const& p_data);

    /// Takes a node that is being destroyed out of what is still to be told.
    static void Forget(Node const& p_node) noexcept;

    ~Propagation();

private:
    struct Stop {
        Node* node;
        IModifiable::Relationship relationship;
    };
    struct Postponed {
        Node* origin;
        IModifiable::ModifiableType type;
        IModifiable::Change change;
        IModifiable::Relationship relationship;
        WeakPtr<Node> node;
        std::string name;
        boost::any data;
    };

    void SpreadOne(Node& p_origin, IModifiable::ModifiableType p_type, IModifiable::Change p_change,
        IModifiable::Relationship p_relationship, WeakPtr<Node> const& p_node, std::string const& p_name,
        boost::any const& p_data);

    void PassOver(Node& p_receiver, char const* p_what);

    std::vector<Stop> _queue; ///< direct dependents stand before further ones
    std::deque<Postponed> _postponed;
    Node const* _receiver = nullptr;
    boost::any const* _data = nullptr;
    std::uint64_t _spread : 48 = 0; ///< number of the change under way
    bool _busy = false;
};

} // namespace Qor::Chart::Core::Detail
