#include "apps/qorview/TreePrinter.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Qor::Chart::QorView {

using Render::Vis;

namespace {

constexpr std::size_t MaxIndentation = 32; ///< levels; deeper nodes say their depth

/// Calls p_visit with every node and its depth, parents before their children. Its own stack: trees may be deep.
template <class Visit>
void Walk(Core::Ptr<Vis> const& p_root, Visit const& p_visit) {
    std::vector<std::pair<Vis const*, std::size_t>> left{{p_root.Get(), 0}};
    while (!left.empty()) {
        auto const [node, depth] = left.back();
        left.pop_back();
        p_visit(*node, depth);
        std::size_t const first = left.size();
        for (Core::Ptr<Vis> const& child : *node)
            left.emplace_back(child.Get(), depth + 1);
        std::reverse(left.begin() + static_cast<std::ptrdiff_t>(first), left.end());
    }
}

std::string Flags(Vis const& p_node) {
    std::array const flags{
        std::pair(p_node.IsActive(), "active"),
        std::pair(!p_node.IsEnabled(), "disabled"),
        std::pair(!p_node.IsValid(), "invalid"),
        std::pair(p_node.IsPending(), "pending"),
        std::pair(p_node.IsFlagged(Vis::VisFlagContextRoot), "context-root"),
        std::pair(p_node.IsFlagged(Vis::VisFlagSelfManaged), "self-managed"),
    };
    std::string text;
    for (auto const& [isSet, name] : flags) {
        if (isSet)
            text += (text.empty() ? "" : ",") + std::string(name);
    }
    return text.empty() ? "none" : text;
}

std::string Passes(Render::CallbackTypeBitSet p_passes) {
    static constexpr std::array names{
        std::pair(Render::CallbackHit, std::string_view("hit")),
        std::pair(Render::CallbackHitOverlay, std::string_view("hit-overlay")),
        std::pair(Render::CallbackDraw, std::string_view("draw")),
        std::pair(Render::CallbackDrawOverlay, std::string_view("draw-overlay")),
        std::pair(Render::CallbackHighlight, std::string_view("highlight")),
        std::pair(Render::CallbackHighlightOverlay, std::string_view("highlight-overlay")),
    };
    std::string text;
    for (auto const& [pass, name] : names) {
        if (p_passes.Has(pass))
            text.append(text.empty() ? "" : ",").append(name);
    }
    return text.empty() ? "none" : text;
}

/// A name on one line, whatever is in it.
std::string Quoted(std::string const& p_name) {
    std::string text = "\"";
    for (char const sign : p_name)
        text += static_cast<unsigned char>(sign) < 0x20 || sign == 0x7F ? ' ' : sign;
    return text + '"';
}

} // namespace

void TreePrinter::Print(Core::Ptr<Vis> const& p_root) {
    Walk(p_root, [this](Vis const& p_node, std::size_t p_depth) { PrintNode(p_node, p_depth); });
}

std::size_t TreePrinter::Count(Core::Ptr<Vis> const& p_root) {
    std::size_t count = 0;
    Walk(p_root, [&count](Vis const&, std::size_t) { ++count; });
    return count;
}

void TreePrinter::PrintNode(Vis const& p_node, std::size_t p_depth) {
    _stream << std::string(2 * std::min(p_depth, MaxIndentation), ' ');
    if (p_depth > MaxIndentation)
        _stream << "(depth " << p_depth << ") ";
    _stream << p_node.TypeName() << ' ' << Quoted(p_node.Name()) << "  path " << p_node.GetPath() << "  layer "
            << p_node.GetLayer() << "  flags " << Flags(p_node) << "  box " << p_node.BoundingBox() << "  passes "
            << Passes(p_node.OptimalPaths()) << '\n';
}

} // namespace Qor::Chart::QorView
