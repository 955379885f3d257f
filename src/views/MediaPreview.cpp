#include "views/MediaPreview.h"

#include "platform/Platform.h"
#include "platform/PreviewService.h"
#include "platform/Thumbnailer.h"
#include "views/FilmView.h"
#include "views/Pictures.h"
#include "views/PlaybackControls.h"
#include "views/SummaryPreview.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace taliro {

namespace {
constexpr QSize mostPixels(1280, 720); ///< of a film's pictures
constexpr QSize filmSize(720, 480);    ///< points
constexpr QSize soundSize(560, 330);   ///< points
constexpr int posterPixels = 512;
/// A file passed by on the way to another is not opened.
constexpr int settleTime = 150; ///< milliseconds
constexpr std::chrono::milliseconds keyStep{5000};
} // namespace

MediaPreview::MediaPreview(Platform& platform, QWidget* parent) : QWidget(parent), m_platform(platform) {
    m_picture = new QStackedWidget(this);
    m_film = new FilmView(m_picture);
    m_sound = new SummaryPreview(platform, m_picture);
    m_picture->addWidget(m_film);
    m_picture->addWidget(m_sound);
    m_controls = new PlaybackControls(this);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_picture, 1);
    column->addWidget(m_controls);
    m_settled.setSingleShot(true);
    m_settled.setInterval(settleTime);
    connect(&m_settled, &QTimer::timeout, this, &MediaPreview::open);
    connect(m_film, &FilmView::clicked, this, &MediaPreview::toggle);
    connect(m_controls, &PlaybackControls::toggled, this, &MediaPreview::toggle);
    connect(m_controls, &PlaybackControls::sought, this, &MediaPreview::seek);
    connect(m_controls, &PlaybackControls::muteToggled, this, &MediaPreview::toggleMute);
}

void MediaPreview::clear() {
    m_settled.stop();
    m_poster.cancel();
    m_playback.reset();
    m_file.reset();
    m_state = {};
    m_wasStarted = false;
    m_controls->setState(m_state);
    m_film->setImage({});
    m_sound->clear();
}

void MediaPreview::setFile(Url const& file, bool isFilm) {
    clear();
    m_file = file;
    m_settled.start();
    if (!isFilm) {
        m_picture->setCurrentWidget(m_sound);
        m_sound->setItem(file, false);
        return;
    }
    m_picture->setCurrentWidget(m_film);
    m_poster = m_platform.thumbnailer.request({file, posterPixels, posterPixels},
                                              [this](std::optional<Picture> const& picture) {
                                                  if (picture && !m_wasStarted)
                                                      m_film->setImage(toImage(*picture));
                                              });
}

QSize MediaPreview::sizeHint() const {
    return m_picture->currentWidget() == m_film ? filmSize : soundSize;
}

void MediaPreview::open() {
    auto const pixels = mostPixels * devicePixelRatioF();
    m_playback = m_platform.previews.playback(*m_file, pixels.width(), pixels.height(),
                                              {.changed = [this](PlaybackState const& state) { show(state); },
                                               .frame = [this](Picture const& frame) { showFrame(frame); }});
}

void MediaPreview::show(PlaybackState const& state) {
    m_state = state;
    if (state.phase == PlaybackState::Phase::failed) {
        m_playback.reset();
        Q_EMIT failed();
        return;
    }
    m_controls->setState(state);
}

/// The first picture is often black: the poster says more, as long as nobody plays.
void MediaPreview::showFrame(Picture const& frame) {
    if (m_wasStarted || !m_film->hasImage())
        m_film->setImage(toImage(frame));
    m_picture->setCurrentWidget(m_film);
}

void MediaPreview::toggle() {
    if (!m_playback)
        return;
    m_wasStarted = true;
    if (m_state.phase == PlaybackState::Phase::playing)
        m_playback->pause();
    else
        m_playback->play();
}

void MediaPreview::seek(std::chrono::milliseconds position) {
    if (!m_playback)
        return;
    m_wasStarted = true;
    m_playback->seek(std::clamp(position, std::chrono::milliseconds::zero(), m_state.duration));
}

void MediaPreview::toggleMute() {
    if (m_playback)
        m_playback->setMuted(!m_state.isMuted);
}

bool MediaPreview::handleKey(QKeyEvent const& event) {
    bool const shifted = event.modifiers() & Qt::ShiftModifier;
    switch (event.key()) {
    case Qt::Key_P:
    case Qt::Key_MediaPlay:
    case Qt::Key_MediaTogglePlayPause:
        toggle();
        return true;
    case Qt::Key_M:
        toggleMute();
        return true;
    case Qt::Key_Left:
        if (shifted)
            seek(m_state.position - keyStep);
        return shifted;
    case Qt::Key_Right:
        if (shifted)
            seek(m_state.position + keyStep);
        return shifted;
    default:
        return false;
    }
}

} // namespace taliro
