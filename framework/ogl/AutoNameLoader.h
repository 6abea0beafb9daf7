#pragma once

#include "framework/Export.h"
#include "framework/ogl/HitDetect.h"

#include <cstdint>

namespace Qor::Chart::Ogl {

/// Gives the elements of an object consecutive names while a `HitDetect` is open:
///
///     Ogl::AutoNameLoader names(detect, Ogl::HitRecord::NameFirst);
///     for (auto const& shape : _shapes) {
///         names.Next();
///         agl->Draw(shape);
///     }
///     names.Reset();
class QOR_FRAMEWORK_API AutoNameLoader {
public:
    AutoNameLoader(HitDetect& p_detect, std::uint64_t p_firstName)
        : _detect(p_detect), _firstName(p_firstName), _nextName(p_firstName) {}
    /// Resets.
    ~AutoNameLoader() { Reset(); }
    AutoNameLoader(AutoNameLoader const&) = delete;
    AutoNameLoader& operator=(AutoNameLoader const&) = delete;

    /// What is drawn from now on has the next name: the first one on the first call.
    void Next() { _detect.LoadName(_nextName++); }
    /// What is drawn from now on has no name; the next name is the first one again.
    void Reset();

private:
    HitDetect& _detect;
    std::uint64_t _firstName;
    std::uint64_t _nextName;
};

} // namespace Qor::Chart::Ogl
