#include "framework/ogl/HitRecord.h"

#include <ostream>

namespace Qor::Chart::Ogl {

std::ostream& operator<<(std::ostream& p_stream, HitRecord const& p_record) {
    p_stream << "name(";
    if (p_record.name == HitRecord::NameInvalid) {
        p_stream << "invalid";
    } else if (p_record.name == HitRecord::NameDefault) {
        p_stream << "default";
    } else {
        p_stream << p_record.name;
    }
    return p_stream << ") depth(" << p_record.depth << ")";
}

} // namespace Qor::Chart::Ogl
