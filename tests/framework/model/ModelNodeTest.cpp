#include "framework/model/Bitmap.h"
#include "framework/model/Group.h"
#include "framework/model/Light.h"
#include "framework/model/NodeTypes.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Qor::Chart::Model {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class T = Group>
Core::Ptr<T> Named(std::string const& p_name) {
    auto node = Core::MakeNode<T>();
    node->SetName(p_name);
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

TEST(ModelNodeTest, aNodeIsNeverItsOwnChild) {
    auto const node = Named("loop");
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_FALSE(node->Add(node));
    EXPECT_FALSE(node->Adopt(node));
    EXPECT_TRUE(node->Empty());
    EXPECT_THAT(log.texts(qordebug::severity::error),
        ElementsAre(HasSubstr("Group \"loop\""), HasSubstr("cannot become a child of itself")));
}

TEST(ModelNodeTest, adoptingTakesTheChildFromAllOtherParents) {
    auto const first = Named("first");
    auto const second = Named("second");
    auto const third = Named("third");
    auto child = Named("child");
    third->Add(Named("sibling"));
    first->Add(child);
    second->Add(child);
    EXPECT_THAT(child->Parents(), ElementsAre(first.Get(), second.Get()));

    EXPECT_TRUE(third->Adopt(*first->begin())) << "the handle that is passed goes while the child moves";
    EXPECT_THAT(child->Parents(), ElementsAre(third.Get()));
    EXPECT_TRUE(first->Empty() && second->Empty());
    EXPECT_THAT(ChildNames(*third), ElementsAre("sibling", "child"));
    EXPECT_TRUE(third->Adopt(*third->begin()));
    EXPECT_THAT(ChildNames(*third), ElementsAre("sibling", "child")) << "what is there already keeps its place";
    EXPECT_FALSE(third->Adopt({}));
}

TEST(ModelNodeTest, clonesOfAllClassesHaveTheSameValuesSet) {
    for (NodeType const& type : NodeTypes()) {
        Core::Ptr<ModelNode> const original = type.make();
        original->SetName("original");
        std::size_t index = 0;
        for (PropertyInfo const* const property : original->Properties()) {
            if (++index % 2 == 1)
                property->SetText(*original, property->DefaultText());
        }
        Core::Ptr<ModelNode> const clone = original->Clone();
        ASSERT_TRUE(clone) << type.name;
        EXPECT_EQ(clone->TypeName(), type.name);
        EXPECT_EQ(clone->Name(), "original");
        EXPECT_NE(clone->Id(), original->Id());
        for (PropertyInfo const* const property : original->Properties())
            EXPECT_EQ(property->IsSet(*clone), property->IsSet(*original)) << type.name << '.' << property->Name();
    }
}

TEST(ModelNodeTest, aCloneSharesSymbolAndMatrixButNotSubscribers) {
    auto const object = Core::MakeNode<SimpleObject>(Core::MakeNode<Symbol>(SymbolShape::Cone));
    object->SetTransform(Types::Matrix4::Translation({1, 2, 3}));
    object->SetColor(QColor(1, 2, 3));
    EventConnection const connection = object->Delegate().Connect<Events::Event>([](Events::Event const&) {});
    Core::Ptr<SimpleObject> const clone = CloneOf(*object);
    EXPECT_EQ(clone->GetSymbol(), object->GetSymbol());
    EXPECT_EQ(&*clone->Transform(), &*object->Transform());
    EXPECT_EQ(clone->Color(), QColor(1, 2, 3));
    EXPECT_FALSE(clone->Delegate().HasSubscribers());
    Core::TimeStamp const before = clone->Time();
    object->GetSymbol()->SetShape(SymbolShape::Cube);
    EXPECT_GT(clone->Time(), before) << "the clone follows the symbol too";
}

TEST(ModelNodeTest, aCloneHasTheShapeOfTheOriginal) {
    auto const top = Named<SceneGraph>("top");
    auto const left = Named("left");
    auto const right = Named("right");
    auto const shared = Named("shared");
    top->Add(left);
    top->Add(right);
    left->Add(Named("own"));
    left->Add(shared);
    right->Add(shared);
    shared->Add(left->Clone(ModelNode::Children::Leave));

    Core::Ptr<SceneGraph> const clone = CloneOf(*top);
    ASSERT_THAT(ChildNames(*clone), ElementsAre("left", "right"));
    Core::Ptr<ModelNode> const cloneOfLeft = *clone->begin();
    Core::Ptr<ModelNode> const cloneOfRight = *++clone->begin();
    EXPECT_THAT(ChildNames(*cloneOfLeft), ElementsAre("own", "shared"));
    EXPECT_EQ(*++cloneOfLeft->begin(), *cloneOfRight->begin());
    EXPECT_NE(*cloneOfRight->begin(), shared);
    EXPECT_THAT(ChildNames(**cloneOfRight->begin()), ElementsAre("left"));
    EXPECT_TRUE(CloneOf(*top, ModelNode::Children::Leave)->Empty());
}

TEST(ModelNodeTest, cloningSurvivesDepthAndCycles) {
    Core::Ptr<ModelNode> top = Named("leaf");
    for (int depth = 0; depth < 50'000; ++depth) {
        auto const parent = Core::MakeNode<Group>();
        parent->Add(top);
        top = parent;
    }
    EXPECT_EQ(top->Clone()->Size(), 1U);

    auto const inner = Named("inner");
    auto const outer = Named("outer");
    outer->Add(inner);
    inner->Add(outer);
    Core::Ptr<Group> const clone = CloneOf(*outer);
    EXPECT_EQ(*(*clone->begin())->begin(), clone);
    (*clone->begin())->Clear();
    inner->Clear();
}

TEST(ModelNodeTest, whatCannotBeClonedIsReportedAndLeftOut) {
    auto const top = Named("top");
    top->Add(Named("plain"));
    top->Add(Core::MakeNode<Unclonable>());
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_THAT(ChildNames(*top->Clone()), ElementsAre("plain"));
    EXPECT_THAT(log.texts(qordebug::severity::ensure), ElementsAre(HasSubstr("Unclonable")));
}

TEST(ModelNodeTest, anObjectHearsOfItsSymbolAndKeepsItAlive) {
    auto const object = Core::MakeNode<SimpleObject>();
    Core::TimeStamp time = object->Time();
    auto const hasChanged = [&] { return std::exchange(time, object->Time()) != time; };
    auto symbol = Core::MakeNode<Symbol>(SymbolShape::Cube);
    object->SetSymbol(symbol);
    EXPECT_TRUE(hasChanged());
    object->SetSymbol(symbol);
    EXPECT_FALSE(hasChanged());
    symbol->SetFile("car.glb");
    EXPECT_TRUE(hasChanged());
    symbol.Reset();
    EXPECT_EQ(object->GetSymbol()->GetFile(), "car.glb");
    object->SetSymbol({});
    EXPECT_TRUE(hasChanged());
    EXPECT_FALSE(object->GetSymbol());
}

TEST(ModelNodeTest, aSymbolComesFromOneSource) {
    struct Case {
        char const* file;
        char const* path;
        std::optional<unsigned> mesh;
    };
    Case const cases[] = {
        {"car.glb", "car.glb", std::nullopt},
        {"car.glb#12", "car.glb", 12U},
        {"a#b/c.obj#0", "a#b/c.obj", 0U},
        {"track#7/car.glb", "track#7/car.glb", std::nullopt},
        {"car.glb#", "car.glb#", std::nullopt},
        {"car.glb#-1", "car.glb#-1", std::nullopt},
        {"car.glb#1x", "car.glb#1x", std::nullopt},
        {"car.glb#99999999999", "car.glb#99999999999", std::nullopt},
    };
    auto const symbol = Core::MakeNode<Symbol>();
    EXPECT_EQ(symbol->Source(), Symbol::SourceKind::Unset);
    for (Case const& item : cases) {
        symbol->SetFile(item.file);
        EXPECT_EQ(symbol->Source(), Symbol::SourceKind::File);
        EXPECT_EQ(symbol->FilePath(), item.path);
        EXPECT_EQ(symbol->MeshIndex(), item.mesh) << item.file;
        symbol->SetShape(SymbolShape::Sphere);
        EXPECT_EQ(symbol->Source(), Symbol::SourceKind::Shape);
        EXPECT_EQ(symbol->GetFile(), "");
    }
    symbol->SetFile("a.obj");
    EXPECT_EQ(symbol->GetShape(), SymbolShape::Unset);
    symbol->SetFile("");
    EXPECT_EQ(symbol->Source(), Symbol::SourceKind::Unset);
}

TEST(ModelNodeTest, nodesStaySmall) {
    EXPECT_LE(sizeof(ModelNode) - sizeof(Core::NodeList<ModelNode>), 16U);
    EXPECT_LE(sizeof(SimpleObject), 280U);
    EXPECT_LE(sizeof(SharedMatrix), sizeof(void*));
    for (auto const& [name, size] : {std::pair("ModelNode", sizeof(ModelNode)), std::pair("Group", sizeof(Group)),
             std::pair("SimpleObject", sizeof(SimpleObject)), std::pair("Symbol", sizeof(Symbol)),
             std::pair("Light", sizeof(Light)), std::pair("Pane", sizeof(Pane)), std::pair("Bitmap", sizeof(Bitmap))})
        RecordProperty(name, static_cast<int>(size));
}

} // namespace Qor::Chart::Model
