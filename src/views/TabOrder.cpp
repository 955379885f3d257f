#include "views/TabOrder.h"

#include <QWidget>
#include <algorithm>
#include <vector>

namespace taliro {

namespace {

bool isTabStop(QWidget const& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isEnabled() &&
           !widget.focusProxy();
}

/// Line by line: those whose tops lie above the middle of a line's first are in that line.
std::vector<QWidget*> childrenAsRead(QWidget const& parent) {
    auto const top = [](QWidget const* child) { return child->geometry().top(); };
    auto const left = [](QWidget const* child) { return child->geometry().left(); };
    std::vector<QWidget*> children;
    for (auto* child : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (child->isVisible() && !child->isWindow())
            children.push_back(child);
    std::ranges::stable_sort(children, {}, top);
    for (auto line = children.begin(); line != children.end();) {
        auto const middle = (*line)->geometry().center().y();
        auto const end = std::find_if(line, children.end(), [&](auto* child) { return top(child) > middle; });
        std::stable_sort(line, end, [&](auto* a, auto* b) { return left(a) < left(b); });
        line = end == line ? line + 1 : end; // One without a height.
    }
    return children;
}

void collect(QWidget const& parent, std::vector<QWidget*>& stops) {
    for (auto* child : childrenAsRead(parent)) {
        if (isTabStop(*child))
            stops.push_back(child);
        collect(*child, stops);
    }
}

} // namespace

QWidget* nextInTabOrder(QWidget const& window, QWidget const* current, bool forward) {
    std::vector<QWidget*> stops;
    collect(window, stops);
    if (stops.empty())
        return nullptr;
    auto const count = stops.size();
    auto const at = static_cast<std::size_t>(std::ranges::find(stops, current) - stops.begin());
    if (at == count)
        return forward ? stops.front() : stops.back();
    return count == 1 ? nullptr : stops[(at + (forward ? 1 : count - 1)) % count];
}

} // namespace taliro
