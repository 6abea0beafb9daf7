#include "framework/model/Light.h"
#include "framework/model/NodeTypes.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <limits>

namespace Qor::Chart::Model {

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using Vector = Types::Vector3_Base<double>;

/// A dependent that writes down what it is told.
class Listener : public Core::Node {
public:
    void TouchThis(ModifiableType, Change, Relationship, Core::WeakPtr<Node> const&, std::string const& p_name,
        boost::any const&) override {
        heard += p_name + ' ';
    }
    std::string heard;
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
    auto const listener = Core::MakeNode<Listener>();
    object->Deps().Add(*listener, Core::Dependencies::Link::Reference);
    object->SetPulse(false);
    EXPECT_TRUE(object->IsSet(SimpleObject::PulseProperty)) << "the default, now as a value of the node's own";
    object->SetPulse(false);
    EXPECT_EQ(listener->heard, "pulse ");
    object->SetPulse(true);
    object->Reset(SimpleObject::PulseProperty);
    object->Reset(SimpleObject::PulseProperty);
    EXPECT_EQ(listener->heard, "pulse pulse pulse ");
    EXPECT_FALSE(object->Pulse() || object->IsSet(SimpleObject::PulseProperty));
    object->Deps().Remove(*listener, Core::Dependencies::Link::Reference);
}

TEST(PropertyTest, valuesOutOfRangeAreRefusedAndChangeNothing) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    auto const object = Core::MakeNode<SimpleObject>();
    auto const light = Core::MakeNode<Light>();
    auto const pane = Core::MakeNode<Pane>();
    Core::TimeStamp const times[] = {object->Time(), light->Time(), pane->Time()};
    for (auto const& [property, text] : {std::pair("direction", "0 0 0"), std::pair("attenuation", "0 0 0"),
             std::pair("attenuation", "1 -1 0"), std::pair("spotCutoff", "90.5"), std::pair("spotExponent", "-1")}) {
        EXPECT_THAT(Refused(*light, property, text), AllOf(HasSubstr(property), HasSubstr("give")));
    }
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_FALSE(light->SetPosition(Vector(0, nan, 0)) || light->SetSpotCutoff(nan) || object->SetColor(QColor()));
    EXPECT_FALSE(object->SetTransform(Types::Matrix4::Scaling(nan)) || pane->SetBackgroundTopColor(QColor()));
    EXPECT_FALSE(pane->SetViewport(Types::Viewport<1>(0, 0, nan, 1)));
    EXPECT_THAT(log.texts(qordebug::severity::error), AllOf(testing::SizeIs(6), Each(HasSubstr("give"))));
    EXPECT_THAT(times, ElementsAre(object->Time(), light->Time(), pane->Time()));
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

TEST(PropertyTest, everyClassTellsTheTruthAboutItsPropertiesAndClonesThem) {
    for (NodeType const& type : NodeTypes()) {
        ASSERT_EQ(FindNodeType(type.name), &type);
        qordebug::CaptureScope const log(Utility::GetLogger());
        Core::Ptr<ModelNode> const node = type.make();
        EXPECT_EQ(&node->Properties(), &type.properties());
        std::uint32_t bits = 0;
        for (PropertyInfo const* const property : node->Properties()) {
            SCOPED_TRACE(std::string(type.name) + '.' + property->Name());
            EXPECT_EQ(node->Properties().Find(property->Name()), property);
            EXPECT_FALSE(property->Documentation().empty() || property->Form().empty());
            EXPECT_EQ(bits & property->Mask(), 0U);
            bits |= property->Mask();
            EXPECT_EQ(property->Text(*node), property->DefaultText()) << "the member starts with another value";
            EXPECT_FALSE(property->IsSet(*node) || property->IsSet(*node->Clone()));
            property->SetText(*node, property->DefaultText());
            EXPECT_TRUE(property->IsSet(*node) && property->IsSet(*node->Clone()));
            EXPECT_EQ(property->Text(*node->Clone()), property->DefaultText());
        }
        EXPECT_EQ(node->Clone()->TypeName(), type.name);
        EXPECT_TRUE(log.empty());
    }
}

} // namespace Qor::Chart::Model
