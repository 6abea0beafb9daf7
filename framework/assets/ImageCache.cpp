#include "framework/assets/ImageCache.h"

#include "framework/assets/BuiltInImages.h"
#include "framework/assets/ImageError.h"
#include "framework/qorfile/fileexists.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImageReader>
#include <QSize>
#include <QString>
#include <QtEndian>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

namespace Qor::Chart::Assets {

namespace {

constexpr char const* InMemory = ":memory/";
constexpr int MaxMebibytes = 2048;

/// Lets QImage read what a device can show, for which its own limit is too low; 0 is no limit.
class RaisedLimit {
public:
    RaisedLimit() : _alone(Mutex()), _before(QImageReader::allocationLimit()) {
        QImageReader::setAllocationLimit(_before == 0 ? 0 : std::max(_before, MaxMebibytes));
    }
    ~RaisedLimit() { QImageReader::setAllocationLimit(_before); }
    RaisedLimit(RaisedLimit const&) = delete;
    RaisedLimit& operator=(RaisedLimit const&) = delete;

private:
    /// The limit is the process's: two that raise it at once would leave it raised.
    static std::mutex& Mutex() {
        static std::mutex mutex;
        return mutex;
    }

    std::lock_guard<std::mutex> _alone;
    int _before;
};

std::string WhyNot(QImageReader const& p_reader, QSize const& p_size) {
    // 4 bytes a pixel, as images are kept.
    std::int64_t const mebibytes = std::int64_t(p_size.width()) * p_size.height() * 4 / (1024 * 1024);
    if (p_size.isValid() && mebibytes >= MaxMebibytes) {
        return "its " + std::to_string(p_size.width()) + " by " + std::to_string(p_size.height()) + " pixels need " +
            std::to_string(mebibytes) + " MiB, more than the " + std::to_string(MaxMebibytes) +
            " that an image may have; save it in a smaller size.";
    }
    return p_reader.errorString().toLower().toStdString() +
        "; check that it is a complete image of a common format, such as PNG or JPEG.";
}

/// Where the picture itself begins in a JPEG file: after its segments, of which one may hold a small picture of its own.
/// The file's length when it ends before.
qsizetype FirstScanOf(QByteArray const& p_jpeg) {
    constexpr char marker = '\xFF';
    constexpr char startOfScan = '\xDA';
    qsizetype at = 2;
    while (at + 4 <= p_jpeg.size() && p_jpeg[at] == marker && p_jpeg[at + 1] != startOfScan) {
        bool const isFill = p_jpeg[at + 1] == marker;
        at += isFill ? 1 : 2 + qFromBigEndian<quint16>(p_jpeg.constData() + at + 2);
    }
    return std::min(at, p_jpeg.size());
}

/// Whether a file ends too early, for those formats of which QImage shows what there is.
bool IsCutOff(QByteArray const& p_bytes) {
    if (p_bytes.startsWith("\xFF\xD8")) {
        return p_bytes.indexOf("\xFF\xD9", FirstScanOf(p_bytes)) < 0;
    }
    if (p_bytes.startsWith("BM") && p_bytes.size() >= 6) {
        return qFromLittleEndian<quint32>(p_bytes.constData() + 2) > static_cast<quint64>(p_bytes.size());
    }
    return false;
}

QImage Read(QByteArray p_bytes, std::string const& p_name) {
    std::string const cannot = "Cannot load the image \"" + p_name + "\": ";
    if (IsCutOff(p_bytes)) {
        throw ImageError(cannot + "the end of its file is missing; save or download it again.");
    }
    QBuffer buffer(&p_bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QSize const size = reader.size();
    RaisedLimit const limit;
    QImage image = reader.read();
    if (image.isNull()) {
        throw ImageError(cannot + WhyNot(reader, size));
    }
    return image;
}

QImage ReadFile(std::string const& p_file) {
    if (BuiltInImages::IsBuiltIn(p_file)) {
        return BuiltInImages::Draw(p_file);
    }
    if (p_file.empty()) {
        throw ImageError("Cannot load an image without a file name: give the path of an image file.");
    }
    std::string const cannot = "Cannot load the image \"" + p_file + "\": ";
    if (qorfile::folderexists(p_file)) {
        throw ImageError(cannot + "it is a folder; name an image file in it.");
    }
    if (!qorfile::fileexists(p_file)) {
        throw ImageError(cannot + "there is no such file; check the path.");
    }
    if (std::error_code failed; !std::filesystem::is_regular_file(p_file, failed)) {
        throw ImageError(cannot + "it is no ordinary file; name an image file.");
    }
    QFile file(QString::fromStdString(p_file));
    if (!file.open(QIODevice::ReadOnly)) {
        throw ImageError(cannot + "its file cannot be read; check that it may be.");
    }
    return Read(file.readAll(), p_file);
}

QImage ReadBytes(std::span<std::byte const> p_bytes, std::string const& p_name) {
    return Read(
        QByteArray::fromRawData(reinterpret_cast<char const*>(p_bytes.data()), static_cast<qsizetype>(p_bytes.size())),
        p_name);
}

} // namespace

std::shared_ptr<QImage const> ImageCache::Image(qorfile::filepath const& p_file) const {
    std::error_code failed;
    std::filesystem::path const path(p_file.string());
    Mark const mark{static_cast<std::uint64_t>(std::filesystem::file_size(path, failed)),
        static_cast<std::uint64_t>(std::filesystem::last_write_time(path, failed).time_since_epoch().count())};
    return Find(p_file.string(), mark, [&] { return ReadFile(p_file.string()); });
}

std::shared_ptr<QImage const> ImageCache::Image(std::string const& p_name, std::span<std::byte const> p_bytes) const {
    std::string_view const text(reinterpret_cast<char const*>(p_bytes.data()), p_bytes.size());
    return Find(InMemory + p_name, Mark{p_bytes.size(), std::hash<std::string_view>()(text)},
        [&] { return ReadBytes(p_bytes, p_name); });
}

template <class Load>
std::shared_ptr<QImage const> ImageCache::Find(std::string const& p_key, Mark const& p_mark, Load const& p_load) const {
    if (auto const found = _entries.find(p_key); found != _entries.end()) {
        if (auto image = found->second.image.lock(); image && found->second.mark == p_mark) {
            return image;
        }
    }
    auto image = std::make_shared<QImage const>(p_load());
    _entries[p_key] = {image, p_mark};
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
