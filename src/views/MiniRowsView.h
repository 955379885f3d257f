#pragma once

#include "views/ItemView.h"

#include <QPixmap>

#include <unordered_map>

namespace taliro {

class InfoPopover;

/// The rows of the compact layout: a small thumbnail, the name, a mark that opens what is known of the item.
class MiniRowsView : public ItemView {
    Q_OBJECT

public:
    MiniRowsView(Platform& platform, BrowserState& state, QWidget* parent = nullptr);

    /// Shows what is known of the item beside its row, or hides it.
    void toggleInfo(Url const& item);

protected:
    QRect cellRect(int row) const override;
    int rowAt(QPoint point) const override;
    int contentHeight() const override;
    std::pair<int, int> rowsBetween(int top, int bottom) const override;
    int scrollStep() const override;
    ColorRole ground() const override { return &Colors::window; }
    void paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) override;
    bool isCut(QRect const& cell, FileEntry const& entry) const override;

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Thumbnail {
        std::optional<Date> modified; ///< of the file that it shows
        QPixmap pixmap;               ///< null until it is there
        bool failed = false;
        Subscription request;
    };
    QRect nameRect(QRect const& cell, FileEntry const& entry) const;
    QRect infoRect(QRect const& cell, FileEntry const& entry) const;
    bool pressInfo(QPoint position);
    void setHovered(std::optional<Url> url);
    void paintThumbnail(QPainter& painter, QRect const& box, FileEntry const& entry);
    Thumbnail const& thumbnail(FileEntry const& entry);
    void finish(Url const& url, std::optional<struct Picture> const& picture);
    void forgetDistant();

    Platform& m_platform;
    std::optional<Url> m_hovered;
    std::unordered_map<Url, Thumbnail> m_thumbnails; ///< of what is in sight, or nearly
    InfoPopover* m_info = nullptr;
};

} // namespace taliro
