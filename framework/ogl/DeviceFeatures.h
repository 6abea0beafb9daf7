#pragma once

#include "framework/Export.h"

#include <bitset>
#include <cstddef>
#include <string>

namespace Qor::Chart::Ogl {

/// Something that a device can or cannot do, and that a node may want to know before it chooses how to draw.
enum class DeviceFeature : std::size_t {
    PolygonStipple, ///< polygons can be drawn through a stipple pattern
    WideLines, ///< lines can be wider than one pixel
    SmoothPoints, ///< points can be round
    Instancing, ///< equal draws are sent as one
    Pixels, ///< pixels are really drawn and can be read back
    Multisampling, ///< targets with several samples a pixel can be made
    Count
};

/// What the device behind an `Agl` can do and how much of it there is. Read with `Agl::Features`.
class QOR_FRAMEWORK_API DeviceFeatures {
public:
    /// True when the device can do it.
    bool Supported(DeviceFeature p_feature) const {
        return p_feature < DeviceFeature::Count && _supported[static_cast<std::size_t>(p_feature)];
    }

    DeviceFeatures& Set(DeviceFeature p_feature, bool p_supported = true) {
        _supported[static_cast<std::size_t>(p_feature)] = p_supported;
        return *this;
    }

    unsigned maxStencilBits = 8;
    unsigned maxTextureSize = 16384; ///< pixels, either side
    float maxPointSize = 256; ///< pixels
    std::string vendor; ///< who made the driver; empty for the recorder
    std::string renderer; ///< the device's name
    std::string version; ///< the driver's version text

private:
    std::bitset<static_cast<std::size_t>(DeviceFeature::Count)> _supported;
};

} // namespace Qor::Chart::Ogl
