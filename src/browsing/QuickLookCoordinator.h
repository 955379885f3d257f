#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <functional>
#include <optional>
#include <string>

namespace taliro {

class BrowserState;

/// What the preview panel shows.
struct QLItem {
    Url url;
    std::string title() const { return url.lastPathComponent(); }
    bool operator==(QLItem const&) const = default;
};

/// The window that previews one item, as the coordinator handles it.
class PreviewPanel {
public:
    virtual ~PreviewPanel() = default;
    virtual bool isVisible() const = 0;
    /// Shows `item`, or nothing, from now on.
    virtual void reloadData(std::optional<QLItem> const& item) = 0;
    /// Makes the panel a child of the browser's visible window, if there is one, so that it stays above and
    /// moves with it; without one it stands alone.
    virtual void attachToBrowserWindow() = 0;
    /// Visible, in front, with the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
    virtual void orderOut() = 0;
};

/// Shows a preview of one item at a time and has it follow the selection.
class QuickLookCoordinator {
public:
    /// `panel` gives the preview panel, made when first needed; null where there is none.
    explicit QuickLookCoordinator(std::function<PreviewPanel*()> panel);
    static QuickLookCoordinator& shared();
    /// Says where `shared` finds its panel; comes before the first toggle.
    static void provide(std::function<PreviewPanel*()> panel);

    /// Hides the panel if it shows `url`, else shows `url` in it.
    void toggle(Url const& url);
    /// Follows this state's selection from now on, as long as the panel is visible.
    void attach(BrowserState& state);

    std::optional<QLItem> const& item() const { return m_item; }

private:
    void selectionChanged(std::optional<Url> const& url);

    std::function<PreviewPanel*()> m_panel;
    PreviewPanel* m_used = nullptr; ///< once shown: following the selection makes no panel
    std::optional<QLItem> m_item;
    Subscription m_cancellable;
    BrowserState const* m_boundState = nullptr; ///< told apart only, never used
};

} // namespace taliro
