#pragma once

#include "foundation/Refresher.h"

#include <QWidget>

#include <vector>

class QStackedLayout;

namespace taliro {

class AppSettings;
class BrowserState;
class DirectoryWatcher;
struct Platform;

/// What both the popover and the panel show: a title area, the browser in its full or its compact layout, and
/// over them the messages.
class RootView : public QWidget {
    Q_OBJECT

public:
    RootView(Platform& platform, BrowserState& browser, DirectoryWatcher& watcher, AppSettings& settings);

    /// Gives the keyboard to the rows of files.
    void focusBrowser();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeTitle();
    QWidget* makeFull();
    QWidget* makeMini();
    void showTitle();
    void showBrowser();
    void crossFadeFrom(QPixmap const& before);

    Platform& m_platform;
    BrowserState& m_browser;
    DirectoryWatcher& m_watcher;
    AppSettings& m_settings;
    QWidget* m_title;
    QWidget* m_strip;
    QStackedLayout* m_stack;
    QWidget* m_full = nullptr; ///< made when first shown, as is the compact one
    QWidget* m_mini = nullptr;
    QWidget* m_shown = nullptr;
    Refresher m_refresher;
};

} // namespace taliro
