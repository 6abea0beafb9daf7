#include "framework/model/Group.h"
#include "framework/model/SceneGraph.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Model {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class T = Group>
Core::Ptr<T> Named(std::string const& p_name, std::vector<Core::Ptr<ModelNode>> const& p_children = {}) {
    auto node = Core::MakeNode<T>();
    node->SetName(p_name);
    for (Core::Ptr<ModelNode> const& child : p_children)
        node->Add(child);
    return node;
}

std::vector<std::string> ChildNames(ModelNode const& p_node) {
    std::vector<std::string> names;
    for (Core::Ptr<ModelNode> const& child : p_node)
        names.push_back(child->Name());
    return names;
}

class Unclonable : public Group {};

} // namespace

TEST(ModelNodeTest, adoptingTakesTheChildFromAllOtherParentsButNeverItself) {
    auto const child = Named("child");
    auto const first = Named("first", {child});
    auto const second = Named("second", {child});
    auto const third = Named("third", {Named("sibling")});
    EXPECT_TRUE(third->Adopt(*first->begin())) << "the handle that is passed goes while the child moves";
    EXPECT_THAT(child->Parents(), ElementsAre(third.Get()));
    EXPECT_TRUE(first->Empty() && second->Empty());
    EXPECT_TRUE(third->Adopt(*third->begin()));
    EXPECT_THAT(ChildNames(*third), ElementsAre("sibling", "child")) << "what is there already keeps its place";
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_FALSE(third->Adopt({}) || third->Add(third) || third->Adopt(third));
    EXPECT_TRUE(log.contains("Group \"third\"") && log.contains("cannot become a child of itself"));
}

TEST(ModelNodeTest, aCloneHasTheShapeOfTheOriginalWithoutWhatCannotBeCloned) {
    auto const shared = Named("shared", {Core::MakeNode<Unclonable>(), Named("below")});
    auto const top = Named<SceneGraph>("top", {Named("left", {Named("own"), shared}), Named("right", {shared})});
    qordebug::CaptureScope const log(Utility::GetLogger());
    Core::Ptr<SceneGraph> const clone = CloneOf(*top);
    EXPECT_THAT(log.texts(qordebug::severity::ensure), ElementsAre(HasSubstr("Unclonable")));
    ASSERT_THAT(ChildNames(*clone), ElementsAre("left", "right"));
    Core::Ptr<ModelNode> const left = *clone->begin();
    EXPECT_THAT(ChildNames(*left), ElementsAre("own", "shared"));
    Core::Ptr<ModelNode> const sharedClone = *(*++clone->begin())->begin();
    EXPECT_EQ(*++left->begin(), sharedClone);
    EXPECT_NE(sharedClone, shared);
    EXPECT_THAT(ChildNames(*sharedClone), ElementsAre("below"));
    EXPECT_TRUE(CloneOf(*top, ModelNode::Children::Leave)->Empty());
}

TEST(ModelNodeTest, cloningSurvivesDepthAndCycles) {
    Core::Ptr<ModelNode> top = Named("leaf");
    for (int depth = 0; depth < 50'000; ++depth)
        top = Named("", {top});
    EXPECT_EQ(top->Clone()->Size(), 1U);

    auto const inner = Named("inner");
    auto const outer = Named("outer", {inner});
    inner->Add(outer);
    Core::Ptr<Group> const clone = CloneOf(*outer);
    EXPECT_EQ(*(*clone->begin())->begin(), clone);
    (*clone->begin())->Clear();
    inner->Clear();
}

} // namespace Qor::Chart::Model
