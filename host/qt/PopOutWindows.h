#pragma once

#include "host/qt/Export.h"
#include "render/events/EventSink.h"

#include <QPointer>

#include <functional>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {

class SceneView;
class SceneWindow;

/// Opens a window for each content that leaves its pane. A window that is closed gives its content back; those that are
/// still open when this ends are closed first.
class QOR_HOSTQT_API PopOutWindows : public Render::PopOutHost {
public:
    /// @param p_setUp  prepares the view of a new window, which has its content by then
    explicit PopOutWindows(std::function<void(SceneView&)> p_setUp) : _setUp(std::move(p_setUp)) {}
    ~PopOutWindows() override;
    PopOutWindows(PopOutWindows const&) = delete;
    PopOutWindows& operator=(PopOutWindows const&) = delete;

    /// Content that cannot be shown is given back at once, and the log says why.
    void PopOut(Factory const& p_factory, Types::Size const& p_size, Restore const& p_restore,
        Content const& p_content) override;

    /// The windows that are open.
    std::vector<SceneWindow*> Windows() const;
    void Close();

private:
    std::function<void(SceneView&)> _setUp;
    std::vector<QPointer<SceneWindow>> _windows;
};

} // namespace Qor::Chart::Host
