#include "framework/model/Light.h"
#include "framework/model/NodeTypes.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace Qor::Chart::Model {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A dependent that writes down what it is told.
class Listener : public Core::Node {
public:
    explicit Listener(ModelNode& p_node) : _node(&p_node) {
        p_node.Deps().Add(*this, Core::Dependencies::Link::Reference);
    }

    std::vector<std::string> Taken() { return std::exchange(_heard, {}); }

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship, Core::WeakPtr<Node> const&,
        std::string const& p_name, boost::any const&) override {
        _heard.push_back(std::to_string(p_type) + ' ' + std::to_string(p_change) + ' ' +
            std::to_string(p_relationship) + ' ' + p_name);
    }

protected:
    ~Listener() override { _node->Deps().Remove(*this, Core::Dependencies::Link::Reference); }

private:
    Core::Ptr<ModelNode> _node;
    std::vector<std::string> _heard;
};

/// The sentence with which a text is refused, empty when it is taken.
std::string Refused(ModelNode& p_node, std::string const& p_property, std::string const& p_text) {
    try {
        p_node.Properties().Find(p_property)->SetText(p_node, p_text);
    } catch (Utility::Exception const& refusal) {
        return refusal.what();
    }
    return {};
}

} // namespace

TEST(PropertyTest, onlyWhatDiffersIsAChange) {
    auto const object = Core::MakeNode<SimpleObject>();
    auto const listener = Core::MakeNode<Listener>(*object);

    object->SetPulse(false);
    EXPECT_TRUE(object->IsSet(SimpleObject::PulseProperty));
    EXPECT_THAT(listener->Taken(), ElementsAre("1 0 1 pulse")) << "the default, now as a value of the node's own";
    object->SetPulse(false);
    EXPECT_THAT(listener->Taken(), IsEmpty());
    object->SetPulse(true);
    EXPECT_THAT(listener->Taken(), ElementsAre("1 0 1 pulse"));

    object->Reset(SimpleObject::PulseProperty);
    EXPECT_FALSE(object->Pulse());
    EXPECT_FALSE(object->IsSet(SimpleObject::PulseProperty));
    EXPECT_THAT(listener->Taken(), ElementsAre("1 0 1 pulse"));
    object->Reset(SimpleObject::PulseProperty);
    EXPECT_THAT(listener->Taken(), IsEmpty());

    object->SetVisible(false);
    EXPECT_FALSE(object->IsEnabled());
    EXPECT_THAT(listener->Taken(), ElementsAre("1 0 1 " + ModelNode::EnabledPropertyName));
}

TEST(PropertyTest, valuesOutOfRangeAreRefusedWithOneSentence) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const infinite = std::numeric_limits<double>::infinity();
    auto const object = Core::MakeNode<SimpleObject>();
    auto const light = Core::MakeNode<Light>();
    auto const pane = Core::MakeNode<Pane>();
    Types::Matrix4 projective;
    projective.Set(3, 2, -1);
    Types::Matrix4 broken;
    broken.Set(1, 1, nan);
    Types::Matrix4 endless;
    endless.Set(0, 3, infinite);

    struct Case {
        char const* property;
        ModelNode* node;
        std::function<bool()> set;
    };
    std::vector<Case> const cases{
        {"transform", object.Get(), [&] { return object->SetTransform(projective); }},
        {"transform", object.Get(), [&] { return object->SetTransform(broken); }},
        {"transform", object.Get(), [&] { return object->SetTransform(endless); }},
        {"color", object.Get(), [&] { return object->SetColor(QColor()); }},
        {"position", light.Get(),
            [&] {
                return light->SetPosition({0, nan, 0});
            }},
        {"direction", light.Get(), [&] { return light->SetDirection({}); }},
        {"direction", light.Get(),
            [&] {
                return light->SetDirection({infinite, 0, 0});
            }},
        {"attenuation", light.Get(),
            [&] {
                return light->SetAttenuation({0, 0, 0});
            }},
        {"attenuation", light.Get(),
            [&] {
                return light->SetAttenuation({1, -1, 0});
            }},
        {"attenuation", light.Get(),
            [&] {
                return light->SetAttenuation({1, nan, 0});
            }},
        {"spotCutoff", light.Get(), [&] { return light->SetSpotCutoff(90.5); }},
        {"spotCutoff", light.Get(), [&] { return light->SetSpotCutoff(nan); }},
        {"spotExponent", light.Get(), [&] { return light->SetSpotExponent(-1); }},
        {"viewport", pane.Get(),
            [&] {
                return pane->SetViewport({0, 0, nan, 1});
            }},
        {"backgroundTopColor", pane.Get(), [&] { return pane->SetBackgroundTopColor(QColor()); }},
    };
    for (Case const& item : cases) {
        PropertyInfo const& property = *item.node->Properties().Find(item.property);
        std::string const before = property.Text(*item.node);
        Core::TimeStamp const time = item.node->Time();
        qordebug::CaptureScope const log(Utility::GetLogger());
        EXPECT_FALSE(item.set()) << item.property;
        EXPECT_EQ(property.Text(*item.node), before);
        EXPECT_FALSE(item.node->IsSet(property));
        EXPECT_EQ(item.node->Time(), time);
        EXPECT_THAT(
            log.texts(qordebug::severity::error), ElementsAre(AllOf(HasSubstr(item.property), HasSubstr("give"))));
    }
}

TEST(PropertyTest, anyAffineTransformIsTakenAndShared) {
    Types::Matrix4 shearAndMirror = Types::Matrix4::Scaling({-1, 2, 0});
    shearAndMirror.Set(0, 1, 3);
    auto const object = Core::MakeNode<SimpleObject>();
    EXPECT_TRUE(object->SetTransform(shearAndMirror));
    SharedMatrix const seen = object->Transform();
    EXPECT_EQ(&*seen, &*object->Transform());
    EXPECT_EQ(*seen, shearAndMirror);

    object->SetTransform(Types::Matrix4());
    EXPECT_TRUE(object->Transform().IsIdentity());
    EXPECT_EQ(*seen, shearAndMirror) << "who looked before keeps what it saw";
}

TEST(PropertyTest, badTextsAreRefusedWithASentenceThatNamesEverything) {
    auto const object = Core::MakeNode<SimpleObject>();
    object->SetName("wheel");
    EXPECT_THAT(Refused(*object, "pulse", "maybe"),
        AllOf(HasSubstr("\"maybe\""), HasSubstr("\"pulse\""), HasSubstr("SimpleObject \"wheel\""),
            HasSubstr("true or false")));
    EXPECT_THAT(Refused(*object, "transform", "0 0 0 1 0 0 0 0 0 0 0 0 0 0 0 0"), HasSubstr("affine"));
    EXPECT_LT(Refused(*object, "color", std::string(1'000'000, 'x')).size(), 500U);
    EXPECT_FALSE(object->IsSet(SimpleObject::PulseProperty) || object->IsSet(SimpleObject::TransformProperty));

    EXPECT_EQ(Refused(*object, "pulse", "true"), "");
    EXPECT_TRUE(object->Pulse());
    EXPECT_THROW(Light::KindProperty.SetText(*object, "Spot"), Utility::Exception);
}

TEST(PropertyTest, everyClassTellsTheTruthAboutItsProperties) {
    ASSERT_EQ(FindNodeType("Nonsense"), nullptr);
    for (NodeType const& type : NodeTypes()) {
        ASSERT_EQ(FindNodeType(type.name), &type);
        qordebug::CaptureScope const log(Utility::GetLogger());
        Core::Ptr<ModelNode> const node = type.make();
        PropertyList const& properties = node->Properties();
        EXPECT_EQ(node->TypeName(), type.name);
        EXPECT_EQ(&properties, &type.properties());
        EXPECT_EQ(properties.Find("nonsense"), nullptr);
        EXPECT_EQ(&properties[0], &ModelNode::EnabledProperty);
        std::uint32_t bits = 0;
        for (PropertyInfo const* const property : properties) {
            SCOPED_TRACE(std::string(type.name) + '.' + property->Name());
            EXPECT_EQ(properties.Find(property->Name()), property);
            EXPECT_FALSE(property->Documentation().empty());
            EXPECT_FALSE(property->Form().empty());
            EXPECT_EQ(bits & property->Mask(), 0U);
            bits |= property->Mask();
            EXPECT_EQ(property->Text(*node), property->DefaultText()) << "the member starts with another value";
            EXPECT_FALSE(property->IsSet(*node));
            property->SetText(*node, property->DefaultText());
            EXPECT_TRUE(property->IsSet(*node));
            EXPECT_EQ(property->Text(*node), property->DefaultText());
        }
        EXPECT_THAT(log.texts(), IsEmpty());
    }
}

TEST(PropertyTest, aPropertyThatTakesTheBitOfAnotherIsReportedAndLeftOut) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    PropertyList const properties(Light::ClassProperties(), {&Pane::TitleProperty});
    EXPECT_EQ(properties.Size(), Light::ClassProperties().Size());
    EXPECT_EQ(log.texts(qordebug::severity::ensure).size(), 1U);
}

} // namespace Qor::Chart::Model
