#include "framework/core/Node.h"

#include "framework/core/Propagation.h"
#include "framework/core/TypeNumbers.h"
#include "framework/utility/TypeInfo.h"

#include <boost/any.hpp>

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <ostream>
#include <stdexcept>
#include <typeinfo>
#include <utility>

namespace Qor::Chart::Core {

namespace {

std::uint32_t NextId() {
    static std::atomic<std::uint32_t> last{0};
    std::uint32_t const id = last.fetch_add(1, std::memory_order_relaxed) + 1;
    if (id == 0)
        throw std::overflow_error("This process has used up its four billion node identifiers; restart it.");
    return id;
}

thread_local bool threadIsEnding = false;

std::string const& EmptyName() {
    static std::string const name;
    return name;
}

} // namespace

namespace Detail {

/// Nodes and memory of one thread that wait for their end.
struct Graveyard {
    std::vector<Node const*> nodes;
    std::vector<void*> memory;
    unsigned scopes = 0;
    bool isBurying = false;

    bool IsIdle() const noexcept { return scopes == 0 && !isBurying; }

    void BuryAll() noexcept {
        if (!IsIdle())
            return;
        isBurying = true;
        while (!nodes.empty()) {
            Node const* const next = nodes.back();
            nodes.pop_back();
            delete next;
        }
        isBurying = false;
        for (void* const block : memory)
            std::free(block);
        memory.clear();
    }
};

thread_local Graveyard* graveyardOfThread = nullptr;

/// Frees the thread's graveyard when it ends. Nodes that die still later, with static objects, get one for the moment.
struct GraveyardKeeper {
    ~GraveyardKeeper() {
        threadIsEnding = true;
        FreeIdle();
    }
    static void FreeIdle() noexcept {
        if (threadIsEnding && graveyardOfThread && graveyardOfThread->IsIdle())
            delete std::exchange(graveyardOfThread, nullptr);
    }
};

Graveyard& GraveyardOfThread() noexcept {
    if (!graveyardOfThread) {
        graveyardOfThread = new Graveyard;
        if (!threadIsEnding)
            static thread_local GraveyardKeeper const keeper;
    }
    return *graveyardOfThread;
}

WeakControl* AcquireControl(Node& p_node) {
    if (!p_node._control) {
        p_node._control = new WeakControl;
        p_node._control->node = p_node.IsDying() ? nullptr : &p_node;
    }
    ++p_node._control->handles;
    return p_node._control;
}

bool TryAddReference(WeakControl const& p_control) noexcept {
    if (!p_control.node || p_control.node->ReferenceCount() == 0)
        return false;
    p_control.node->AddReference();
    return true;
}

} // namespace Detail

Node::Node() : _id(NextId()) {}

Node::~Node() {
    Detail::Propagation::Forget(*this);
    if (_control)
        _control->node = nullptr;
    Detail::ReleaseControl(_control);
}

void Node::TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship, WeakPtr<Node> const& p_node,
    std::string const& p_name, boost::any const& p_data) {
    _time.Touch();
    if (_dependencies.Empty() || IsDying())
        return;
    Detail::Propagation* const propagation = Detail::Propagation::OfThread();
    if (!propagation)
        return;
    if (propagation->IsHandingOn(*this, p_data))
        propagation->HandOn(*this, std::max(p_relationship, RelationshipDirect));
    else
        propagation->Spread(*this, p_type, p_change, p_relationship, p_node, p_name, p_data);
}

/// Reported as a property without a name: a generic change is what libraries above take for less than a real one.
void Node::Touch() {
    TouchThis(ModifiableTypeProperty, ChangeModified, RelationshipSelf, {}, EmptyName(), {});
}

void Node::CollectChildren(std::vector<Node*>&) const {}

void Node::Dump(std::ostream& p_stream, Verbosity, std::uint64_t p_depth) const {
    p_stream << std::setw(static_cast<int>(p_depth) * 2) << "" << *this << '\n';
}

void Node::SetName(std::string p_name) {
    static std::string const nameOfName = "name";
    if (p_name == _name)
        return;
    _name = std::move(p_name);
    TouchThis(ModifiableTypeName, ChangeModified, RelationshipSelf, {}, nameOfName, {});
}

std::uint16_t Node::TypeNumber() const {
    if (_typeNumber == 0)
        _typeNumber = TypeNumbers::NumberOf(typeid(*this));
    return static_cast<std::uint16_t>(_typeNumber);
}

std::string Node::TypeName() const {
    std::string const name = Utility::TypeInfo(typeid(*this)).Name();
    std::size_t const scope = name.rfind("::", name.find('<'));
    return scope == std::string::npos ? name : name.substr(scope + 2);
}

/// Runs when the last handle is gone. A node that dies while another one is being destroyed waits for its turn, so the
/// stack stays flat.
void Node::Die() const noexcept {
    _references.store(Dying, std::memory_order_relaxed);
    if (_control)
        _control->node = nullptr;
    Detail::Graveyard& graveyard = Detail::GraveyardOfThread();
    graveyard.nodes.push_back(this);
    graveyard.BuryAll();
    Detail::GraveyardKeeper::FreeIdle();
}

std::ostream& operator<<(std::ostream& p_stream, Node const& p_node) {
    return p_stream << p_node.TypeName() << " \"" << p_node.Name() << "\" #" << p_node.Id();
}

std::ostream& operator<<(std::ostream& p_stream, Ptr<Node> const& p_node) {
    return p_node ? p_stream << *p_node : p_stream << "(no node)";
}

DestructionScope::DestructionScope() noexcept {
    ++Detail::GraveyardOfThread().scopes;
}

DestructionScope::~DestructionScope() {
    Detail::Graveyard& graveyard = Detail::GraveyardOfThread();
    --graveyard.scopes;
    graveyard.BuryAll();
    Detail::GraveyardKeeper::FreeIdle();
}

bool DestructionScope::IsOpen() noexcept {
    return Detail::graveyardOfThread && Detail::graveyardOfThread->scopes > 0;
}

void DestructionScope::Retire(void* p_memory) {
    Detail::GraveyardOfThread().memory.push_back(p_memory);
}

} // namespace Qor::Chart::Core
