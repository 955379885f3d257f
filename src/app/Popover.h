#pragma once

#include "app/FloatingWindow.h"
#include "app/ResizeHandleNSView.h"

namespace taliro {

class AppSettings;
class ResizeContainerViewController;
class RootView;

/// The browser hanging from the status item. It comes and goes as it is told, never by itself.
class Popover : public FloatingWindow {
    Q_OBJECT

public:
    Popover(Platform& platform, AppSettings& settings);

    void setContent(RootView* content);
    void setHandlesVisible(bool visible);

    /// At `item`, or in the screen's corner where its place isn't known; with the keyboard, if `focused`.
    void showAt(std::optional<Rect> item, bool focused);
    /// Takes the size that the settings ask for, as far as the limits allow.
    void updateSize();
    /// Hangs from `item` anew, if it is shown.
    void anchor(std::optional<Rect> item);

Q_SIGNALS:
    void didShow();
    void didClose();

protected:
    void hideEvent(QHideEvent*) override;
    void focusContent() override;

private:
    void resizeBy(ResizeCorner corner, QPoint by);
    void place();
    void pointArrow();

    AppSettings& m_settings;
    ResizeContainerViewController* m_container;
    RootView* m_content = nullptr;
    std::optional<Rect> m_item;
};

} // namespace taliro
