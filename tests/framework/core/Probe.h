#pragma once

#include "framework/core/NodeList.h"
#include "framework/core/Ref.h"

#include <boost/any.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace Qor::Chart::Core {

/// A node that writes down what reaches it, as "name change relationship", into a log that all of a test share.
class Probe : public NodeList<Probe> {
public:
    static inline std::vector<std::string> log;
    static inline int alive = 0;
    static inline int received = 0;

    explicit Probe(std::string const& p_name = {}) {
        SetName(p_name);
        ++alive;
    }
    ~Probe() override {
        --alive;
        if (onDeath)
            onDeath(*this);
    }

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship, WeakPtr<Node> const& p_node,
        std::string const& p_name, boost::any const& p_data) override {
        ++received;
        type = p_type;
        change = p_change;
        relationship = p_relationship;
        data = p_data;
        if (isLogging)
            log.push_back(Name() + ' ' + p_name + ' ' + std::to_string(p_relationship));
        if (onTouch)
            onTouch(p_name);
        Node::TouchThis(p_type, p_change, std::max(p_relationship, handsOnAs), p_node, p_name, p_data);
    }

    void Report(std::string const& p_name) {
        TouchThis(ModifiableTypeGeneric, ChangeModified, RelationshipSelf, {}, p_name, {});
    }

    bool isLogging = true;
    Relationship handsOnAs = RelationshipSelf;
    std::function<void(std::string const&)> onTouch;
    std::function<void(Probe&)> onDeath;
    ModifiableType type{};
    Change change{};
    Relationship relationship{};
    boost::any data;
    WeakRef<Probe> weak{*this, "weak"};
    Ref<Probe> ref{*this, "ref"};
};

inline Ptr<Probe> MakeProbe(std::string p_name = {}, bool p_isLogging = true) {
    auto probe = MakeNode<Probe>(std::move(p_name));
    probe->isLogging = p_isLogging;
    return probe;
}

/// Nodes of which each is the only child of the one before.
inline std::vector<Ptr<Probe>> MakeChain(std::size_t p_length) {
    std::vector<Ptr<Probe>> chain;
    chain.reserve(p_length);
    for (std::size_t level = 0; level < p_length; ++level)
        chain.push_back(MakeProbe({}, false));
    for (std::size_t level = p_length - 1; level > 0; --level)
        chain[level - 1]->Add(chain[level]);
    return chain;
}

/// Expects that undoing in random order takes a few times as long as making so many; were each one searched for from
/// the beginning, it would take more than a hundred times as long.
template <class Make, class Undo>
void ExpectLinear(Make const& p_make, Undo const& p_undo) {
    std::vector<std::size_t> order(200'000);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::clock_t const start = std::clock();
    std::ranges::for_each(order, p_make);
    std::shuffle(order.begin(), order.end(), std::mt19937(1));
    std::clock_t const middle = std::clock();
    std::ranges::for_each(order, p_undo);
    EXPECT_LT(std::clock() - middle, (middle - start + 1) * 20);
}

} // namespace Qor::Chart::Core
