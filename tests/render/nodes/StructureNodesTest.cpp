#include "render/nodes/Group.h"
#include "render/nodes/SceneVis.h"
#include "render/nodes/SimpleObject.h"

#include "tests/render/nodes/SceneFixture.h"
#include "framework/model/Group.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using Box = Types::BoundingBox_Base<double>;

TEST(StructureNodesTest, sceneAndGroupsFollowTheModel) {
    Fixtures::SceneFixture fixture;
    auto const group = Core::MakeNode<Model::Group>();
    fixture.scene->Add(group);
    for (double const x : {0.0, 10.0}) {
        auto const object =
            Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        object->SetTransform(Types::Matrix4::Translation({x, 0, 0}));
        group->Add(object);
    }
    fixture.scene->Add(Core::MakeNode<Model::Group>());
    fixture.Update();

    ASSERT_TRUE(Core::DynamicCast<SceneVis>(fixture.root));
    auto const& visGroup = dynamic_cast<Group&>(fixture.Child(0));
    EXPECT_EQ(visGroup.BoundingBox(), Box({-0.5, -0.5, -0.5}, {10.5, 0.5, 0.5}));
    EXPECT_EQ(fixture.root->BoundingBox(), visGroup.BoundingBox());
    EXPECT_FALSE(fixture.Child(1).BoundingBox().IsDefined());
    EXPECT_FALSE(fixture.Child(1).OptimalPaths().Any());

    fixture.Draw();
    EXPECT_EQ(fixture.drawn, 2U);

    group->Remove(**std::next(group->begin()));
    fixture.Update();
    EXPECT_EQ(fixture.root->BoundingBox(), Box({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}));
}

TEST(StructureNodesTest, modelNodesOfAnotherClassAreRefused) {
    auto const model = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    auto const refuses = [&](auto const& p_vis) {
        qordebug::CaptureScope const log(Utility::GetLogger());
        p_vis->Attach(model);
        return log.contains("\"Incorrect type being attached to WeakRef<T>\"") && p_vis->SourceModel().IsEmpty();
    };
    EXPECT_TRUE(refuses(Core::MakeNode<SceneVis>()));
    EXPECT_TRUE(refuses(Core::MakeNode<Group>()));
    EXPECT_TRUE(refuses(Core::MakeNode<SimpleObject>()));
}

} // namespace
} // namespace Qor::Chart::Render
