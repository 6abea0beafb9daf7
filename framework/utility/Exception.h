#pragma once

#include "framework/Export.h"

#include <exception>
#include <memory>
#include <string>

namespace Qor::Chart::Utility {

/// Base of the exceptions that the framework throws: one sentence that names the thing and what to do. Copying one never
/// throws.
class QOR_FRAMEWORK_API Exception : public std::exception {
public:
    explicit Exception(std::string p_text);
    ~Exception() override;

    char const* what() const noexcept override;

private:
    std::shared_ptr<std::string const> _text;
};

} // namespace Qor::Chart::Utility
