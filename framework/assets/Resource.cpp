#include "framework/assets/Resource.h"

#include "framework/assets/BuiltInImages.h"
#include "framework/assets/InstalledFonts.h"
#include "framework/qorfile/fileexists.h"
#include "framework/utility/Logger.h"

#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

namespace Qor::Chart::Assets {

namespace {

constexpr std::array ImageExtensions{".png", ".jpg", ".bmp"};
constexpr std::array FontExtensions{".ttf", ".otf"};

std::optional<std::string> ReadText(qorfile::filepath const& p_file) {
    std::ifstream stream(p_file.string(), std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) {
        Utility::GetLogger().warning("The shader file \"" + p_file.string() +
            "\" cannot be read and the built-in one is used instead; check that it may be read.");
        return std::nullopt;
    }
    return text;
}

} // namespace

void Resource::AddFolder(qorfile::filepath p_folder) {
    _folders.push_back(std::move(p_folder));
    _fontSets.clear();
    std::erase_if(_shaderSources, [](auto const& p_entry) { return !p_entry.second; });
}

qorfile::filepath Resource::ImageFile(std::string const& p_name) const {
    for (qorfile::filepath const& folder : _folders) {
        for (char const* extension : ImageExtensions) {
            qorfile::filepath file = folder / qorfile::filepath(p_name + extension);
            if (qorfile::fileexists(file)) {
                return file;
            }
        }
    }
    return BuiltInImages::PathOf(p_name);
}

std::shared_ptr<ShaderText const> Resource::ShaderSource(std::string const& p_name) const {
    auto found = _shaderSources.find(p_name);
    if (found == _shaderSources.end()) {
        found = _shaderSources.emplace(p_name, ReadShaderSource(p_name)).first;
    }
    return found->second;
}

void Resource::SetShaderSource(ShaderText p_text) {
    std::string const name = p_text.name;
    _shaderSources[name] = std::make_shared<ShaderText const>(std::move(p_text));
}

std::vector<FontFile> Resource::FontSet(std::string const& p_name) const {
    if (auto const found = _fontSets.find(p_name); found != _fontSets.end()) {
        return found->second;
    }
    std::vector<FontFile> fonts = InstalledFonts::Find(p_name);
    for (auto folder = _folders.rbegin(); folder != _folders.rend() && !p_name.empty(); ++folder) {
        for (char const* extension : FontExtensions) {
            qorfile::filepath const file = *folder / qorfile::filepath(p_name + extension);
            if (qorfile::fileexists(file)) {
                fonts.insert(fonts.begin(), FontFile{file, 0});
            }
        }
    }
    if (!fonts.empty()) {
        _fontSets[p_name] = fonts;
    }
    return fonts;
}

std::shared_ptr<ShaderText const> Resource::ReadShaderSource(std::string const& p_name) const {
    for (qorfile::filepath const& folder : _folders) {
        qorfile::filepath const vertexFile = folder / qorfile::filepath(p_name + ".vert");
        qorfile::filepath const fragmentFile = folder / qorfile::filepath(p_name + ".frag");
        if (!qorfile::fileexists(vertexFile) || !qorfile::fileexists(fragmentFile)) {
            continue;
        }
        auto vertex = ReadText(vertexFile);
        auto fragment = ReadText(fragmentFile);
        if (vertex && fragment) {
            return std::make_shared<ShaderText const>(ShaderText{p_name, std::move(*vertex), std::move(*fragment)});
        }
    }
    return nullptr;
}

} // namespace Qor::Chart::Assets
