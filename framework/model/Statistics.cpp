#include "framework/model/Statistics.h"

#include "framework/model/PropertyChecks.h"

#include <cmath>
#include <string>

namespace Qor::Chart::Model {

namespace {

std::string CheckInterval(double const& p_milliseconds) {
    bool const isGood = p_milliseconds >= 0 && std::isfinite(p_milliseconds);
    return isGood ? "" : "the interval is negative, infinite or not a number; give milliseconds from 0 on.";
}

} // namespace

Property<Statistics, Types::XPosition> const Statistics::XPositionProperty(Field<&Statistics::_x>,
    {1, "x", "How far the panel lies from the left or right side of its pane."},
    {Types::DefinedAs::Pixels, Types::XEdge::Left, Distance}, Detail::CheckPosition<Types::XPosition>);

Property<Statistics, Types::YPosition> const Statistics::YPositionProperty(Field<&Statistics::_y>,
    {2, "y", "How far the panel lies from the lower or upper side of its pane."},
    {Types::DefinedAs::Pixels, Types::YEdge::Bottom, Distance}, Detail::CheckPosition<Types::YPosition>);

Property<Statistics, double> const Statistics::IntervalProperty(Field<&Statistics::_interval>,
    {3, "interval", "For how many milliseconds figures stay at least; 0 renews them with each frame."}, 250,
    CheckInterval);

Property<Statistics, bool> const Statistics::RateProperty(
    Field<&Statistics::_showsRate>, {4, "rate", "Whether frames a second are shown."}, true);

Property<Statistics, bool> const Statistics::TimesProperty(
    Field<&Statistics::_showsTimes>, {5, "times", "Whether the time of each stage of a frame is shown."}, true);

Property<Statistics, bool> const Statistics::NodesProperty(
    Field<&Statistics::_showsNodes>, {6, "nodes", "Whether nodes visited, updated and drawn are shown."}, true);

Property<Statistics, bool> const Statistics::DrawingProperty(
    Field<&Statistics::_showsDrawing>, {7, "drawing", "Whether draw calls, instances and triangles are shown."}, true);

Property<Statistics, bool> const Statistics::MemoryProperty(Field<&Statistics::_showsMemory>,
    {8, "memory", "Whether the memory of shapes, textures and buffers on the device is shown."}, true);

PropertyList const& Statistics::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&XPositionProperty, &YPositionProperty, &IntervalProperty, &RateProperty, &TimesProperty, &NodesProperty,
            &DrawingProperty, &MemoryProperty});
    return properties;
}

Statistics::~Statistics() = default;

Core::Ptr<ModelNode> Statistics::NewOfSameClass() const {
    return Core::MakeNode<Statistics>();
}

} // namespace Qor::Chart::Model
