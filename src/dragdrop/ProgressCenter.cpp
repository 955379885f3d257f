#include "dragdrop/ProgressCenter.h"

#include "foundation/Text.h"
#include "platform/Platform.h"

#include <cmath>

namespace taliro {

using namespace std::chrono_literals;

namespace {

constexpr auto shownAfter = 500ms;
/// The rate is that of the time between these two ago and now: long enough to be steady, short enough to be
/// true.
constexpr auto shortestMeasure = 500ms;
constexpr auto longestMeasure = 4s;

std::string counted(std::int64_t count, std::string_view unit) {
    return numberText(count) + " " + std::string(unit) + (count == 1 ? "" : "s") + " left";
}

std::string timeLeftText(std::chrono::seconds left) {
    auto const roundedUp = [&](std::chrono::seconds unit) { return (left + unit - 1s) / unit; };
    if (left < 60s)
        return counted(std::max<std::int64_t>(left.count(), 1), "second");
    if (left < 1h)
        return counted(roundedUp(1min), "minute");
    return counted(roundedUp(1h), "hour");
}

} // namespace

std::optional<double> ProgressCenter::Card::fraction() const {
    if (!bytesTotal || *bytesTotal <= 0)
        return std::nullopt;
    return std::clamp(static_cast<double>(bytesDone) / static_cast<double>(*bytesTotal), 0.0, 1.0);
}

std::optional<std::chrono::seconds> ProgressCenter::Card::timeLeft() const {
    if (!bytesTotal || !bytesPerSecond || *bytesPerSecond < 1 || *bytesTotal <= bytesDone)
        return std::nullopt;
    auto const seconds = static_cast<double>(*bytesTotal - bytesDone) / *bytesPerSecond;
    if (seconds > 100 * 3600)
        return std::nullopt;
    return std::chrono::seconds(std::llround(std::ceil(seconds)));
}

std::string ProgressCenter::Card::detail() const {
    if (isCancelled)
        return "Cancelling…";
    if (bytesTotal && *bytesTotal > 0 && bytesDone >= *bytesTotal)
        return byteCountText(*bytesTotal) + " · Finishing…";
    auto text = byteCountText(bytesDone);
    if (bytesTotal && *bytesTotal > 0)
        text += " of " + byteCountText(*bytesTotal);
    if (bytesPerSecond)
        text += " · " + byteCountText(std::llround(*bytesPerSecond)) + "/s";
    if (auto const left = timeLeft())
        text += " · " + timeLeftText(*left);
    return text;
}

ProgressCenter::Operation::Operation(ProgressCenter& center, std::string title,
                                     std::function<void()> onCancel)
    : m_center(center), m_onCancel(std::move(onCancel)) {
    m_card.id = ++center.m_begun;
    m_card.title = std::move(title);
    m_samples.push_back({center.m_queue.now(), 0});
    m_center.m_operations.push_back(this);
    m_showing = center.m_queue.after(shownAfter, [this] {
        m_isShown = true;
        m_center.publish();
    });
}

ProgressCenter::Operation::~Operation() {
    std::erase(m_center.m_operations, this);
    if (m_isShown)
        m_center.publish();
}

void ProgressCenter::Operation::setTitle(std::string title) {
    m_card.title = std::move(title);
    if (m_isShown)
        m_center.publish();
}

void ProgressCenter::Operation::update(std::int64_t bytesDone, std::optional<std::int64_t> bytesTotal) {
    m_card.bytesDone = bytesDone;
    m_card.bytesTotal = bytesTotal;
    measureRate();
    if (m_isShown)
        m_center.publish();
}

void ProgressCenter::Operation::measureRate() {
    auto const now = m_center.m_queue.now();
    if (m_card.bytesDone < m_samples.back().bytesDone)
        m_samples.clear(); // something began anew
    m_samples.push_back({now, m_card.bytesDone});
    while (m_samples.size() > 2 && now - m_samples[1].time >= longestMeasure)
        m_samples.pop_front();
    auto const& first = m_samples.front();
    auto const measured = now - first.time;
    if (measured < shortestMeasure)
        return;
    m_card.bytesPerSecond = static_cast<double>(m_card.bytesDone - first.bytesDone) /
                            std::chrono::duration<double>(measured).count();
}

ProgressCenter& ProgressCenter::shared() {
    // Never destroyed: its pending work belongs to a queue that goes first.
    static auto& center = *new ProgressCenter(Platform::current().mainQueue);
    return center;
}

std::unique_ptr<ProgressCenter::Operation> ProgressCenter::begin(std::string title,
                                                                 std::function<void()> onCancel) {
    return std::unique_ptr<Operation>(new Operation(*this, std::move(title), std::move(onCancel)));
}

void ProgressCenter::cancel(std::uint64_t id) {
    auto const found = std::ranges::find(m_operations, id, [](Operation* o) { return o->m_card.id; });
    if (found == m_operations.end() || (*found)->m_card.isCancelled)
        return;
    (*found)->m_card.isCancelled = true;
    auto const onCancel = (*found)->m_onCancel; // may end the operation
    publish();
    if (onCancel)
        onCancel();
}

void ProgressCenter::publish() {
    std::vector<Card> shown;
    for (auto const* operation : m_operations)
        if (operation->m_isShown)
            shown.push_back(operation->m_card);
    if (shown != cards.get())
        cards = std::move(shown);
}

} // namespace taliro
