#pragma once

#include "browsing/QuickLookCoordinator.h"
#include "foundation/Subscription.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QScrollBar;
class QStackedWidget;

namespace taliro {

class ImagePreview;
class MediaPreview;
class PagesPreview;
class PushButton;
class SummaryPreview;
class TextPreviewPane;
class ToolButton;
class WrappedLabel;
struct Platform;

/// The window that previews one file: pictures, pages, text, sounds and films, and of everything else
/// the facts. Arrow keys
/// reach the browser behind it, so that the preview can be led through a folder.
class QuickLookWindow : public QWidget, public PreviewPanel {
    Q_OBJECT

public:
    explicit QuickLookWindow(Platform& platform);

    bool isVisible() const override { return QWidget::isVisible(); }
    void reloadData(std::optional<QLItem> const& item) override;
    void attachToBrowserWindow() override;
    void makeKeyAndOrderFront() override;
    void orderOut() override { hide(); }

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeTitle();
    void makeContents();
    void clearContents();
    void showContents(Url const& item);
    void showImage(Url const& item);
    void requestImage(QSize pixels);
    void showSummary(Url const& item, bool holdsOthers);
    void setSubtitle(QString const& text);

    QSize preferredSize() const;
    void placeOverBrowser();
    Qt::Edges edgesAt(QPoint position) const;
    bool forwardToBrowser(QKeyEvent const& event);
    bool scroll(QKeyEvent const& event);
    bool zoom(QKeyEvent const& event);
    bool play(QKeyEvent const& event);
    QScrollBar* scrollBar() const;

    Platform& m_platform;
    std::optional<Url> m_item;
    QPointer<QWidget> m_browser;
    QPoint m_browserAt;

    QWidget* m_bar;
    ToolButton* m_close;
    WrappedLabel* m_title;
    QLabel* m_subtitle;
    PushButton* m_open;
    QStackedWidget* m_contents;
    QWidget* m_nothing;
    ImagePreview* m_image;
    PagesPreview* m_pages;
    TextPreviewPane* m_text;
    MediaPreview* m_media;
    SummaryPreview* m_summary;

    Subscription m_thumbnailRequest;
    Subscription m_imageRequest;
    QSize m_requestedPixels;
};

} // namespace taliro
