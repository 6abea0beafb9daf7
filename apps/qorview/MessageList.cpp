#include "apps/qorview/MessageList.h"

#include <QCloseEvent>
#include <QListWidget>

#include <algorithm>
#include <vector>

namespace Qor::Chart::QorView {

namespace {

constexpr int MostLines = 200;

} // namespace

MessageList::MessageList(QWidget* p_parent) : QDockWidget("Messages", p_parent), _list(new QListWidget(this)) {
    setObjectName("messages");
    _list->setWordWrap(true);
    _list->setTextElideMode(::Qt::ElideNone);
    _list->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    setWidget(_list);
    hide();
}

void MessageList::Show(std::string const& p_sentence) {
    QString const text = QString::fromStdString(p_sentence);
    for (QListWidgetItem* const same : _list->findItems(text, ::Qt::MatchExactly))
        delete same;
    _list->insertItem(0, text);
    while (_list->count() > MostLines)
        delete _list->takeItem(_list->count() - 1);
    _list->scrollToTop();
    show();
}

void MessageList::Follow(Host::EventDispatcher const& p_dispatcher, std::uint64_t& p_taken) {
    std::uint64_t const count = p_dispatcher.ReportCount();
    if (count == p_taken)
        return;
    std::vector<Host::Report> const reports = p_dispatcher.Reports();
    std::uint64_t const fresh = std::min<std::uint64_t>({count - p_taken, reports.size(), MostLines});
    p_taken = count;
    for (std::size_t i = reports.size() - fresh; i < reports.size(); ++i)
        Show(reports[i].text);
}

void MessageList::closeEvent(QCloseEvent* p_event) {
    _list->clear();
    QDockWidget::closeEvent(p_event);
}

} // namespace Qor::Chart::QorView
