#pragma once

#include "framework/Export.h"
#include "framework/qorfile/filepath.h"

#include <QImage>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace Qor::Chart::Assets {

/// Loads images once and shares them for as long as somebody uses them. A file that has changed on disk is loaded anew; who
/// has the old image keeps it. For one thread.
class QOR_FRAMEWORK_API ImageCache {
public:
    ImageCache() = default;
    ImageCache(ImageCache const&) = delete;
    ImageCache& operator=(ImageCache const&) = delete;

    /// The image of a file in any format that QImage reads, or of a path that `Resource::ImageFile` gave. Throws `ImageError`
    /// when it is missing or broken.
    std::shared_ptr<QImage const> Image(qorfile::filepath const& p_file) const;

    /// How many images are in use.
    std::size_t Size() const;

private:
    struct Entry {
        std::weak_ptr<QImage const> image;
        std::int64_t time = 0;
        std::uint64_t bytes = 0;
    };

    void DropUnused() const;

    mutable std::map<std::string, Entry> _entries;
    mutable std::size_t _dropAt = 16;
};

} // namespace Qor::Chart::Assets
