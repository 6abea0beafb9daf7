#include "framework/utility/Exception.h"

#include "framework/utility/Readable.h"

#include <utility>

namespace Qor::Chart::Utility {

Exception::Exception(std::string p_text) : _text(std::make_shared<std::string const>(Readable(std::move(p_text)))) {}

Exception::~Exception() = default;

char const* Exception::what() const noexcept {
    return _text->c_str();
}

} // namespace Qor::Chart::Utility
