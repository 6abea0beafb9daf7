#include "render/core/ExplicitModificationTracker.h"

#include "framework/model/Group.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace Qor::Chart::Render {
namespace {

using Core::IModifiable;
using Core::Node;
using Core::NodeHandles;
using Core::WeakPtr;
using Group = Core::Ptr<Model::Group>;

std::vector<WeakPtr<Node>> NodesOf(auto p_record, auto const& p_end) {
    std::vector<WeakPtr<Node>> nodes;
    for (; p_record != p_end; ++p_record)
        nodes.push_back(p_record->node);
    return nodes;
}

/// Longer lists than those of the random editor, which covers the rest.
TEST(ExplicitModificationTrackerTest, comingAndLeavingCancelAsInAPlainList) {
    Group const node = Core::MakeNode<Model::Group>();
    ExplicitModificationTracker tracker{*node};
    auto const insert = [&](IModifiable::Change p_change, boost::any const& p_data) {
        tracker.Insert(IModifiable::ModifiableTypeNode, p_change, IModifiable::RelationshipDirect, "name", p_data);
    };
    std::vector<Group> nodes;
    std::vector<WeakPtr<Node>> handles;
    for (int child = 0; child < 500; ++child) {
        nodes.push_back(Core::MakeNode<Model::Group>());
        handles.emplace_back(nodes.back());
    }
    std::vector<std::pair<WeakPtr<Node>, IModifiable::Change>> oracle;
    auto const record = [&](WeakPtr<Node> const& p_child, IModifiable::Change p_change) {
        auto const found = std::ranges::find(oracle, p_child, [](auto const& p_record) { return p_record.first; });
        bool const isCancelled = found != oracle.end() && found->second != p_change;
        if (found != oracle.end())
            oracle.erase(found);
        if (!isCancelled)
            oracle.emplace_back(p_child, p_change);
    };
    std::mt19937 random(2);
    for (int step = 0; step < 6'000; ++step) {
        // The range moves, so that the list grows and shrinks.
        std::size_t const range = step % 2'000 < 1'000 ? 500 : 20;
        WeakPtr<Node> const& child = handles[random() % range];
        WeakPtr<Node> const& other = handles[range - 1];
        if (step % 10 == 0) {
            insert(IModifiable::ChangeClear, NodeHandles{child, other});
            record(child, IModifiable::ChangeRemove);
            record(other, IModifiable::ChangeRemove);
        } else {
            auto const change = random() % 2 == 0 ? IModifiable::ChangeAdd : IModifiable::ChangeRemove;
            insert(change, child);
            record(child, change);
        }
        if (step % 37 != 0)
            continue;
        std::vector<WeakPtr<Node>> added, removed;
        for (auto const& [handle, kind] : oracle)
            (kind == IModifiable::ChangeAdd ? added : removed).push_back(handle);
        ASSERT_EQ(NodesOf(tracker.BeginAdded(), tracker.EndAdded()), added) << "step " << step;
        ASSERT_EQ(NodesOf(tracker.BeginRemoved(), tracker.EndRemoved()), removed) << "step " << step;
        EXPECT_TRUE(tracker.ExplicitModified()) << "cancelled or not, it is a change";
    }
}

} // namespace
} // namespace Qor::Chart::Render
