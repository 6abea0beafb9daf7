#include "framework/utility/LightString.h"

#include <algorithm>
#include <ostream>

namespace Qor::Chart::Utility {

LightString::LightString(std::string_view p_text) {
    if (p_text.empty()) {
        return;
    }
    std::shared_ptr<char[]> const copy(new char[p_text.size() + 1]());
    std::copy(p_text.begin(), p_text.end(), copy.get());
    _text = copy.get();
    _size = p_text.size();
    _owner = std::shared_ptr<char const>(copy, copy.get());
}

std::ostream& operator<<(std::ostream& p_stream, LightString const& p_string) {
    return p_stream << p_string.View();
}

} // namespace Qor::Chart::Utility
