#pragma once

#include "foundation/MainQueue.h"
#include "foundation/Url.h"

#include <functional>
#include <optional>

namespace taliro {

/// Whether files can be dropped on `folder` at all: a folder of the file system, none of our own places.
bool isDropTarget(Url const& folder);

/// A folder row while a drag rests on it. After 0.75 s the row is the drop's target; after 0.5 s more (at
/// once, where it has a single stage) it blinks for 0.2 s and opens.
class SpringLoad {
public:
    enum class Stage { idle, selected };

    struct Row {
        Url folder;
        bool singleStage = false;
        std::function<void(bool)> parentTargeting; ///< shows the listing's own frame; may be empty
        std::function<void()> onOpen;
        std::function<void()> onLookChanged; ///< may be empty
    };

    explicit SpringLoad(MainQueue& queue) : m_queue(queue) {}

    /// The drag came over `row`. Does nothing for a row that can't take drops.
    void enter(Row row);
    void exit();
    /// The drag was let go: where the drop goes, nothing where it is refused. Before the first stage has
    /// passed that is `currentFolder`, the one being shown.
    std::optional<Url> drop(Url const& currentFolder);

    bool isEntered() const { return m_row.has_value(); }
    bool hovering() const { return m_hovering; }
    Stage stage() const { return m_stage; }
    bool blinking() const { return m_blinking; }
    /// How strongly the accent colour fills and outlines the row: 0 to 1.
    double fillOpacity() const;
    double strokeOpacity() const;

private:
    void startStage1();
    void startStage2();
    void blinkThenOpen();
    void open();
    void reset();
    void setBlinking(bool blinking);
    void targetParent(bool targeted);
    void lookChanged();

    MainQueue& m_queue;
    std::optional<Row> m_row;
    bool m_hovering = false;
    Stage m_stage = Stage::idle;
    bool m_blinking = false;
    WorkItem m_stage1Token;
    WorkItem m_stage2Token;
    WorkItem m_blinkToken;
};

} // namespace taliro
