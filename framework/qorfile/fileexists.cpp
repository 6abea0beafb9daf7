#include "framework/qorfile/fileexists.h"

#include "framework/qorfile/filepath.h"

#include <filesystem>
#include <system_error>

namespace qorfile {

namespace {

std::filesystem::file_status StatusOf(filepath const& p_path) noexcept {
    try {
        std::error_code failed;
        return std::filesystem::status(std::filesystem::path(p_path.string()), failed);
    } catch (...) {
        return {};
    }
}

} // namespace

bool fileexists(filepath const& p_path) noexcept {
    auto const status = StatusOf(p_path);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

bool folderexists(filepath const& p_path) noexcept {
    return std::filesystem::is_directory(StatusOf(p_path));
}

} // namespace qorfile
