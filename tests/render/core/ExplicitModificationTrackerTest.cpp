#include "render/core/ExplicitModificationTracker.h"

#include "framework/model/Group.h"
#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <sstream>

namespace Qor::Chart::Render {

namespace {

using Core::IModifiable;
using Core::Node;
using Core::NodeHandles;
using Core::WeakPtr;
using Group = Core::Ptr<Model::Group>;

struct ExplicitModificationTrackerTest : testing::Test {
    Group node = Core::MakeNode<Model::Group>();
    ExplicitModificationTracker tracker{*node};

    void Insert(int p_type, int p_change, int p_relationship, boost::any const& p_data = {}) {
        tracker.Insert(static_cast<IModifiable::ModifiableType>(p_type), static_cast<IModifiable::Change>(p_change),
            static_cast<IModifiable::Relationship>(p_relationship), "name", p_data);
    }
    static std::vector<WeakPtr<Node>> NodesOf(auto p_record, auto const& p_end) {
        std::vector<WeakPtr<Node>> nodes;
        for (; p_record != p_end; ++p_record)
            nodes.push_back(p_record->node);
        return nodes;
    }
    std::vector<WeakPtr<Node>> Added() const { return NodesOf(tracker.BeginAdded(), tracker.EndAdded()); }
    std::vector<WeakPtr<Node>> Removed() const { return NodesOf(tracker.BeginRemoved(), tracker.EndRemoved()); }
    /// Modified, explicitly, itself, only callbacks; then the callbacks.
    std::string State() const {
        std::ostringstream text;
        text << tracker.Modified() << tracker.ExplicitModified() << tracker.ThisModified()
             << tracker.OnlyCallbacksModified() << tracker.CallbacksModified();
        return text.str();
    }
};

} // namespace

TEST_F(ExplicitModificationTrackerTest, sortsChangesByWhatTheyConcern) {
    struct Case {
        int type, change, relationship;
        char const* state;
    };
    for (auto const& [type, change, relationship, state] : {
             Case{1003, 0, 0, "1111[001000]"},
             Case{1001, 1, 0, "1111[100000]"},
             Case{1006, 0, 0, "1111[000001]"},
             Case{1003, 0, 1, "1101[000000]"},
             Case{1003, 0, 2, "1001[000000]"},
             Case{1007, 0, 0, "1110[000000]"},
             Case{1, 0, 1, "1100[000000]"},
             Case{1, 0, 2, "1000[000000]"},
         }) {
        tracker.Reset();
        Insert(type, change, relationship);
        EXPECT_EQ(State(), state) << type << ' ' << change << ' ' << relationship;
    }
    Insert(1, 0, 0);
    Insert(1004, 0, 0);
    Insert(1, 0, 2);
    EXPECT_EQ(State(), "1110[000100]") << "what was seen once stays until the reset";
}

TEST_F(ExplicitModificationTrackerTest, comingAndLeavingCancelAsInAPlainList) {
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
            Insert(0, IModifiable::ChangeClear, 1, NodeHandles{child, other});
            record(child, IModifiable::ChangeRemove);
            record(other, IModifiable::ChangeRemove);
        } else {
            auto const change = random() % 2 == 0 ? IModifiable::ChangeAdd : IModifiable::ChangeRemove;
            Insert(0, change, 1, child);
            record(child, change);
        }
        if (step % 37 != 0)
            continue;
        std::vector<WeakPtr<Node>> added, removed;
        for (auto const& [handle, kind] : oracle)
            (kind == IModifiable::ChangeAdd ? added : removed).push_back(handle);
        ASSERT_EQ(Added(), added) << "step " << step;
        ASSERT_EQ(Removed(), removed) << "step " << step;
        EXPECT_EQ(State(), "1100[000000]") << "cancelled or not, it is a change";
    }
}

} // namespace Qor::Chart::Render
