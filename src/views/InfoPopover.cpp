#include "views/InfoPopover.h"

#include "platform/Platform.h"
#include "platform/WindowManager.h"
#include "views/Drawing.h"
#include "views/FactRows.h"
#include "views/Names.h"
#include "views/ThumbnailView.h"
#include "views/WrappedLabel.h"

#include <QDateTime>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

namespace taliro {

namespace {
constexpr QSize previewSize(200, 140);
constexpr int margin = 12;
/// A click on the mark that opened the window closes it by taking the keyboard, before it is heard as a
/// click.
constexpr qint64 sameClick = 200; ///< milliseconds
} // namespace

InfoPopover::InfoPopover(Platform& platform, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), m_platform(platform) {
    m_preview = new ThumbnailView(platform, this);
    m_preview->setFixedSize(previewSize);
    m_name =
        new WrappedLabel(Theme::current().font(metrics::small, QFont::DemiBold), &Colors::text1, 3, this);
    m_facts = new FactRows(this);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(8);
    column->addWidget(m_preview, 0, Qt::AlignHCenter);
    column->addWidget(m_name);
    column->addWidget(m_facts);
    setFixedWidth(previewSize.width() + 2 * margin);
    setWindowTitle(tr("Information"));
    setWindowRole(QStringLiteral("information"));
    setAccessibleName(windowTitle());
}

void InfoPopover::toggle(Url const& item, QRect const& anchor) {
    bool const justClosed = QDateTime::currentMSecsSinceEpoch() - m_hiddenAt < sameClick;
    if (m_lastItem == item && (isVisible() || justClosed)) {
        hide();
        return;
    }
    m_lastItem = item;
    m_preview->setUrl(item);
    m_name->setText(shownName(item.lastPathComponent()));
    m_facts->setFacts(factsOf(m_platform, item));
    place(anchor);
    show();
    activateWindow();
}

void InfoPopover::place(QRect const& anchor) {
    layout()->activate();
    auto const size = QSize(width(), layout()->heightForWidth(width()));
    resize(size);
    auto const* on = QGuiApplication::screenAt(anchor.center());
    auto const room = (on ? on : screen())->availableGeometry();
    QRect frame(QPoint(anchor.right() + 6, anchor.center().y() - 30), size);
    if (frame.right() > room.right())
        frame.moveRight(anchor.left() - 6);
    frame.moveLeft(std::clamp(frame.left(), room.left(), std::max(room.left(), room.right() - size.width())));
    frame.moveTop(std::clamp(frame.top(), room.top(), std::max(room.top(), room.bottom() - size.height())));
    setGeometry(frame);
}

void InfoPopover::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space && !event->matches(QKeySequence::Cancel)) {
        QWidget::keyPressEvent(event);
        return;
    }
    hide();
    m_platform.windowManager.focus(parentWidget()->window()->winId());
}

bool InfoPopover::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate)
        hide();
    return QWidget::event(event);
}

void InfoPopover::hideEvent(QHideEvent* event) {
    m_hiddenAt = QDateTime::currentMSecsSinceEpoch();
    QWidget::hideEvent(event);
}

void InfoPopover::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colors().window);
    strokeRounded(painter, rect(), 0, colors().controlBorder);
}

} // namespace taliro
