#include "framework/library/PlyCheck.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace Qor::Chart::Library {

namespace {

enum class Format { Unknown, Text, LittleEndian, BigEndian };

/// A scalar, or a list when countBytes is not 0. A list's count is a whole number.
struct Property {
    std::size_t countBytes = 0;
    std::size_t bytes = 0;
};

struct Element {
    std::string name;
    std::uint64_t count = 0;
    std::vector<Property> properties;
};

/// Takes words and lines off the front of a text.
class Scanner {
public:
    explicit Scanner(std::string_view p_text) : _text(p_text) {}

    std::string_view Rest() const { return _text; }
    std::string_view Line() {
        std::size_t const end = std::min(_text.find('\n'), _text.size());
        std::string_view const line = _text.substr(0, end);
        _text.remove_prefix(std::min(end + 1, _text.size()));
        return line;
    }
    std::string_view Word() {
        std::size_t const begin = std::min(_text.find_first_not_of(" \t\r"), _text.size());
        _text.remove_prefix(begin);
        std::string_view const word = _text.substr(0, _text.find_first_of(" \t\r"));
        _text.remove_prefix(word.size());
        return word;
    }

private:
    std::string_view _text;
};

std::optional<std::uint64_t> CountIn(std::string_view p_word) {
    std::uint64_t count = 0;
    char const* const end = p_word.data() + p_word.size();
    auto const [stop, error] = std::from_chars(p_word.data(), end, count);
    return error == std::errc() && stop == end ? std::optional(count) : std::nullopt;
}

bool IsNumber(std::string_view p_word) {
    if (!p_word.empty() && p_word.front() == '+') {
        p_word.remove_prefix(1);
    }
    double number = 0;
    char const* const end = p_word.data() + p_word.size();
    auto const [stop, error] = std::from_chars(p_word.data(), end, number);
    return stop == end && error != std::errc::invalid_argument;
}

/// 0 for a word that is no type.
std::size_t BytesOf(std::string_view p_type) {
    static constexpr std::array<std::pair<std::string_view, std::size_t>, 16> Types{{{"char", 1}, {"uchar", 1},
        {"int8", 1}, {"uint8", 1}, {"short", 2}, {"ushort", 2}, {"int16", 2}, {"uint16", 2}, {"int", 4}, {"uint", 4},
        {"int32", 4}, {"uint32", 4}, {"float", 4}, {"float32", 4}, {"double", 8}, {"float64", 8}}};
    auto const found = std::ranges::find(Types, p_type, &std::pair<std::string_view, std::size_t>::first);
    return found == Types.end() ? 0 : found->second;
}

class Examiner {
public:
    explicit Examiner(std::string_view p_content) : _scanner(p_content) {}

    std::string Run() {
        std::string fault = ReadHeader();
        if (!fault.empty()) {
            return fault;
        }
        for (Element const& element : _elements) {
            fault = _format == Format::Text ? SkipLines(element) : SkipBytes(element);
            if (!fault.empty()) {
                return fault;
            }
        }
        return {};
    }

private:
    std::string ReadHeader() {
        _scanner.Line(); // "ply"
        for (;;) {
            if (_scanner.Rest().empty()) {
                return "its header has no end";
            }
            std::string_view const line = _scanner.Line();
            Scanner words(line);
            std::string_view const keyword = words.Word();
            if (keyword == "end_header") {
                return _format == Format::Unknown ? "its header names no format" : "";
            }
            bool const good = keyword == "format" ? ReadFormat(words)
                : keyword == "element"            ? ReadElement(words)
                : keyword == "property"           ? ReadProperty(words)
                                                  : keyword == "comment" || keyword == "obj_info" || keyword.empty();
            if (!good) {
                return "its header has the line \"" + std::string(line.substr(0, 60)) + "\"";
            }
        }
    }
    bool ReadFormat(Scanner& p_words) {
        std::string_view const format = p_words.Word();
        _format = format == "ascii"            ? Format::Text
            : format == "binary_little_endian" ? Format::LittleEndian
            : format == "binary_big_endian"    ? Format::BigEndian
                                               : Format::Unknown;
        return _format != Format::Unknown;
    }
    bool ReadElement(Scanner& p_words) {
        std::string const name(p_words.Word());
        auto const count = CountIn(p_words.Word());
        _elements.push_back({name, count.value_or(0), {}});
        return count.has_value();
    }
    bool ReadProperty(Scanner& p_words) {
        std::string_view const type = p_words.Word();
        Property property;
        bool good = !_elements.empty();
        if (type == "list") {
            std::string_view const countType = p_words.Word();
            property.countBytes = BytesOf(countType);
            good = good && property.countBytes != 0 && !countType.starts_with("float") && countType != "double";
            property.bytes = BytesOf(p_words.Word());
        } else {
            property.bytes = BytesOf(type);
        }
        if (!good || property.bytes == 0) {
            return false;
        }
        _elements.back().properties.push_back(property);
        return true;
    }

    static std::string Short(Element const& p_element, std::uint64_t p_have) {
        return "it has " + std::to_string(p_have) + " of " + std::to_string(p_element.count) +
            " elements of the kind \"" + p_element.name + "\"";
    }
    static std::string Wrong(Element const& p_element, std::uint64_t p_number) {
        return "element " + std::to_string(p_number) + " of the kind \"" + p_element.name +
            "\" is not what the header says";
    }

    std::string SkipLines(Element const& p_element) {
        for (std::uint64_t i = 0; i < p_element.count; ++i) {
            std::string_view line;
            do {
                if (_scanner.Rest().empty()) {
                    return Short(p_element, i);
                }
                line = _scanner.Line();
            } while (Scanner(line).Word().empty());
            Scanner words(line);
            for (Property const& property : p_element.properties) {
                std::optional<std::uint64_t> const count = property.countBytes == 0 ? 1 : CountIn(words.Word());
                for (std::uint64_t left = count.value_or(1); left > 0; --left) {
                    if (!count || !IsNumber(words.Word())) {
                        return Wrong(p_element, i);
                    }
                }
            }
        }
        return {};
    }

    std::string SkipBytes(Element const& p_element) {
        std::string_view const data = _scanner.Rest();
        std::uint64_t at = 0;
        bool const lists = std::ranges::any_of(
            p_element.properties, [](Property const& p_property) { return p_property.countBytes != 0; });
        if (!lists) {
            std::uint64_t size = 0;
            for (Property const& property : p_element.properties) {
                size += property.bytes;
            }
            if (size != 0 && p_element.count > data.size() / size) {
                return Short(p_element, data.size() / size);
            }
            at = size * p_element.count;
        }
        for (std::uint64_t i = 0; lists && i < p_element.count; ++i) {
            for (Property const& property : p_element.properties) {
                auto const count = property.countBytes == 0 ? 1 : CountAt(data, at, property.countBytes);
                at += property.countBytes;
                if (at > data.size() || count > (data.size() - at) / property.bytes) {
                    return Short(p_element, i);
                }
                at += count * property.bytes;
            }
        }
        _scanner = Scanner(data.substr(at));
        return {};
    }
    std::uint64_t CountAt(std::string_view p_data, std::uint64_t p_at, std::size_t p_bytes) const {
        std::uint64_t count = 0;
        for (std::size_t i = 0; i < p_bytes && p_at + i < p_data.size(); ++i) {
            std::uint64_t const byte = static_cast<unsigned char>(p_data[p_at + i]);
            count = _format == Format::BigEndian ? count << 8 | byte : count | byte << (8 * i);
        }
        return count;
    }

    Scanner _scanner;
    Format _format = Format::Unknown;
    std::vector<Element> _elements;
};

} // namespace

bool PlyCheck::IsPly(std::string_view p_content) {
    return p_content.starts_with("ply\n") || p_content.starts_with("ply\r\n");
}

std::string PlyCheck::Examine(std::string_view p_content) {
    return Examiner(p_content).Run();
}

} // namespace Qor::Chart::Library
