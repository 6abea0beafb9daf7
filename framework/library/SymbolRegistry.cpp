#include "framework/library/SymbolRegistry.h"

#include "framework/library/ModelFileError.h"
#include "framework/library/Shapes.h"
#include "framework/assets/ImageCache.h"
#include "framework/assets/ImageError.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

namespace Qor::Chart::Library {

namespace {

constexpr std::size_t FewFiles = 16;

/// Tells whether a file is still the one that was read.
struct Stamp {
    std::int64_t time = 0;
    std::uint64_t bytes = 0;

    bool operator==(Stamp const&) const = default;
};

/// Nothing when there is no such file.
std::optional<Stamp> StampOf(std::string const& p_path) {
    std::error_code failed;
    auto const time = std::filesystem::last_write_time(p_path, failed);
    if (failed) {
        return std::nullopt;
    }
    auto const bytes = std::filesystem::file_size(p_path, failed);
    return Stamp{static_cast<std::int64_t>(time.time_since_epoch().count()), failed ? 0 : bytes};
}

constexpr std::string_view MeshMark = "#";
constexpr std::string_view ImageMark = "#*";

/// What "FILE" or "FILE", a mark and a number name.
struct Reference {
    std::string path;
    std::optional<std::size_t> number;
};

Reference Parse(std::string const& p_file, std::string_view p_mark) {
    std::size_t const mark = p_file.rfind(p_mark);
    std::size_t const digits = mark + p_mark.size();
    if (mark == std::string::npos || digits >= p_file.size() || StampOf(p_file)) {
        return {p_file, std::nullopt};
    }
    std::size_t number = 0;
    char const* const end = p_file.data() + p_file.size();
    auto const [stop, error] = std::from_chars(p_file.data() + digits, end, number);
    if (stop != end || error == std::errc::invalid_argument) {
        return {p_file, std::nullopt};
    }
    return {p_file.substr(0, mark), error == std::errc() ? number : SIZE_MAX};
}

} // namespace

struct SymbolRegistry::WeakSymbol {
    std::weak_ptr<Ogl::IndexBuffer const> indices;
    std::weak_ptr<Ogl::VertexBuffer const> vertices;
    Types::BoundingBox_Base<double> bounds;

    WeakSymbol() = default;
    explicit WeakSymbol(Symbol const& p_symbol)
        : indices(p_symbol.indices), vertices(p_symbol.vertices), bounds(p_symbol.bounds) {}

    Symbol Lock() const { return {indices.lock(), vertices.lock(), bounds}; }
    bool IsUnused() const { return indices.expired() || vertices.expired(); }
};

struct SymbolRegistry::FileEntry {
    Stamp stamp;
    std::weak_ptr<MeshFile const> file;
    WeakSymbol whole;
    std::map<std::size_t, std::weak_ptr<QImage const>> images; ///< by number, so that nobody looks at their bytes again
    std::string failure; ///< of a file that could not be read

    bool IsUnused() const { return file.expired() && whole.IsUnused(); }
};

SymbolRegistry::SymbolRegistry()
    : _shapes(std::make_unique<std::array<WeakSymbol, AllShapes.size()>>()), _dropAt(FewFiles) {}

SymbolRegistry::~SymbolRegistry() = default;

Symbol SymbolRegistry::Get(Shape p_shape) const {
    auto index = static_cast<std::size_t>(p_shape);
    if (!QOR_ENSURE(index < _shapes->size())) {
        index = static_cast<std::size_t>(Shape::Cube);
    }
    WeakSymbol& known = (*_shapes)[index];
    if (Symbol symbol = known.Lock()) {
        return symbol;
    }
    Mesh mesh = Shapes::Build(AllShapes[index]);
    Symbol symbol;
    symbol.indices = std::make_shared<Ogl::IndexBuffer const>(mesh.kind, std::move(mesh.indices));
    symbol.vertices = std::make_shared<Ogl::VertexBuffer const>(std::move(mesh.vertices));
    symbol.bounds = symbol.vertices->Bounds();
    known = WeakSymbol(symbol);
    return symbol;
}

Symbol SymbolRegistry::LoadModel(std::string const& p_file) const {
    Reference const reference = Parse(p_file, MeshMark);
    if (reference.number) {
        return OpenModel(reference.path)->MeshSymbol(*reference.number);
    }
    if (Symbol symbol = Entry(reference.path).whole.Lock()) {
        return symbol;
    }
    Symbol symbol = OpenModel(reference.path)->WholeSymbol();
    Entry(reference.path).whole = WeakSymbol(symbol);
    return symbol;
}

std::shared_ptr<MeshFile const> SymbolRegistry::OpenModel(
    std::string const& p_file, MeshFile::Progress const& p_progress) const {
    FileEntry const& entry = Entry(p_file);
    if (auto file = entry.file.lock()) {
        return file;
    }
    if (!entry.failure.empty()) {
        throw ModelFileError(entry.failure);
    }
    try {
        auto file = MeshFile::Load(p_file, p_progress);
        Entry(p_file).file = file;
        return file;
    } catch (ModelFileError const& failure) {
        // With a progress callback the failure may be that it stopped the loading.
        if (FileEntry& failed = Entry(p_file); !p_progress && failed.stamp != Stamp()) {
            failed.failure = failure.what();
        }
        throw;
    }
}

std::shared_ptr<QImage const> SymbolRegistry::LoadImage(
    std::string const& p_name, Assets::ImageCache const& p_images) const {
    Reference const reference = Parse(p_name, ImageMark);
    if (!reference.number) {
        return p_images.Image(qorfile::filepath(p_name));
    }
    try {
        if (auto image = Entry(reference.path).images[*reference.number].lock()) {
            return image;
        }
        auto const file = OpenModel(reference.path);
        std::span<std::byte const> const bytes = file->ImageBytes(*reference.number);
        if (bytes.empty()) {
            throw Assets::ImageError("Cannot load the image \"" + p_name +
                "\": no texture of the model file refers to an image of that number; check the number.");
        }
        auto image = p_images.Image(p_name, bytes);
        Entry(reference.path).images[*reference.number] = image;
        return image;
    } catch (ModelFileError const& failure) {
        throw Assets::ImageError(failure.what());
    }
}

/// What is known of a file, emptied when the file has changed. A file that is gone from the disk stays as it was.
SymbolRegistry::FileEntry& SymbolRegistry::Entry(std::string const& p_path) const {
    std::string key = qorfile::filepath(p_path).absolute().string();
    auto const stamp = StampOf(key);
    auto found = _files.find(key);
    if (found == _files.end()) {
        DropUnused();
        found = _files.try_emplace(std::move(key)).first;
    }
    FileEntry& entry = found->second;
    if (stamp ? entry.stamp != *stamp : entry.IsUnused()) {
        entry = FileEntry{stamp.value_or(Stamp()), {}, {}, {}, {}};
    }
    return entry;
}

void SymbolRegistry::DropUnused() const {
    if (_files.size() < _dropAt) {
        return;
    }
    std::erase_if(_files, [](auto const& p_entry) { return p_entry.second.IsUnused(); });
    _dropAt = std::max(FewFiles, 2 * _files.size());
}

} // namespace Qor::Chart::Library
