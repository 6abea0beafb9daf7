#include "render/nodes/SelectionLists.h"

#include "tests/render/nodes/SceneFixture.h"
#include "tests/render/support/Models.h"
#include "framework/model/Events.h"
#include "framework/model/Group.h"
#include "framework/model/SelectionList.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"
#include "render/nodes/SimpleObject.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <span>

namespace Qor::Chart::Render {
namespace {

using Entry = Model::SelectionEntry;
using Entries = std::vector<Entry>;
using Object = Core::Ptr<Model::SimpleObject>;

/// A list with what it should hold, kept in the plainest way, and what its listeners were told.
struct CheckedList {
    Core::Ptr<Model::SelectionList> list = Core::MakeNode<Model::SelectionList>();
    Entries expected;
    Entries told;
    int events = 0;
    Model::EventConnection connection = list->Delegate().Connect<Model::Events::SelectionChangedArgs>(
        [this](Model::Events::SelectionChangedArgs const& p_event) {
            ++events;
            for (Entry const& entry : p_event.Removed())
                EXPECT_EQ(std::erase(told, entry), 1U) << "removed what was not there";
            for (Entry const& entry : p_event.Added()) {
                EXPECT_FALSE(std::ranges::count(told, entry)) << "added twice";
                told.push_back(entry);
            }
        });

    bool Holds(Entry const& p_entry) const { return std::ranges::count(expected, p_entry) > 0; }
    bool HoldsNode(Model::ModelNode const& p_node) const {
        return std::ranges::any_of(expected, [&](Entry const& p_entry) { return p_entry.node.Peek() == &p_node; });
    }
    void Edit(std::size_t p_how, Entries const& p_entries) {
        int const before = events;
        Entries const former = expected;
        Entries once;
        for (Entry const& entry : p_entries) {
            if (!std::ranges::count(once, entry))
                once.push_back(entry);
        }
        if (p_how == 3)
            expected.clear();
        for (Entry const& entry : once) {
            bool const isThere = Holds(entry);
            if (isThere && (p_how == 1 || p_how == 2))
                std::erase(expected, entry);
            else if (!isThere && p_how != 1)
                expected.push_back(entry);
        }
        bool const hasChanged = p_how == 0 ? list->Select(p_entries)
            : p_how == 1                   ? list->Deselect(p_entries)
            : p_how == 2                   ? list->Toggle(p_entries)
                                           : list->Replace(p_entries);
        EXPECT_EQ(hasChanged, expected != former) << p_how;
        EXPECT_EQ(events - before, hasChanged ? 1 : 0) << p_how;
    }
};

/// Objects below the root, which has a list, and in a group with a list of its own that comes, goes and is disabled.
struct SelectionListTest : testing::Test, Fixtures::SceneFixture {
    SelectionListTest() {
        scene->Add(group);
        scene->Add(outer.list);
        group->Add(inner.list);
        for (int i = 0; i < 12; ++i)
            AddObject();
    }
    void AddObject() {
        objects.push_back(Fixtures::MakeCube());
        ParentOf(objects.size() - 1).Add(objects.back());
    }
    Model::ModelNode& ParentOf(std::size_t p_object) const {
        return p_object % 2 ? static_cast<Model::ModelNode&>(*group) : *scene;
    }
    void Frame() {
        Update();
        if (auto const lists = SelectionLists::Of(registrar); lists && lists->Show())
            Update();
    }
    static bool IsShown(Object const& p_object) {
        for (Core::Dependencies::Entry const& entry : p_object->Deps().Entries()) {
            if (auto const* const vis = dynamic_cast<SimpleObject const*>(entry.dependent))
                return vis->IsHandled(HandledHighlight);
        }
        return false;
    }
    void Check(int p_step) {
        for (CheckedList const* const list : {&outer, &inner}) {
            EXPECT_EQ(list->list->Selected(), list->expected) << p_step;
            EXPECT_TRUE(std::ranges::is_permutation(list->told, list->expected)) << p_step;
        }
        bool const hasInner = group->Contains(*inner.list) && inner.list->IsEnabled();
        for (std::size_t i = 0; i < objects.size(); ++i) {
            bool const isInGroup = i % 2 != 0;
            CheckedList const& list = isInGroup && hasInner ? inner : outer;
            bool const isThere = ParentOf(i).Contains(*objects[i]);
            bool const isHeld = list.HoldsNode(*objects[i]) || (isInGroup && list.HoldsNode(*group));
            EXPECT_EQ(IsShown(objects[i]), isThere && isHeld) << p_step << ", object " << i;
        }
    }

    Core::Ptr<Model::Group> group = Core::MakeNode<Model::Group>();
    CheckedList outer;
    CheckedList inner;
    std::vector<Object> objects;
};

TEST_F(SelectionListTest, showsAndTellsWhatAPlainListHolds) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    std::mt19937 random(7);
    auto const below = [&](std::size_t p_count) {
        return std::uniform_int_distribution<std::size_t>(0, p_count - 1)(random);
    };
    Frame();
    for (int step = 0; step < 1500 && !HasFailure(); ++step) {
        CheckedList& list = below(2) ? outer : inner;
        std::size_t const at = below(objects.size());
        switch (below(10)) {
        case 0: { // dies
            Object const dying = objects[at];
            ParentOf(at).Remove(*dying);
            for (CheckedList* const each : {&outer, &inner})
                std::erase_if(each->expected, [&](Entry const& p_entry) { return p_entry.node.Peek() == dying.Get(); });
            objects[at] = Fixtures::MakeCube();
            ParentOf(at).Add(objects[at]);
            break;
        }
        case 1: // leaves, and comes back
            if (!ParentOf(at).Remove(*objects[at]))
                ParentOf(at).Add(objects[at]);
            break;
        case 2:
            if (below(2))
                inner.list->SetEnabled(!inner.list->IsEnabled());
            else if (!group->Remove(*inner.list))
                group->Add(inner.list);
            break;
        default: {
            Entries entries;
            for (std::size_t i = below(5); i > 0; --i) {
                std::size_t const index = below(3);
                Core::Ptr<Model::ModelNode> node = objects[below(objects.size())];
                if (below(6) == 0)
                    node = group; // has no look of its own
                entries.push_back({node, index ? std::optional(index) : std::nullopt});
            }
            list.Edit(below(4), entries);
        }
        }
        if (below(3))
            continue;
        Frame();
        outer.list->ForgetGone(); // of lists that show nothing nobody else does
        inner.list->ForgetGone();
        Check(step);
    }
    EXPECT_THAT(log.texts(), testing::IsEmpty());
}

TEST_F(SelectionListTest, allListenersHearTheChangesInTheirOrder) {
    using Changed = Model::Events::SelectionChangedArgs;
    Model::EventDelegate& delegate = inner.list->Delegate();
    auto const refusing = delegate.Connect<Changed>([&](Changed const&) { inner.list->DeselectAll(); });
    std::string told;
    auto const listening =
        delegate.Connect<Changed>([&](Changed const& p_event) { told += p_event.Added().empty() ? '-' : '+'; });
    inner.list->Select(objects[0]);
    EXPECT_EQ(told, "+-");
}

} // namespace
} // namespace Qor::Chart::Render
