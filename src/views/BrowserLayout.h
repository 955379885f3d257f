#pragma once

#include "foundation/Refresher.h"
#include "foundation/Subscription.h"

#include <QWidget>

namespace taliro {

class BrowserState;
class DirectoryWatcher;
class RecentsStore;
class Url;
struct Platform;

/// What the full and the compact layout are alike in: while it can be seen, it has the folder watched and
/// follows its changes, and a key that is nobody's belongs to the rows.
class BrowserLayout : public QWidget {
public:
    BrowserLayout(Platform& platform, BrowserState& state, DirectoryWatcher& watcher, QWidget* parent);

    /// Gives the keyboard to the rows.
    virtual void focusContent() = 0;

protected:
    /// Shows what there is now. Not called while hidden.
    virtual void showRows() = 0;
    virtual bool contentHandlesKey(QKeyEvent const& event) = 0;

    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent*) override { focusContent(); }
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    Platform& m_platform;
    BrowserState& m_state;
    DirectoryWatcher& m_watcher;
    RecentsStore& m_recents;
    Refresher m_refresher; ///< leads to `showRows`; depends on the location, the order and the contents

private:
    void locationChanged(Url const& location);
    void refresh();

    Subscription m_onLocation;
};

} // namespace taliro
