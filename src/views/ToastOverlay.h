#pragma once

#include "dragdrop/ToastCenter.h"
#include "views/Overlay.h"

#include <QVariantAnimation>

namespace taliro {

/// Shows the current toast as a card in the middle of its parent, and lets every click through.
class ToastOverlay : public Overlay {
public:
    ToastOverlay(ToastCenter& center, QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void change(std::optional<ToastCenter::Toast> const& toast);
    void animate(double from, double to);
    QRect cardArea() const;

    ToastCenter::Toast m_toast; ///< the one shown, or that is leaving
    QVariantAnimation m_transition;
    double m_presence = 0; ///< from 0, gone, to 1, all there
    Subscription m_subscription;
};

} // namespace taliro
