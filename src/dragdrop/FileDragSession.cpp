#include "dragdrop/FileDragSession.h"

#include "dragdrop/FileDrag.h"
#include "dragdrop/FileDragMime.h"
#include "dragdrop/InAppDropLatch.h"
#include "foundation/MainQueue.h"
#include "platform/Platform.h"
#include "platform/WindowManager.h"
#include "views/FileIcons.h"

#include <QBitmap>
#include <QDrag>
#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <optional>

namespace taliro {

namespace {

constexpr int iconPoints = 48;
constexpr int fanPoints = 4;          // each further icon lies this much right of and below the one before
constexpr std::size_t mostIcons = 12; // more can't be told apart

DragEnd dragEndOf(Qt::DropAction action) {
    switch (action) {
    case Qt::CopyAction:
        return DragEnd::copied;
    case Qt::LinkAction:
        return DragEnd::linked;
    case Qt::MoveAction:
    case Qt::TargetMoveAction:
        return DragEnd::moved;
    case Qt::ActionMask:
    case Qt::IgnoreAction:
        return DragEnd::nothing;
    }
    return DragEnd::nothing;
}

/// The first item's icon in front, the others fanned out behind it.
QPixmap fanOf(std::vector<Url> const& urls, qreal devicePixelRatio) {
    auto const count = std::min(urls.size(), mostIcons);
    auto const side = iconPoints + fanPoints * static_cast<int>(count - 1);
    QPixmap fan(QSize(side, side) * devicePixelRatio);
    fan.setDevicePixelRatio(devicePixelRatio);
    fan.fill(Qt::transparent);
    QPainter painter(&fan);
    for (auto i = count; i-- > 0;) {
        auto const offset = fanPoints * static_cast<int>(i);
        auto const icon = FileIcons::shared().pixmap(urls[i].lastPathComponent(), urls[i].hasDirectoryPath(),
                                                     iconPoints, devicePixelRatio);
        auto const shown = icon.deviceIndependentSize().scaled(iconPoints, iconPoints, Qt::KeepAspectRatio);
        QRectF const box(QPointF(offset, offset), QSizeF(iconPoints, iconPoints));
        painter.drawPixmap(QRectF(box.center() - QPointF(shown.width(), shown.height()) / 2, shown), icon,
                           QRectF(QPointF(), icon.size()));
    }
    return fan;
}

/// Cuts the window that a drag's picture is shown in to the picture's shape, as long as it lives: without a
/// compositor it is an opaque box.
class PictureShape : public QObject {
public:
    explicit PictureShape(QPixmap const& picture) {
        auto const points = picture.deviceIndependentSize().toSize();
        auto const image = picture.toImage().scaled(points, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_shape = QRegion(QBitmap::fromImage(image.createAlphaMask()));
        qGuiApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show && watched->inherits("QShapedPixmapWindow"))
            static_cast<QWindow*>(watched)->setMask(m_shape);
        return false;
    }

private:
    QRegion m_shape;
};

void drag(QWidget& window, Url const& leading, std::vector<Url> urls, Platform& platform) {
    auto* const drag =
        new QDrag(&window); // which outlives the rows: the drag may close the pane it came from
    drag->setPixmap(fanOf(urls, window.devicePixelRatioF()));
    std::optional<PictureShape> shape;
    if (!platform.windowManager.isComposited())
        shape.emplace(drag->pixmap());
    drag->setHotSpot({iconPoints / 2, iconPoints / 2});
    drag->setMimeData(new FileDragMime(std::move(urls), platform));
    InAppDropLatch::armed = false; // by a drag of another program, whose end we don't hear of
    auto const action = drag->exec(Qt::CopyAction | Qt::LinkAction | Qt::MoveAction, Qt::CopyAction);
    fileDragEnded(leading, dragEndOf(action), platform.mainQueue);
}

} // namespace

void startFileDrag(QWidget& from, Url const& leading, std::vector<Url> chosen, Platform& platform) {
    // Not within the event that began it: its receiver may be gone when the drag ends.
    platform.mainQueue.async([window = QPointer(from.window()), leading,
                              urls = draggedUrls(leading, std::move(chosen)), &platform]() mutable {
        if (window && QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
            drag(*window, leading, std::move(urls), platform);
    });
}

} // namespace taliro
