#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"
#include "platform/Playback.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QKeyEvent;
class QStackedWidget;

namespace taliro {

class FilmView;
class PlaybackControls;
class SummaryPreview;
struct Platform;

/// A film's picture, or what is known of a sound, with what it takes to play it.
class MediaPreview : public QWidget {
    Q_OBJECT

public:
    explicit MediaPreview(Platform& platform, QWidget* parent = nullptr);

    void setFile(Url const& file, bool isFilm);
    /// Ends what plays.
    void clear();
    /// P plays and pauses, M mutes, Shift and an arrow goes five seconds back or on.
    bool handleKey(QKeyEvent const& event);
    QSize sizeHint() const override;

Q_SIGNALS:
    /// This system can't play it.
    void failed();

private:
    void open();
    void show(PlaybackState const& state);
    void showFrame(struct Picture const& frame);
    void toggle();
    void seek(std::chrono::milliseconds position);
    void toggleMute();

    Platform& m_platform;
    std::optional<Url> m_file;
    QStackedWidget* m_picture;
    FilmView* m_film;
    SummaryPreview* m_sound;
    PlaybackControls* m_controls;
    Subscription m_poster;
    QTimer m_settled;
    std::unique_ptr<Playback> m_playback;
    PlaybackState m_state;
    bool m_wasStarted = false; ///< the film's own pictures are shown from then on
};

} // namespace taliro
