#include "host/qt/PopOutWindows.h"

#include "framework/model/ModelNode.h"
#include "framework/model/Pane.h"
#include "framework/utility/Logger.h"
#include "host/qt/SceneWindow.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace Qor::Chart::Host {

namespace {

constexpr int LeastSide = 120;

void GiveBack(Render::PopOutHost::Restore const& p_restore) {
    if (p_restore)
        p_restore();
}

void Refuse(Render::PopOutHost::Restore const& p_restore, std::string const& p_why) {
    Utility::GetLogger().warning("The content of a pane cannot be shown in a window: " + p_why);
    GiveBack(p_restore);
}

QString TitleOf(Model::ModelNode const& p_root) {
    auto const* const pane = dynamic_cast<Model::Pane const*>(&p_root);
    bool const hasTitle = pane && !pane->Title().empty();
    return hasTitle ? QString::fromStdWString(pane->Title()) : QString::fromStdString(p_root.Name());
}

} // namespace

PopOutWindows::~PopOutWindows() {
    Close();
}

void PopOutWindows::Close() {
    for (QPointer<SceneWindow> const& window : std::exchange(_windows, {}))
        delete window.data();
}

void PopOutWindows::PopOut(
    Factory const& p_factory, Types::Size const& p_size, Restore const& p_restore, Content const& p_content) {
    auto window = std::make_unique<SceneWindow>();
    try {
        Core::Ptr<Model::ModelNode> const root = p_factory ? p_factory(p_content) : Core::Ptr<Model::ModelNode>();
        window->View().SetModel(root);
        _setUp(window->View());
        window->setTitle(TitleOf(*root));
    } catch (std::exception const& error) {
        Refuse(p_restore, error.what());
        return;
    } catch (...) {
        Refuse(p_restore,
            "something was thrown that says nothing of its cause. Derive what your program throws from "
            "std::exception.");
        return;
    }
    double const ratio = std::max(window->devicePixelRatio(), 1.0);
    window->resize(std::max(LeastSide, static_cast<int>(p_size.width / ratio)),
        std::max(LeastSide, static_cast<int>(p_size.height / ratio)));
    SceneWindow* const shown = window.release();
    shown->SetCloseCallback([shown, p_restore] {
        shown->deleteLater(); // harmless for one that is being destroyed
        GiveBack(p_restore);
    });
    std::erase_if(_windows, [](QPointer<SceneWindow> const& p_window) { return p_window.isNull(); });
    _windows.emplace_back(shown);
    shown->show();
}

std::vector<SceneWindow*> PopOutWindows::Windows() const {
    std::vector<SceneWindow*> windows;
    for (QPointer<SceneWindow> const& window : _windows) {
        if (!window.isNull())
            windows.push_back(window.data());
    }
    return windows;
}

} // namespace Qor::Chart::Host
