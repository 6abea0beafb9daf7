#pragma once

#include <QImage>

#include <string>

namespace Qor::Chart::QorView {

/// A picture to be written to a PNG file, all of it or nothing: it goes to a temporary file beside its place, which then
/// takes that place. A symbolic link is followed.
class PictureFile {
public:
    /// Looks whether the file could be written, so that this is known before long work.
    /// @throws Host::HostError when it could not
    explicit PictureFile(std::string p_path);

    /// @throws Host::HostError when the file cannot be written; what was there before is still there then
    void Write(QImage const& p_picture) const;

private:
    void WriteBytes(int p_file, char const* p_bytes, std::size_t p_count) const;
    [[noreturn]] void Fail(std::string const& p_why) const;

    std::string _path; ///< as the user wrote it
    std::string _target; ///< with links followed
};

} // namespace Qor::Chart::QorView
