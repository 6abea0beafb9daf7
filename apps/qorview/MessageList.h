#pragma once

#include "host/EventDispatcher.h"

#include <QDockWidget>

#include <cstdint>
#include <string>

class QListWidget;

namespace Qor::Chart::QorView {

/// A list of what went wrong, the latest first. It opens by itself when something new comes; closing it empties it.
class MessageList : public QDockWidget {
public:
    explicit MessageList(QWidget* p_parent);

    void Show(std::string const& p_sentence);
    /// Takes over what nodes have reported since the last call.
    /// @param p_taken  how many reports of this dispatcher were taken over; 0 at first
    void Follow(Host::EventDispatcher const& p_dispatcher, std::uint64_t& p_taken);

protected:
    void closeEvent(QCloseEvent* p_event) override;

private:
    QListWidget* _list; ///< a child
};

} // namespace Qor::Chart::QorView
