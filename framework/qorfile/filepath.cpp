#include "framework/qorfile/filepath.h"

#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>

namespace qorfile {

namespace {

std::filesystem::path NativeOf(std::string const& p_path) {
    return std::filesystem::path(p_path);
}

} // namespace

filepath::filepath(std::string p_path) : _path(std::move(p_path)) {}

filepath::filepath(std::string_view p_path) : _path(p_path) {}

filepath::filepath(char const* p_path) : _path(p_path ? p_path : "") {}

std::string filepath::filename() const {
    return NativeOf(_path).filename().string();
}

std::string filepath::stem() const {
    return NativeOf(_path).stem().string();
}

std::string filepath::extension() const {
    return NativeOf(_path).extension().string();
}

filepath filepath::parent() const {
    return NativeOf(_path).parent_path().string();
}

bool filepath::is_absolute() const {
    return NativeOf(_path).is_absolute();
}

filepath filepath::absolute() const {
    std::error_code failed;
    auto const path = std::filesystem::absolute(NativeOf(_path), failed);
    return failed ? *this : filepath(path.lexically_normal().string());
}

filepath filepath::with_extension(std::string_view p_extension) const {
    return NativeOf(_path).replace_extension(std::filesystem::path(p_extension)).string();
}

filepath operator/(filepath const& p_folder, filepath const& p_part) {
    return (NativeOf(p_folder._path) / NativeOf(p_part._path)).string();
}

std::ostream& operator<<(std::ostream& p_stream, filepath const& p_path) {
    return p_stream << p_path.string();
}

} // namespace qorfile
