#pragma once

#include "framework/core/NodeList.h"
#include "framework/core/Ref.h"

#include <boost/any.hpp>

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

    explicit Probe(std::string p_name = {}) {
        SetName(std::move(p_name));
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
    /// What the last change carried, as the child it was about.
    WeakPtr<Node> DataNode() const {
        auto const* const node = boost::any_cast<WeakPtr<Node>>(&data);
        return node ? *node : WeakPtr<Node>();
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

/// Processor time that the work takes.
template <class Work>
double SecondsOf(Work const& p_work) {
    std::clock_t const start = std::clock();
    p_work();
    return static_cast<double>(std::clock() - start + 1) / CLOCKS_PER_SEC;
}

/// Taking so many nodes out of a list takes a few times as long as making them; were each one searched for from the
/// beginning, it would take more than a hundred times as long.
constexpr std::size_t Many = 200'000;
constexpr double LinearFactor = 20;

inline std::vector<std::size_t> ShuffledIndices(std::size_t p_count, unsigned p_seed) {
    std::vector<std::size_t> order(p_count);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::shuffle(order.begin(), order.end(), std::mt19937(p_seed));
    return order;
}

} // namespace Qor::Chart::Core
