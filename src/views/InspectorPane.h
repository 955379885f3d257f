#pragma once

#include "foundation/Refresher.h"
#include "platform/FileManager.h"

#include <QScrollArea>

#include <optional>

class QLabel;

namespace taliro {

class BrowserState;
class FactRows;
class ThumbnailView;
class WrappedLabel;
struct Platform;

/// What is selected: a large preview, its name and a few facts.
class InspectorPane : public QScrollArea {
    Q_OBJECT

public:
    InspectorPane(Platform& platform, BrowserState& state, QWidget* parent = nullptr);

    ThumbnailView& preview() const { return *m_preview; }
    QSize sizeHint() const override { return {210, 300}; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void refresh();

    Platform& m_platform;
    BrowserState& m_state;
    QLabel* m_none;
    ThumbnailView* m_preview;
    WrappedLabel* m_name;
    FactRows* m_facts;
    std::optional<FileAttributes> m_shown;
    Refresher m_refresher; ///< one look at the last of many quick selections
};

} // namespace taliro
