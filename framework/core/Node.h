#pragma once

#include "framework/Export.h"
#include "framework/core/Dependencies.h"
#include "framework/core/IDependencyTracker.h"
#include "framework/core/ModifiableNode.h"

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace Qor::Chart::Core {

namespace Detail {
struct Graveyard;
class Propagation;
} // namespace Detail

/// A shared, named thing that can change and tells its dependents when it does.
///
/// A change starts at relationship 0 on the node itself. Each direct dependent then receives it with relationship 1 and
/// whoever is further away with 2, every one exactly once, whatever the number of ways that lead there. A change made
/// while another one spreads reaches its own node at once and its dependents when the first has ended.
///
/// Nodes live on the heap and are held by `Ptr`. A node belongs to one thread at a time; only its count is atomic.
class QOR_FRAMEWORK_API Node : public ModifiableNode, public IDependencyTracker {
public:
    Node(Node const&) = delete;
    Node& operator=(Node const&) = delete;

    /// Takes the change up: the node's time advances and the dependents are told. Overrides do their own part and call
    /// this with the same data; a relationship larger than the received one is passed on as given, so that a node can
    /// make its dependents see the change from further away. What an override throws is reported, and does not keep the
    /// change from the node's dependents.
    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship, WeakPtr<Node> const& p_node,
        std::string const& p_name, boost::any const& p_data) override;

    /// Reports a change of the node itself that nothing else describes.
    void Touch();

    void CollectChildren(std::vector<Node*>& p_children) const override;
    TimeStamp Time() const final { return _time; }
    std::string const& Name() const final { return _name; }
    void Dump(std::ostream& p_stream, Verbosity p_verbosity, std::uint64_t p_depth) const override;

    /// Renames the node; an equal name is no change.
    void SetName(std::string p_name);

    /// Stable for the node's life and never used twice in a process; counts up from 1.
    std::uint32_t Id() const noexcept { return _id; }

    /// The number of the node's class, from 1 on, the same for all its nodes in one process.
    std::uint16_t TypeNumber() const;

    /// The class name without namespaces.
    std::string TypeName() const;

    Dependencies& Deps() final { return _dependencies; }
    Dependencies const& Deps() const final { return _dependencies; }

    void AddReference() const noexcept { _references.fetch_add(1, std::memory_order_relaxed); }
    void Release() const noexcept {
        if (_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            Die();
    }
    std::uint32_t ReferenceCount() const noexcept { return _references.load(std::memory_order_relaxed); }

    /// True from the moment the last handle is gone. A dying node is told no more and tells nobody; handles that are
    /// made of it until it is destroyed do not bring it back.
    bool IsDying() const noexcept { return ReferenceCount() >= Dying; }

protected:
    Node();
    ~Node() override;

private:
    friend struct Detail::Graveyard;
    friend class Detail::Propagation;
    friend Detail::WeakControl* Detail::AcquireControl(Node& p_node);
    friend bool Detail::TryAddReference(Detail::WeakControl const& p_control) noexcept;

    static constexpr std::uint32_t Dying = 1U << 31U; ///< added to the count of a node whose last handle is gone

    void Die() const noexcept;

    mutable std::atomic<std::uint32_t> _references{0};
    std::uint32_t const _id;
    Detail::WeakControl* _control = nullptr;
    TimeStamp _time = TimeStamp::Now();
    std::uint64_t _spread : 48 = 0; ///< number of the last change that reached the node
    mutable std::uint64_t _typeNumber : 16 = 0;
    Dependencies _dependencies;
    std::string _name;
};

/// Several nodes at once, held weakly: what leaves when a child list is cleared.
using NodeHandles = std::vector<WeakPtr<Node>>;

/// Writes the node's class, name and identifier, such as `Group "wheels" #12`; for messages.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Ptr<Node> const& p_node);
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Node const& p_node);

/// While one is open on a thread, nodes whose last handle goes are expired at once but destroyed only when the outermost
/// scope closes. Traversals hold one, so that a hook may drop any node, the one that it runs on included.
class QOR_FRAMEWORK_API DestructionScope {
public:
    DestructionScope() noexcept;
    ~DestructionScope();
    DestructionScope(DestructionScope const&) = delete;
    DestructionScope& operator=(DestructionScope const&) = delete;

    static bool IsOpen() noexcept;
    /// Frees the memory when the outermost scope closes.
    static void Retire(void* p_memory);
};

} // namespace Qor::Chart::Core
