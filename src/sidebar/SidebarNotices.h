#pragma once

#include <QFrame>

class QGraphicsOpacityEffect;
class QPropertyAnimation;

namespace taliro {

/// Suggests to mirror the file manager's favorites. Comes and goes softly.
class SyncBanner : public QWidget {
    Q_OBJECT

public:
    explicit SyncBanner(QWidget* parent = nullptr);

    /// `animated`: fades in or out.
    void setShown(bool shown, bool animated);

Q_SIGNALS:
    void enabled();
    void dismissed();

protected:
    void paintEvent(QPaintEvent*) override;

private:
    bool m_shown = false;
    QGraphicsOpacityEffect* m_opacity;
    QPropertyAnimation* m_fade;
};

/// Says that the file manager's favorites can't be read, and what can be done.
class AccessFooter : public QWidget {
    Q_OBJECT

public:
    explicit AccessFooter(QWidget* parent = nullptr);

Q_SIGNALS:
    void settingsWanted();
    void turnedOff();
};

} // namespace taliro
