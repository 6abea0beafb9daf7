#include "render/nodes/ShortText.h"

#include <string_view>

namespace Qor::Chart::Render {

std::wstring ShortText::Of(std::wstring const& p_text) {
    return p_text.size() <= Longest ? p_text : p_text.substr(0, Longest) + L'\u2026';
}

bool ShortText::IsOf(std::wstring const& p_shown, std::wstring const& p_text) {
    if (p_text.size() <= Longest)
        return p_shown == p_text;
    std::wstring_view const kept = std::wstring_view(p_text).substr(0, Longest);
    return p_shown.size() == Longest + 1 && p_shown.starts_with(kept);
}

} // namespace Qor::Chart::Render
