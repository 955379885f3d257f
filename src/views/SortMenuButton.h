#pragma once

#include "browsing/BrowserState.h"
#include "views/ToolButton.h"

namespace taliro {

/// Opens a menu of sort keys; the current one shows its direction, and choosing it turns the direction round.
class SortMenuButton : public ToolButton {
public:
    SortMenuButton(BrowserState& state, int height, QWidget* parent = nullptr);

private:
    void fillMenu();
    void choose(QString const& rawValue);

    BrowserState& m_state;
};

} // namespace taliro
