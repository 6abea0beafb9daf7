#pragma once

#include "framework/model/ModelNode.h"
#include "framework/utility/Exception.h"

#include <cctype>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {

/// Texts to be written into a property: such as the property takes, among them the ends of what it can take, and
/// others.
inline std::vector<std::string> TextsFor(Model::PropertyInfo const& p_property) {
    static std::string const data = QOR_TEST_DATA "/models/";
    std::vector<std::string> texts{"", "0", "1", "2", "0.5", "3.7", "60", "-1", "1e-320", "1e300", "-1e308", "1e999",
        "nan", "inf", "256", "2147483647", "-2147483648", "99999999999", "true", "false", "#80ff4000", "#00000000",
        "#12", "#ff0000 #00ff00", "0.1 0.2 0.3 0", "1 1", "1e300 -1e300", "0 0", "left 20px", "right 50%",
        "left -1e300%", "bottom 20px", "top 1e308px", "top nan", "left", data + "four quarters.png",
        data + "garbage.glb", data + "textured.gltf#*0", data + "textured.gltf#*99", data + "none.png", data, "rainbow",
        "%s%n", "a\nb\tc", "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d e\xcc\x81 \xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x9a\x80",
        "\xff\xc0\x80", std::string(1, '\0'), std::string(300, 'W')};
    std::string word; // the names of an enumeration stand in its form
    for (char const sign : p_property.Form() + " ") {
        if (std::isalpha(static_cast<unsigned char>(sign)) != 0)
            word += sign;
        else if (!word.empty())
            texts.push_back(std::exchange(word, {}));
    }
    return texts;
}

/// Writes a text into a property; why it was refused, empty when it was not.
inline std::string Write(Model::ModelNode& p_node, Model::PropertyInfo const& p_property, std::string_view p_text) {
    try {
        p_property.SetText(p_node, p_text);
    } catch (Utility::Exception const& exception) {
        return exception.what();
    }
    return {};
}

} // namespace Qor::Chart::Host
