#include "framework/assets/ImageCache.h"

#include "framework/assets/BuiltInImages.h"
#include "framework/assets/ImageError.h"
#include "framework/qorfile/fileexists.h"

#include <QByteArray>
#include <QImageReader>
#include <QString>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Qor::Chart::Assets {

namespace {

QImage ReadFile(std::string const& p_file) {
    if (p_file.empty()) {
        throw ImageError("Cannot load an image without a file name: give the path of an image file.");
    }
    if (qorfile::folderexists(p_file)) {
        throw ImageError("Cannot load the image \"" + p_file + "\": it is a folder; name an image file in it.");
    }
    if (!qorfile::fileexists(p_file)) {
        throw ImageError("Cannot load the image \"" + p_file + "\": there is no such file; check the path.");
    }
    QImageReader reader(QString::fromStdString(p_file));
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull()) {
        throw ImageError("Cannot load the image \"" + p_file + "\": " + reader.errorString().toLower().toStdString() +
            "; check that it is a complete image of a common format, such as PNG or JPEG.");
    }
    return image;
}

} // namespace

std::shared_ptr<QImage const> ImageCache::Image(qorfile::filepath const& p_file) const {
    std::error_code failed;
    std::filesystem::path const path(p_file.string());
    auto const time =
        static_cast<std::int64_t>(std::filesystem::last_write_time(path, failed).time_since_epoch().count());
    auto const bytes = static_cast<std::uint64_t>(std::filesystem::file_size(path, failed));

    if (auto const found = _entries.find(p_file.string()); found != _entries.end()) {
        Entry const& entry = found->second;
        if (auto image = entry.image.lock(); image && entry.time == time && entry.bytes == bytes) {
            return image;
        }
    }
    bool const builtIn = BuiltInImages::IsBuiltIn(p_file.string());
    auto image =
        std::make_shared<QImage const>(builtIn ? BuiltInImages::Draw(p_file.string()) : ReadFile(p_file.string()));
    _entries[p_file.string()] = {image, time, bytes};
    DropUnused();
    return image;
}

std::size_t ImageCache::Size() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(_entries, [](auto const& p_entry) { return !p_entry.second.image.expired(); }));
}

void ImageCache::DropUnused() const {
    if (_entries.size() < _dropAt) {
        return;
    }
    std::erase_if(_entries, [](auto const& p_entry) { return p_entry.second.image.expired(); });
    _dropAt = std::max<std::size_t>(16, 2 * _entries.size());
}

} // namespace Qor::Chart::Assets
