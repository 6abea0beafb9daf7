#include "framework/ogl/AutoNameLoader.h"

#include "framework/ogl/HitRecord.h"

namespace Qor::Chart::Ogl {

void AutoNameLoader::Reset() {
    if (_nextName != _firstName) {
        _detect.LoadName(HitRecord::NameInvalid);
        _nextName = _firstName;
    }
}

} // namespace Qor::Chart::Ogl
