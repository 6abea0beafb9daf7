#include "apps/qorview/PictureFile.h"

#include "host/HostError.h"

#include <QBuffer>
#include <QByteArray>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Qor::Chart::QorView {

namespace fs = std::filesystem;

namespace {

std::string Reason(int p_error) {
    return std::generic_category().message(p_error);
}

/// Takes the temporary file away again unless it got its place.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string p_path)
        : _path(std::move(p_path)), _file(mkstemp(_path.data())), _error(errno) {}
    ~TemporaryFile() {
        if (_file >= 0) {
            Close();
            unlink(_path.c_str());
        }
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    bool IsOpen() const noexcept { return _file >= 0; }
    int Error() const noexcept { return _error; }
    int Descriptor() const noexcept { return _file; }
    std::string const& Path() const noexcept { return _path; }
    /// False, with errno, when the last bytes could not be written.
    bool Close() noexcept {
        bool const wasOpen = !std::exchange(_isClosed, true);
        return !wasOpen || close(_file) == 0;
    }
    void Keep() noexcept { _file = -1; }

private:
    std::string _path;
    int _file;
    int _error;
    bool _isClosed = false;
};

/// The rights that a file made in the ordinary way would have, or has already.
mode_t RightsOf(std::string const& p_path) {
    struct stat present {};
    if (stat(p_path.c_str(), &present) == 0)
        return present.st_mode & 07777;
    mode_t const mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

PictureFile::PictureFile(std::string p_path) : _path(std::move(p_path)) {
    std::error_code error;
    fs::path const target = fs::weakly_canonical(fs::absolute(_path, error), error);
    _target = error ? _path : target.string();
    if (fs::is_directory(_target, error))
        Fail("it is a folder; give the name of a file");
    if (fs::exists(_target, error) && !fs::is_regular_file(_target, error))
        Fail("it is no ordinary file; give another name");
    fs::path const folder = fs::path(_target).parent_path();
    if (!fs::is_directory(folder, error))
        Fail("there is no folder \"" + folder.string() + "\"; make it first");
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        Fail(Reason(errno) + "; choose a folder that you may write to");
}

void PictureFile::Write(QImage const& p_picture) const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!p_picture.save(&buffer, "PNG"))
        Fail("the picture could not be encoded; try a smaller size");

    TemporaryFile file(_target + ".XXXXXX");
    if (!file.IsOpen())
        Fail(Reason(file.Error()) + "; choose another folder");
    WriteBytes(file.Descriptor(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (fchmod(file.Descriptor(), RightsOf(_target)) != 0 || !file.Close() ||
        rename(file.Path().c_str(), _target.c_str()) != 0)
        Fail(Reason(errno) + "; choose another folder");
    file.Keep();
}

void PictureFile::WriteBytes(int p_file, char const* p_bytes, std::size_t p_count) const {
    while (p_count > 0) {
        ssize_t const written = write(p_file, p_bytes, p_count);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            Fail(Reason(errno) + "; choose another folder");
        p_bytes += written;
        p_count -= static_cast<std::size_t>(written);
    }
}

void PictureFile::Fail(std::string const& p_why) const {
    throw Host::HostError("The picture \"" + _path + "\" cannot be written: " + p_why + ".");
}

} // namespace Qor::Chart::QorView
