#pragma once

#include "platform/Playback.h"

#include <QWidget>

class QLabel;
class QSlider;

namespace taliro {

class ToolButton;

/// Play and pause, where the playback is, its length, and the sound switched off and on.
class PlaybackControls : public QWidget {
    Q_OBJECT

public:
    explicit PlaybackControls(QWidget* parent = nullptr);

    void setState(PlaybackState const& state);

Q_SIGNALS:
    void toggled();
    void sought(std::chrono::milliseconds position);
    void muteToggled();

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QLabel* makeTime();

    ToolButton* m_play;
    QLabel* m_position;
    QSlider* m_slider;
    QLabel* m_duration;
    ToolButton* m_mute;
};

} // namespace taliro
