#pragma once

#include "framework/Export.h"
#include "framework/qorfile/filepath.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
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
    /// The image that these bytes are the file of, in any format that QImage reads. Shared like files, by its name, until the
    /// same name comes with other bytes. Throws `ImageError` when they are no complete image.
    std::shared_ptr<QImage const> Image(std::string const& p_name, std::span<std::byte const> p_bytes) const;

    /// How many images are in use.
    std::size_t Size() const;

private:
    /// What changes with the contents of a file.
    struct Mark {
        std::uint64_t bytes = 0;
        std::uint64_t mark = 0; ///< time of the file, or a hash

        bool operator==(Mark const&) const = default;
    };
    struct Entry {
        std::weak_ptr<QImage const> image;
        Mark mark;
    };

    template <class Load>
    std::shared_ptr<QImage const> Find(std::string const& p_key, Mark const& p_mark, Load const& p_load) const;
    void DropUnused() const;

    mutable std::map<std::string, Entry> _entries;
    mutable std::size_t _dropAt = 16;
};

} // namespace Qor::Chart::Assets
