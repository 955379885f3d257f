#include "platform/linux/player/Player.h"

#include "platform/linux/Socket.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <glib-unix.h>
#include <gst/video/video.h>

namespace taliro {

namespace {

constexpr guint reportEvery = 150; ///< milliseconds
constexpr guint mostWaitingFrames = 1;

/// The pixels as the rest of the program has them: one number each, 0xAARRGGBB.
constexpr char const* pixelFormat = G_BYTE_ORDER == G_LITTLE_ENDIAN ? "BGRA" : "ARGB";

// Of what a playbin can do: neither subtitles, which would take fonts, nor moving patterns for music.
constexpr guint playVideo = 1U << 0U;
constexpr guint playAudio = 1U << 1U;
constexpr guint softVolume = 1U << 4U;
constexpr guint deinterlace = 1U << 9U;

std::int64_t toMilliseconds(gint64 nanoseconds) {
    return nanoseconds / GST_MSECOND;
}

/// Turns pictures upright as the camera noted; nothing where the system has no means.
GstElement* makeTurner() {
    auto* const turner = gst_element_factory_make("videoflip", nullptr);
    if (turner)
        gst_util_set_object_arg(G_OBJECT(turner), "video-direction", "auto");
    return turner;
}

} // namespace

Player::Player(int connection, std::string const& path, int width, int height)
    : m_connection(connection),
      m_loop(g_main_loop_new(nullptr, FALSE), &g_main_loop_unref),
      m_pipeline(gst_element_factory_make("playbin", nullptr)) {
    if (!m_pipeline)
        return;
    gst_object_ref_sink(m_pipeline.get());
    std::unique_ptr<char, decltype(&g_free)> const uri(g_filename_to_uri(path.c_str(), nullptr, nullptr),
                                                       &g_free);
    g_object_set(m_pipeline.get(), "uri", uri.get(), "flags",
                 playVideo | playAudio | softVolume | deinterlace, "video-sink", makeFilmSink(width, height),
                 nullptr);
    if (auto* const turner = makeTurner())
        g_object_set(m_pipeline.get(), "video-filter", turner, nullptr);
}

Player::~Player() {
    if (m_pipeline)
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

GstElement* Player::makeFilmSink(int width, int height) {
    auto* const sink = gst_element_factory_make("appsink", nullptr);
    if (!sink)
        return nullptr;
    auto* const caps = gst_caps_new_simple(
        "video/x-raw", "format", G_TYPE_STRING, pixelFormat, "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1,
        "width", GST_TYPE_INT_RANGE, 1, width, "height", GST_TYPE_INT_RANGE, 1, height, nullptr);
    g_object_set(sink, "caps", caps, "max-buffers", mostWaitingFrames, "drop", TRUE, nullptr);
    gst_caps_unref(caps);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = [](GstAppSink* from, gpointer self) {
        return static_cast<Player*>(self)->sendFrame(gst_app_sink_pull_preroll(from)) ? GST_FLOW_OK
                                                                                      : GST_FLOW_EOS;
    };
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        return static_cast<Player*>(self)->sendFrame(gst_app_sink_pull_sample(from)) ? GST_FLOW_OK
                                                                                     : GST_FLOW_EOS;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    return sink;
}

void Player::run() {
    if (!m_pipeline) {
        fail();
        return;
    }
    auto* const bus = gst_element_get_bus(m_pipeline.get());
    gst_bus_add_watch(
        bus,
        [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
            static_cast<Player*>(self)->hear(*message);
            return G_SOURCE_CONTINUE;
        },
        this);
    gst_object_unref(bus);
    g_unix_fd_add(
        m_connection, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR),
        [](gint, GIOCondition, gpointer self) -> gboolean {
            auto& player = *static_cast<Player*>(self);
            if (player.obey())
                return G_SOURCE_CONTINUE;
            g_main_loop_quit(player.m_loop.get());
            return G_SOURCE_REMOVE;
        },
        this);
    g_timeout_add(
        reportEvery,
        [](gpointer self) -> gboolean {
            auto& player = *static_cast<Player*>(self);
            if (player.m_phase == Phase::playing)
                player.report();
            return G_SOURCE_CONTINUE;
        },
        this);
    gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
    g_main_loop_run(m_loop.get());
}

/// One command; false once there will be no more.
bool Player::obey() {
    using Action = PlayerCommand::Action;
    PlayerCommand command;
    if (!receiveAll(m_connection, &command, sizeof command))
        return false;
    switch (command.action) {
    case Action::play:
        m_wantsToPlay = true;
        if (m_hasEnded)
            seek(0);
        if (m_phase != Phase::opening)
            gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
        break;
    case Action::pause:
        m_wantsToPlay = false;
        gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
        break;
    case Action::seek:
        seek(command.milliseconds);
        break;
    case Action::mute:
    case Action::unmute:
        g_object_set(m_pipeline.get(), "mute", gboolean{command.action == Action::mute}, nullptr);
        report();
        break;
    }
    return true;
}

void Player::hear(GstMessage& message) {
    switch (GST_MESSAGE_TYPE(&message)) {
    case GST_MESSAGE_ERROR:
        fail();
        break;
    case GST_MESSAGE_EOS:
        ended();
        break;
    case GST_MESSAGE_ASYNC_DONE:
        prerolled();
        break;
    case GST_MESSAGE_DURATION_CHANGED:
        report();
        break;
    case GST_MESSAGE_CLOCK_LOST:
        if (m_phase == Phase::playing) {
            gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
            gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
        }
        break;
    case GST_MESSAGE_STATE_CHANGED:
        if (GST_MESSAGE_SRC(&message) == GST_OBJECT(m_pipeline.get()) && m_phase != Phase::opening) {
            GstState now = GST_STATE_NULL;
            gst_message_parse_state_changed(&message, nullptr, &now, nullptr);
            m_phase = now == GST_STATE_PLAYING ? Phase::playing : Phase::paused;
            report();
        }
        break;
    default:
        break;
    }
}

/// The file is open, or a seek is done.
void Player::prerolled() {
    m_isSeeking = false;
    if (m_phase == Phase::opening) {
        m_phase = Phase::paused;
        if (m_wantsToPlay)
            gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
    }
    if (auto const next = std::exchange(m_nextSeek, std::nullopt))
        seek(*next);
    report();
}

void Player::ended() {
    m_hasEnded = true;
    m_wantsToPlay = false;
    gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
    m_phase = Phase::paused;
    report();
}

void Player::fail() {
    m_phase = Phase::failed;
    report();
    g_main_loop_quit(m_loop.get());
}

/// One at a time: of many quick ones, the last counts.
void Player::seek(std::int64_t milliseconds) {
    if (m_isSeeking || m_phase == Phase::opening) {
        m_nextSeek = milliseconds;
        return;
    }
    m_hasEnded = false;
    m_isSeeking =
        gst_element_seek_simple(m_pipeline.get(), GST_FORMAT_TIME,
                                static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                                std::max<std::int64_t>(milliseconds, 0) * static_cast<gint64>(GST_MSECOND));
}

PlayerReport Player::state() const {
    PlayerReport report{.phase = static_cast<std::uint32_t>(m_phase)};
    if (!m_pipeline)
        return report;
    gint64 nanoseconds = 0;
    if (gst_element_query_duration(m_pipeline.get(), GST_FORMAT_TIME, &nanoseconds))
        report.duration = toMilliseconds(nanoseconds);
    if (m_hasEnded)
        report.position = report.duration;
    else if (gst_element_query_position(m_pipeline.get(), GST_FORMAT_TIME, &nanoseconds))
        report.position = toMilliseconds(nanoseconds);
    gboolean isMuted = FALSE;
    g_object_get(m_pipeline.get(), "mute", &isMuted, nullptr);
    report.isMuted = isMuted ? 1 : 0;
    return report;
}

void Player::report() {
    if (!send(state(), nullptr, 0))
        g_main_loop_quit(m_loop.get());
}

/// Called by the thread that decodes, which waits until the picture is taken: so none pile up.
bool Player::sendFrame(GstSample* sample) {
    std::unique_ptr<GstSample, decltype(&gst_sample_unref)> const held(sample, &gst_sample_unref);
    GstVideoInfo info;
    GstVideoFrame frame;
    if (!sample || !gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) ||
        !gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ))
        return true; // None to show, but others may come.
    auto const rowBytes = static_cast<std::size_t>(GST_VIDEO_FRAME_WIDTH(&frame)) * 4;
    auto const height = static_cast<std::size_t>(GST_VIDEO_FRAME_HEIGHT(&frame));
    std::vector<char> pixels(rowBytes * height);
    auto const* const from = static_cast<char const*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0));
    for (std::size_t row = 0; row < height; ++row)
        std::copy_n(from + row * static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0)), rowBytes,
                    pixels.data() + row * rowBytes);
    PlayerReport const report{.width = GST_VIDEO_FRAME_WIDTH(&frame),
                              .height = GST_VIDEO_FRAME_HEIGHT(&frame)};
    gst_video_frame_unmap(&frame);
    return send(report, pixels.data(), pixels.size());
}

bool Player::send(PlayerReport const& report, void const* pixels, std::size_t size) {
    std::lock_guard const lock(m_sending);
    return sendAll(m_connection, &report, sizeof report) && sendAll(m_connection, pixels, size);
}

} // namespace taliro
