#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace taliro {

struct Platform;

/// A card with a large thumbnail of one file: turning dots until it is there, the file's icon if it never
/// will.
class ThumbnailView : public QWidget {
    Q_OBJECT

public:
    explicit ThumbnailView(Platform& platform, QWidget* parent = nullptr);

    /// Asks for the thumbnail anew, also where `url` is the same.
    void setUrl(std::optional<Url> url);
    std::optional<Url> const& url() const { return m_url; }

    /// Without the card around it.
    void setBare(bool bare) { m_bare = bare; }

    QSize sizeHint() const override { return {200, 170}; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void finish(QImage image);
    void drawDots(QPainter& painter) const;

    Platform& m_platform;
    std::optional<Url> m_url;
    bool m_bare = false;
    bool m_isDirectory = false;
    QImage m_image;
    bool m_failed = false;
    Subscription m_request;
    QTimer m_turning;
    int m_turn = -1; ///< -1: not long enough under way to say so
};

} // namespace taliro
