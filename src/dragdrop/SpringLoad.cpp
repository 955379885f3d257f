#include "dragdrop/SpringLoad.h"

namespace taliro {

using namespace std::chrono_literals;

bool isDropTarget(Url const& folder) {
    return folder.scheme() != "taliro" && folder.hasDirectoryPath();
}

void SpringLoad::enter(Row row) {
    if (m_row)
        exit();
    if (!isDropTarget(row.folder))
        return;
    m_row = std::move(row);
    targetParent(true);
    startStage1();
}

void SpringLoad::exit() {
    targetParent(false);
    reset();
    m_row.reset();
}

std::optional<Url> SpringLoad::drop(Url const& currentFolder) {
    if (!m_row)
        return std::nullopt;
    auto const target = m_hovering || m_stage == Stage::selected ? m_row->folder : currentFolder;
    exit();
    return isDropTarget(target) ? std::optional(target) : std::nullopt;
}

void SpringLoad::startStage1() {
    reset();
    m_stage1Token = m_queue.after(750ms, [this] {
        m_hovering = true;
        if (m_row->singleStage) {
            blinkThenOpen();
        } else {
            m_stage = Stage::selected;
            startStage2();
        }
        lookChanged();
    });
}

void SpringLoad::startStage2() {
    m_stage2Token = m_queue.after(500ms, [this] { blinkThenOpen(); });
}

void SpringLoad::blinkThenOpen() {
    setBlinking(true);
    m_blinkToken = m_queue.after(100ms, [this] {
        setBlinking(false);
        m_blinkToken = m_queue.after(100ms, [this] { open(); });
    });
}

void SpringLoad::open() {
    auto const onOpen = m_row->onOpen; // Opening may replace the row, or destroy this.
    reset();
    if (onOpen)
        onOpen();
}

void SpringLoad::reset() {
    m_stage1Token.cancel();
    m_stage2Token.cancel();
    m_blinkToken.cancel();
    m_stage = Stage::idle;
    m_blinking = false;
    m_hovering = false;
    lookChanged();
}

double SpringLoad::fillOpacity() const {
    if (m_stage == Stage::selected)
        return 0.15;
    if (!m_hovering)
        return 0;
    return m_blinking ? 0.02 : 0.08;
}

double SpringLoad::strokeOpacity() const {
    if (m_stage != Stage::selected)
        return 0;
    return m_blinking ? 0.2 : 1.0;
}

void SpringLoad::setBlinking(bool blinking) {
    m_blinking = blinking;
    lookChanged();
}

void SpringLoad::targetParent(bool targeted) {
    if (m_row && m_row->parentTargeting)
        m_row->parentTargeting(targeted);
}

void SpringLoad::lookChanged() {
    if (m_row && m_row->onLookChanged)
        m_row->onLookChanged();
}

} // namespace taliro
