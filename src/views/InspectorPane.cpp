#include "views/InspectorPane.h"

#include "browsing/BrowserState.h"
#include "browsing/DirectoryWatcher.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "views/FactRows.h"
#include "views/Names.h"
#include "views/ThumbnailView.h"
#include "views/WrappedLabel.h"

#include <QLabel>
#include <QVBoxLayout>

namespace taliro {

InspectorPane::InspectorPane(Platform& platform, BrowserState& state, QWidget* parent)
    : QScrollArea(parent),
      m_platform(platform),
      m_state(state),
      m_refresher(platform.mainQueue, [this] { refresh(); }) {
    auto const& theme = Theme::current();
    auto* const content = new QWidget;
    m_preview = new ThumbnailView(platform, content);
    m_name = new WrappedLabel(theme.font(metrics::list, QFont::DemiBold), &Colors::text1, 4, content);
    m_facts = new FactRows(content);
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(12, 12, 12, 12);
    column->setSpacing(0);
    column->addWidget(m_preview);
    column->addSpacing(10);
    column->addWidget(m_name);
    column->addSpacing(8);
    column->addWidget(m_facts);
    column->addStretch();
    content->setAutoFillBackground(false);

    m_none = new QLabel(tr("No Selection"), this);
    m_none->setAlignment(Qt::AlignCenter);
    m_none->setFont(theme.font(metrics::small));
    m_none->setForegroundRole(QPalette::PlaceholderText);

    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(tr("Inspector"));
    m_refresher.dependOn(state.selection);
    m_refresher.dependOn(DirectoryWatcher::shared().tick);
    refresh();
}

void InspectorPane::refresh() {
    if (!isVisible())
        return;
    auto const selection = m_state.selection.get();
    widget()->setVisible(selection.has_value());
    m_none->setVisible(!selection);
    auto const attributes = selection ? m_platform.fileManager.attributes(*selection) : std::nullopt;
    // Most changes in the folder are not of this item.
    if (m_preview->url() == selection && m_shown == attributes && attributes)
        return;
    m_shown = attributes;
    m_preview->setUrl(selection);
    if (!selection)
        return;
    m_name->setText(shownName(selection->lastPathComponent()));
    m_facts->setFacts(factsOf(m_platform, *selection));
}

void InspectorPane::showEvent(QShowEvent* event) {
    QScrollArea::showEvent(event);
    refresh();
}

void InspectorPane::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    m_none->setGeometry(viewport()->geometry());
}

} // namespace taliro
