#include "framework/library/GltfCheck.h"

#include <QString>
#include <QtEndian>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <ios>
#include <string_view>

namespace Qor::Chart::Library {

namespace {

/// Digits of the largest number that is let pass: a thousand terabytes.
constexpr std::size_t MostDigits = 15;

std::string_view Trimmed(std::string_view p_text) {
    std::size_t const begin = p_text.find_first_not_of(" \t\r\n");
    return begin == std::string_view::npos ? std::string_view() : p_text.substr(begin);
}

/// Whether what follows the name of a member is a whole number that is not too large, or no number at all.
bool IsBounded(std::string_view p_text) {
    p_text = Trimmed(p_text);
    if (!p_text.starts_with(':')) {
        return true;
    }
    p_text = Trimmed(p_text.substr(1));
    auto const end = std::ranges::find_if_not(p_text,
        [](unsigned char p_char) { return std::isalnum(p_char) || p_char == '-' || p_char == '+' || p_char == '.'; });
    std::string_view const number(p_text.begin(), end);
    return number.size() <= MostDigits && number.find_first_of("-eE") == std::string_view::npos;
}

/// The description in the file, which is the whole of it unless it is binary (glTF 2.0, section 4.4).
std::string DescriptionOf(std::string const& p_path) {
    constexpr std::size_t headBytes = 20;
    constexpr std::size_t lengthAt = 12;
    std::ifstream stream(p_path, std::ios::binary | std::ios::ate);
    auto size = static_cast<std::size_t>(std::max<std::streamoff>(stream.tellg(), 0));
    std::string content(std::min(size, headBytes), '\0');
    stream.seekg(0);
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (content.size() == headBytes && content.starts_with("glTF")) {
        size = std::min(size, headBytes + qFromLittleEndian<std::uint32_t>(content.data() + lengthAt));
    }
    std::size_t const read = content.size();
    content.resize(size);
    stream.read(content.data() + read, static_cast<std::streamsize>(size - read));
    return content;
}

} // namespace

bool GltfCheck::IsGltf(std::string const& p_path) {
    QString const path = QString::fromStdString(p_path);
    return path.endsWith(".glb", Qt::CaseInsensitive) || path.endsWith(".gltf", Qt::CaseInsensitive);
}

std::string GltfCheck::Examine(std::string const& p_path) {
    std::string const content = DescriptionOf(p_path);
    std::string_view const text(content);
    for (std::string_view const name : {"\"byteOffset\"", "\"byteLength\"", "\"byteStride\""}) {
        for (std::size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
            if (!IsBounded(text.substr(at + name.size()))) {
                return "a part of its buffers lies where no memory can be";
            }
        }
    }
    return {};
}

} // namespace Qor::Chart::Library
