#include "views/PlaybackControls.h"

#include "views/Theme.h"
#include "views/ToolButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSlider>

namespace taliro {

namespace {
constexpr int barHeight = 40;
constexpr int step = 5000; ///< milliseconds

/// "0:07", "12:34", "1:02:03".
QString timeText(std::chrono::milliseconds time) {
    auto const seconds = std::chrono::floor<std::chrono::seconds>(time).count();
    auto const text = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    auto const hours = seconds / 3600;
    auto const minutes = seconds / 60 % 60;
    return (hours > 0 ? QString::number(hours) + u':' + text(minutes) : QString::number(minutes)) + u':' +
           text(seconds % 60);
}

} // namespace

PlaybackControls::PlaybackControls(QWidget* parent) : QWidget(parent) {
    setFixedHeight(barHeight);
    m_play = new ToolButton("play.fill", tr("Play"), 16, this);
    m_position = makeTime();
    m_slider = new QSlider(Qt::Horizontal, this);
    m_slider->setAccessibleName(tr("Position"));
    m_slider->setSingleStep(step);
    m_slider->setPageStep(2 * step);
    m_duration = makeTime();
    m_mute = new ToolButton("speaker.wave.2.fill", tr("Mute"), 16, this);
    // Keys belong to the window, which moves on to the next file with them.
    for (auto* const control : std::initializer_list<QWidget*>{m_play, m_slider, m_mute})
        control->setFocusPolicy(Qt::NoFocus);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 0, 12, 0);
    row->setSpacing(8);
    row->addWidget(m_play);
    row->addWidget(m_position);
    row->addWidget(m_slider, 1);
    row->addWidget(m_duration);
    row->addWidget(m_mute);
    connect(m_play, &QToolButton::clicked, this, &PlaybackControls::toggled);
    connect(m_mute, &QToolButton::clicked, this, &PlaybackControls::muteToggled);
    connect(m_slider, &QSlider::valueChanged, this,
            [this](int position) { Q_EMIT sought(std::chrono::milliseconds(position)); });
    setState({});
}

QLabel* PlaybackControls::makeTime() {
    auto* const label = new QLabel(this);
    label->setFont(Theme::current().font(metrics::small));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setAlignment(Qt::AlignCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("00:00")) + 4);
    return label;
}

void PlaybackControls::setState(PlaybackState const& state) {
    using Phase = PlaybackState::Phase;
    bool const isOpen = state.phase == Phase::paused || state.phase == Phase::playing;
    bool const isPlaying = state.phase == Phase::playing;
    m_play->setEnabled(isOpen);
    m_play->setSymbol(isPlaying ? "pause.fill" : "play.fill");
    m_play->setLabel(isPlaying ? tr("Pause") : tr("Play"));
    m_mute->setEnabled(isOpen);
    m_mute->setSymbol(state.isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill");
    m_mute->setLabel(state.isMuted ? tr("Unmute") : tr("Mute"));
    m_duration->setText(state.duration.count() > 0 ? timeText(state.duration) : QString());
    m_slider->setEnabled(isOpen && state.duration.count() > 0);
    m_position->setText(timeText(state.position));
    if (m_slider->isSliderDown())
        return; // Held by the user, it says where to go, not where we are.
    QSignalBlocker const quiet(m_slider);
    m_slider->setRange(0, static_cast<int>(std::min<std::chrono::milliseconds::rep>(
                              state.duration.count(), std::numeric_limits<int>::max())));
    m_slider->setValue(static_cast<int>(state.position.count()));
}

void PlaybackControls::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(QRect(0, 0, width(), 1), colors().line);
}

} // namespace taliro
