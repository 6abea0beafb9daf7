#pragma once

#include "framework/Export.h"
#include "framework/core/Node.h"
#include "framework/utility/Ensure.h"

#include <type_traits>

namespace Qor::Chart::Core {

namespace Detail {

/// What `Ref` and `WeakRef` share: who refers, under which name, and telling the owner.
class QOR_FRAMEWORK_API Reference {
public:
    Reference(Reference const&) = delete;
    Reference& operator=(Reference const&) = delete;

    /// The name under which the owner refers; text with static storage.
    char const* Name() const noexcept { return _name; }

protected:
    Reference(Node& p_owner, char const* p_name) noexcept : _owner(&p_owner), _name(p_name) {}
    ~Reference() = default;

    void Link(Node* p_node) { // NOLINT(readability-make-member-function-const)
        if (p_node)
            p_node->Deps().Add(*_owner, Dependencies::Link::Reference);
    }
    void Unlink(Node* p_node) noexcept { // NOLINT(readability-make-member-function-const)
        if (p_node)
            p_node->Deps().Remove(*_owner, Dependencies::Link::Reference);
    }
    void TouchOwner();

private:
    Node* _owner;
    char const* _name;
};

} // namespace Detail

/// An owning reference of a node to another one: the owner keeps the node alive, is told when it changes, and reports
/// attaching and dropping it as a change of its own.
template <class T>
class Ref : public Detail::Reference {
public:
    /// @param p_owner  the node that has this reference as a member
    /// @param p_name   text with static storage
    Ref(Node& p_owner, char const* p_name) noexcept : Reference(p_owner, p_name) {}
    ~Ref() { Unlink(_node.Get()); }

    /// Attaches a node, or drops the old one when the handle is empty.
    void Attach(Ptr<T> p_node) {
        if (p_node == _node)
            return;
        Link(p_node.Get());
        Unlink(_node.Get());
        _node.Swap(p_node);
        TouchOwner();
    }

    Ptr<T> const& Get() const noexcept { return _node; }
    T* operator->() const noexcept { return _node.Get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(_node); }

private:
    Ptr<T> _node;
};

/// A reference of a node to another one that does not keep it alive; the owner is told when the node changes, and
/// reports attaching and dropping it as a change of its own. It keeps knowing its node by owner when that is gone.
template <class T>
class WeakRef : public Detail::Reference {
public:
    WeakRef(Node& p_owner, char const* p_name) noexcept : Reference(p_owner, p_name) {}
    ~WeakRef() { Unlink(_node.Peek()); }

    /// Attaches a node, or drops the old one when the handle is empty. A node that is no T is reported and refused.
    template <class U>
    void Attach(Ptr<U> const& p_node) {
        if constexpr (std::is_convertible_v<U*, T*>) {
            Exchange(WeakPtr<T>(p_node));
        } else {
            auto const node = DynamicCast<T>(p_node);
            if (QOR_ENSURE_TEXT(node || !p_node, "Incorrect type being attached to WeakRef<T>"))
                Exchange(WeakPtr<T>(node));
        }
    }
    void Detach() { Exchange({}); }

    WeakPtr<T> const& Get() const noexcept { return _node; }
    Ptr<T> Lock() const noexcept { return _node.Lock(); }
    T* Peek() const noexcept { return _node.Peek(); }
    bool Expired() const noexcept { return _node.Expired(); }

private:
    void Exchange(WeakPtr<T> p_node) {
        if (p_node == _node)
            return;
        Link(p_node.Peek());
        Unlink(_node.Peek());
        _node = std::move(p_node);
        TouchOwner();
    }

    WeakPtr<T> _node;
};

} // namespace Qor::Chart::Core
