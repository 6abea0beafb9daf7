#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

namespace Qor::Chart::Model {

/// A panel in a pane with the figures of the frames: how many there are a second, what each stage takes, how much was
/// drawn and how much memory it needs. Its rows come in groups, each of which may be left out.
class QOR_FRAMEWORK_API Statistics : public ModelNode {
public:
    static Property<Statistics, Types::XPosition> const XPositionProperty;
    static Property<Statistics, Types::YPosition> const YPositionProperty;
    static Property<Statistics, double> const IntervalProperty;
    static Property<Statistics, bool> const RateProperty;
    static Property<Statistics, bool> const TimesProperty;
    static Property<Statistics, bool> const NodesProperty;
    static Property<Statistics, bool> const DrawingProperty;
    static Property<Statistics, bool> const MemoryProperty;
    static PropertyList const& ClassProperties();

    Statistics() = default;

    /// Where the panel lies inside its pane; 10 pixels from the lower left corner at first. A distance that is not
    /// finite is refused with a message to the logger.
    Types::XPosition const& GetXPosition() const noexcept { return _x; }
    bool SetXPosition(Types::XPosition const& p_position) { return XPositionProperty.Set(*this, p_position); }
    Types::YPosition const& GetYPosition() const noexcept { return _y; }
    bool SetYPosition(Types::YPosition const& p_position) { return YPositionProperty.Set(*this, p_position); }

    /// For how many milliseconds figures stay at least, so that they can be read; 250 at first, 0 renews them with each
    /// frame. One that is negative or not finite is refused with a message to the logger.
    double Interval() const noexcept { return _interval; }
    bool SetInterval(double p_milliseconds) { return IntervalProperty.Set(*this, p_milliseconds); }

    /// \name Groups of rows
    /// All are shown at first.
    /// @{
    /// Frames a second.
    bool ShowsRate() const noexcept { return _showsRate; }
    void SetShowsRate(bool p_shows) { RateProperty.Set(*this, p_shows); }
    /// What each stage of a frame takes, and their sum.
    bool ShowsTimes() const noexcept { return _showsTimes; }
    void SetShowsTimes(bool p_shows) { TimesProperty.Set(*this, p_shows); }
    /// Nodes that the update visited and updated, and that were drawn.
    bool ShowsNodes() const noexcept { return _showsNodes; }
    void SetShowsNodes(bool p_shows) { NodesProperty.Set(*this, p_shows); }
    /// Draw calls, and the instances and triangles in them.
    bool ShowsDrawing() const noexcept { return _showsDrawing; }
    void SetShowsDrawing(bool p_shows) { DrawingProperty.Set(*this, p_shows); }
    /// What shapes, textures and buffers take on the device.
    bool ShowsMemory() const noexcept { return _showsMemory; }
    void SetShowsMemory(bool p_shows) { MemoryProperty.Set(*this, p_shows); }
    /// @}

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Statistics() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    static constexpr double Distance = 10;

    bool _showsRate = true;
    bool _showsTimes = true;
    bool _showsNodes = true;
    bool _showsDrawing = true;
    bool _showsMemory = true;
    Types::XPosition _x{Types::DefinedAs::Pixels, Types::XEdge::Left, Distance};
    Types::YPosition _y{Types::DefinedAs::Pixels, Types::YEdge::Bottom, Distance};
    double _interval = 250;
};

} // namespace Qor::Chart::Model
