#include "app/Popover.h"

#include "app/AppSettings.h"
#include "app/ResizeContainerViewController.h"
#include "app/RootView.h"
#include "platform/Platform.h"

#include <QVBoxLayout>

#include <cmath>

namespace taliro {

namespace {

QSize sizeOf(Size size) {
    return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

} // namespace

Popover::Popover(Platform& platform, AppSettings& settings)
    : FloatingWindow(platform, QStringLiteral("Taliro")),
      m_settings(settings),
      m_container(new ResizeContainerViewController(this)) {
    setWindowRole(QStringLiteral("popover"));
    rows()->addWidget(m_container);
    connect(m_container, &ResizeContainerViewController::handleDragged, this, &Popover::resizeBy);
    setFrameLimits(sizeOf(Placement::minimumSize), sizeOf(Placement::maximumSize));
}

void Popover::setContent(RootView* content) {
    m_content = content;
    m_container->host(content);
}

void Popover::setHandlesVisible(bool visible) {
    m_container->setHandlesVisible(visible);
}

void Popover::focusContent() {
    m_content->focusBrowser();
}

void Popover::showAt(std::optional<Rect> item, bool focused) {
    m_item = item;
    place();
    present(focused);
    Q_EMIT didShow();
}

void Popover::place() {
    auto const size = Placement::clampedSize({m_settings.popoverWidth, m_settings.popoverHeight});
    auto const hanging = Placement::popoverFrame(platform().screens.all(), m_item, size);
    setArrow(hanging.arrow, static_cast<int>(hanging.arrowX));
    setFrame({static_cast<int>(hanging.frame.x), static_cast<int>(hanging.frame.y),
              static_cast<int>(hanging.frame.width), static_cast<int>(hanging.frame.height)});
}

void Popover::anchor(std::optional<Rect> item) {
    m_item = item;
    if (isVisible())
        place();
}

void Popover::updateSize() {
    auto const size = sizeOf(Placement::clampedSize({m_settings.popoverWidth, m_settings.popoverHeight}));
    if (isVisible() && size != frame().size())
        setFrame({frame().topLeft(), size});
}

/// The edges away from the handle stay where they are.
void Popover::resizeBy(ResizeCorner corner, QPoint by) {
    bool const right = corner == ResizeCorner::bottomRight;
    auto const size = Placement::clampedSize(
        {m_settings.popoverWidth + (right ? by.x() : -by.x()), m_settings.popoverHeight + by.y()});
    auto changed = frame();
    auto const points = sizeOf(size);
    if (!right)
        changed.setLeft(changed.right() + 1 - points.width());
    changed.setSize(points);
    setFrame(changed);
    m_settings.setPopoverWidth(size.width);
    m_settings.setPopoverHeight(size.height);
    if (m_item)
        pointArrow();
}

/// Keeps the arrow at the item.
void Popover::pointArrow() {
    setArrow(arrowEdge(), static_cast<int>(Placement::arrowX(m_item->midX() - frame().x(), frame().width())));
}

void Popover::hideEvent(QHideEvent* event) {
    FloatingWindow::hideEvent(event);
    Q_EMIT didClose();
}

} // namespace taliro
