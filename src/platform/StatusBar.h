#pragma once

#include "platform/Screens.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

struct StatusMenuEntry {
    std::string title; ///< empty for a separator
    std::string keyEquivalent;
    std::function<void()> action;
};

/// The program's item in the desktop's tray or, where there is no tray, in a strip of our own at the screen's
/// top right.
class StatusItem {
public:
    virtual ~StatusItem() = default;
    virtual void setVisible(bool visible) = 0;
    /// Where the item is on the screen, as far as the tray tells; nothing where it doesn't.
    virtual std::optional<Rect> frame() = 0;
    /// Whether the point, in screen coordinates, is on the item.
    virtual bool contains(Point point) = 0;

    std::function<void()> onLeftClick;
    std::function<void()> onRightClick;
    /// A drag of files, links or images came over the item; it is never dropped there.
    std::function<void()> onDragEntered;
    /// The item got its place, or another one.
    std::function<void()> onPlaced;
    /// The item's menu; the entries' actions run after it closed. A tray that shows menus itself does so on a
    /// right click, and `onRightClick` is not called.
    virtual void setMenu(std::vector<StatusMenuEntry> const& entries) = 0;
    /// Opens the menu at the item.
    virtual void showMenu() = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;
    /// `autosaveName` names the item to the desktop; `description` is its accessible name and tooltip.
    virtual std::unique_ptr<StatusItem> makeItem(std::string const& autosaveName,
                                                 std::string const& symbolName,
                                                 std::string const& description) = 0;
};

} // namespace taliro
