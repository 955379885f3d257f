#pragma once

#include "app/AppSettings.h"
#include "browsing/BrowserState.h"
#include "foundation/Refresher.h"

#include <QWidget>

namespace taliro {

class SearchBox;
class SegmentedControl;
class ToolButton;
struct Platform;

/// Back and forward, view mode, sort menu, search and the inspector's switch.
class BrowserToolbar : public QWidget {
    Q_OBJECT

public:
    BrowserToolbar(Platform& platform, BrowserState& state, AppSettings& settings,
                   Published<bool>& showInspector, QWidget* parent = nullptr);

Q_SIGNALS:
    /// The keyboard belongs to nobody in particular.
    void focusFreed();

private:
    void buildNavigation(QLayout& row);
    void buildViewModes(QLayout& row);
    void buildSearch(QLayout& row);
    void buildInspectorToggle(QLayout& row);
    void refresh();

    BrowserState& m_state;
    AppSettings& m_settings;
    Published<bool>& m_showInspector;
    Refresher m_refresher;
    ToolButton* m_back = nullptr;
    ToolButton* m_forward = nullptr;
    SegmentedControl* m_viewModes = nullptr;
    SearchBox* m_search = nullptr;
    ToolButton* m_inspectorToggle = nullptr;
};

} // namespace taliro
