#include "views/BrowserToolbar.h"

#include "platform/Platform.h"
#include "views/Commands.h"
#include "views/NoAutoFocusSearchField.h"
#include "views/SegmentedControl.h"
#include "views/SortMenuButton.h"
#include "views/ToolButton.h"

#include <QHBoxLayout>

namespace taliro {

namespace {

constexpr int toolbarHeight = 40;
constexpr int spacing = 10;

} // namespace

BrowserToolbar::BrowserToolbar(Platform& platform, BrowserState& state, AppSettings& settings,
                               Published<bool>& showInspector, QWidget* parent)
    : QWidget(parent),
      m_state(state),
      m_settings(settings),
      m_showInspector(showInspector),
      m_refresher(platform.mainQueue, [this] { refresh(); }) {
    setFixedHeight(toolbarHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(spacing, 0, spacing, 0);
    row->setSpacing(spacing);
    buildNavigation(*row);
    buildViewModes(*row);
    row->addWidget(new SortMenuButton(state, metrics::controlHeight, this));
    row->addStretch(1);
    buildSearch(*row);
    buildInspectorToggle(*row);

    m_refresher.dependOn(state.currentURL);
    m_refresher.dependOn(state.viewMode);
    m_refresher.dependOn(settings.searchHidden);
    m_refresher.dependOn(showInspector);
    refresh();
}

void BrowserToolbar::buildNavigation(QLayout& row) {
    auto* group = new ButtonGroup(tr("History"), this);
    m_back = new ToolButton("chevron.left", tr("Back"), 13);
    m_forward = new ToolButton("chevron.right", tr("Forward"), 13);
    for (auto* button : {m_back, m_forward}) {
        button->setTint(&Colors::text1);
        group->add(button);
    }
    row.addWidget(group);
    connect(m_back, &QToolButton::clicked, this, [this] { m_state.goBack(); });
    connect(m_forward, &QToolButton::clicked, this, [this] { m_state.goForward(); });
    addCommand(*this, tr("Back"), QStringLiteral("["), [this] { m_state.goBack(); });
    addCommand(*this, tr("Forward"), QStringLiteral("]"), [this] { m_state.goForward(); });
}

void BrowserToolbar::buildViewModes(QLayout& row) {
    m_viewModes = new SegmentedControl(tr("View"), this);
    m_viewModes->addSegment("square.grid.2x2", tr("Icons"));
    m_viewModes->addSegment("list.bullet", tr("List"));
    m_viewModes->addSegment("rectangle.split.3x1", tr("Columns"));
    row.addWidget(m_viewModes);
    auto const choose = [this](int index) {
        m_state.viewMode = allViewModes[static_cast<std::size_t>(index)];
    };
    connect(m_viewModes, &SegmentedControl::chosen, this, choose);
    addCommand(*this, tr("Icons"), QStringLiteral("1"), [choose] { choose(0); });
    addCommand(*this, tr("List"), QStringLiteral("2"), [choose] { choose(1); });
    addCommand(*this, tr("Columns"), QStringLiteral("3"), [choose] { choose(2); });
}

void BrowserToolbar::buildSearch(QLayout& row) {
    m_search = new SearchBox(m_state.searchText, this);
    row.addWidget(m_search);
    connect(m_search->field(), &NoAutoFocusSearchField::gaveUpFocus, this, &BrowserToolbar::focusFreed);
    addCommand(*this, tr("Find"), QStringLiteral("F"), [this] {
        if (m_search->isVisible())
            m_search->field()->takeFocus();
    });
}

void BrowserToolbar::buildInspectorToggle(QLayout& row) {
    m_inspectorToggle = new ToolButton("sidebar.right", QString(), 16, this);
    row.addWidget(m_inspectorToggle);
    connect(m_inspectorToggle, &QToolButton::clicked, this,
            [this] { m_showInspector = !m_showInspector.get(); });
}

void BrowserToolbar::refresh() {
    m_back->setEnabled(!m_state.backStack().empty());
    m_forward->setEnabled(!m_state.forwardStack().empty());
    m_viewModes->setCurrent(static_cast<int>(m_state.viewMode.get()));
    m_search->setVisible(!m_settings.searchHidden.get());
    m_inspectorToggle->setLabel(m_showInspector.get() ? tr("Hide info for selected item")
                                                      : tr("Show info for selected item"));
}

} // namespace taliro
