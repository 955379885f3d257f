#include "preferences/HotkeyCaps.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Text.h"
#include "platform/KeyboardLayout.h"

#include <QPainter>

#include <cmath>

namespace taliro {

namespace {

constexpr qreal gap = 4;
constexpr qreal shadow = 1;

} // namespace

HotkeyCaps::HotkeyCaps(KeyboardShortcuts& shortcuts, QWidget* parent)
    : QWidget(parent), m_shortcuts(shortcuts) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_subscriptions.push_back(NotificationCenter::standard().observe(
        KeyboardShortcuts::shortcutByNameDidChange, [this](auto const&) { refresh(); }));
    m_subscriptions.push_back(shortcuts.layout().observeChanges([this] { refresh(); }));
    refresh();
}

void HotkeyCaps::refresh() {
    auto const shortcut = m_shortcuts.getShortcut(togglePicker(m_shortcuts));
    auto const description = shortcut ? m_shortcuts.presentableDescription(*shortcut) : std::string();
    std::vector<KeyCap> caps;
    for (auto const& character : characters(description))
        caps.emplace_back(QString::fromStdString(character));
    if (caps == m_caps)
        return;
    m_caps = std::move(caps);
    auto const readable = QString::fromStdString(description);
    setAccessibleName(readable.isEmpty() ? QString() : tr("Global shortcut %1").arg(readable));
    setToolTip(readable.isEmpty() ? QString() : tr("%1 shows or hides Taliro from anywhere").arg(readable));
    updateGeometry();
    update();
}

QSize HotkeyCaps::sizeHint() const {
    if (m_caps.empty())
        return {0, 0};
    qreal width = -gap;
    for (auto const& cap : m_caps)
        width += cap.width() + gap;
    return {static_cast<int>(std::ceil(width)), static_cast<int>(KeyCap::height + shadow)};
}

void HotkeyCaps::showEvent(QShowEvent* event) {
    refresh();
    QWidget::showEvent(event);
}

void HotkeyCaps::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    qreal left = 0;
    for (auto const& cap : m_caps) {
        cap.paint(painter, {left, 0, cap.width(), KeyCap::height});
        left += cap.width() + gap;
    }
}

} // namespace taliro
