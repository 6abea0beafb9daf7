#pragma once

#include "framework/utility/Exception.h"

namespace Qor::Chart::QorView {

/// The program was called in a way that makes no sense. The text is one sentence.
class UsageError : public Utility::Exception {
public:
    using Exception::Exception;
};

} // namespace Qor::Chart::QorView
