#include "render/anim/ColorBlender.h"

#include "framework/types/Math.h"

namespace Qor::Chart::Render {

namespace {

/// Qt gives channels as float or double, depending on how it was built.
float Channel(double p_from, double p_to, double p_t) {
    return Types::Math::Clamp<float>(static_cast<float>(p_from * (1.0 - p_t) + p_to * p_t), 0.0F, 1.0F);
}

} // namespace

QColor ColorBlender::operator()(QColor const& p_from, QColor const& p_to, unsigned p_step, unsigned p_of) const {
    double const t = static_cast<double>(p_step) / p_of;
    QColor blended;
    blended.setRedF(Channel(p_from.redF(), p_to.redF(), t));
    blended.setGreenF(Channel(p_from.greenF(), p_to.greenF(), t));
    blended.setBlueF(Channel(p_from.blueF(), p_to.blueF(), t));
    blended.setAlphaF(Channel(p_from.alphaF(), p_to.alphaF(), t));
    return blended;
}

} // namespace Qor::Chart::Render
