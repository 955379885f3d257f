#include "sidebar/SidebarRow.h"

#include "foundation/Text.h"
#include "views/Drawing.h"
#include "views/Symbols.h"
#include "views/Theme.h"
#include "views/ToolButton.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QToolTip>

namespace taliro {

namespace {
constexpr int padding = 8;
constexpr int spacing = 6;
constexpr int symbolWidth = 16;
} // namespace

SidebarRow::SidebarRow(QWidget* parent) : QAbstractButton(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // A click leaves the keyboard with the files.
    setFocusPolicy(Qt::TabFocus);
}

void SidebarRow::setItem(SidebarItem const& item) {
    m_item = item;
    setText(QString::fromStdString(legible(item.title)).replace(QLatin1Char('&'), QLatin1String("&&")));
    setAccessibleName(QString::fromStdString(legible(item.title)));
    update();
}

void SidebarRow::setCurrent(bool current) {
    if (m_current == current)
        return;
    m_current = current;
    setAccessibleDescription(current ? QStringLiteral("Current folder") : QString());
    if (m_eject)
        m_eject->setTint(current ? &Colors::onAccent : &Colors::text2);
    update();
}

void SidebarRow::setEjectable(std::function<void()> eject) {
    m_eject = new ToolButton("eject.fill", QStringLiteral("Eject"), 10, this);
    m_eject->setFocusPolicy(Qt::TabFocus);
    m_eject->resize(m_eject->sizeHint());
    m_eject->setTint(m_current ? &Colors::onAccent : &Colors::text2);
    connect(m_eject, &QAbstractButton::clicked, this, [eject = std::move(eject)] { eject(); });
    placeEject();
}

QRect SidebarRow::titleRect() const {
    auto const left = padding + symbolWidth + spacing;
    auto const right = m_eject ? m_eject->x() - spacing : width() - padding;
    return {left, 0, right - left, height()};
}

void SidebarRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    auto const& c = colors();
    if (m_current)
        fillRounded(painter, rect(), metrics::radius, c.accent);
    else if (isDown())
        fillRounded(painter, rect(), metrics::radius, c.pressed);
    drawSymbol(painter, QRectF(padding, 0, symbolWidth, height()), m_item.symbol, symbolWidth,
               m_current ? c.onAccent : c.accent);
    auto const font = Theme::current().font(metrics::body);
    auto const title = QFontMetrics(font).elidedText(accessibleName(), Qt::ElideMiddle, titleRect().width());
    painter.setFont(font);
    painter.setPen(m_current ? c.onAccent : c.text1);
    painter.drawText(titleRect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, title);
    if (hasFocus() && m_current) // The ring has the colour of what is under it.
        strokeRounded(painter, rect().adjusted(2, 2, -2, -2), metrics::radius - 2, c.onAccent, 1.5);
    else if (hasFocus())
        drawFocusRing(painter, rect(), metrics::radius);
}

void SidebarRow::resizeEvent(QResizeEvent*) {
    placeEject();
}

void SidebarRow::placeEject() {
    if (m_eject)
        m_eject->move(width() - m_eject->width() - 2, (height() - m_eject->height()) / 2);
}

void SidebarRow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (fillMenu)
        fillMenu(*menu);
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(event->globalPos());
    event->accept();
}

bool SidebarRow::isTitleCut() const {
    return QFontMetrics(Theme::current().font(metrics::body)).horizontalAdvance(accessibleName()) >
           titleRect().width();
}

bool SidebarRow::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && isTitleCut()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), accessibleName(), this);
        return true;
    }
    return QAbstractButton::event(event);
}

} // namespace taliro
