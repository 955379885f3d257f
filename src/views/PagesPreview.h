#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <QAbstractScrollArea>
#include <QImage>
#include <QTimer>

#include <map>

namespace taliro {

struct Platform;

/// The pages of a document, one below the other. Pages are drawn as they come into sight.
class PagesPreview : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit PagesPreview(Platform& platform, QWidget* parent = nullptr);

    void setDocument(Url document);
    void clear();

Q_SIGNALS:
    /// `page` is in the middle of the view; both count from 1.
    void pageShown(int page, int pages);
    /// Not even the first page can be drawn.
    void failed();

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Page {
        QImage image;
        int drawnFor = 0; ///< pixels wide that were asked for
        bool failed = false;
        Subscription request;
    };
    int pageWidth() const;
    int pageHeight() const;
    QRect pageRect(int page) const;
    std::pair<int, int> visiblePages() const; ///< first and last
    void updateBars();
    void requestVisible();
    void finish(int page, std::optional<struct PagePicture> const& picture, int width);

    Platform& m_platform;
    std::optional<Url> m_document;
    int m_pages = 0;               ///< 0: not known yet
    qreal m_heightOfWidth = 1.414; ///< of the first page
    std::map<int, Page> m_kept;
    QTimer m_settled;
};

} // namespace taliro
