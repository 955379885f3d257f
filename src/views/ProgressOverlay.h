#pragma once

#include "dragdrop/ProgressCenter.h"
#include "views/Overlay.h"

namespace taliro {

/// Shows what takes long, one card above the other at the bottom of its parent; clicks beside them go
/// through.
class ProgressOverlay : public Overlay {
public:
    ProgressOverlay(ProgressCenter& center, QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    class CardView;

    void change(std::vector<ProgressCenter::Card> const& cards);
    void place();

    ProgressCenter& m_center;
    std::vector<CardView*> m_views; ///< the oldest first
    Subscription m_subscription;
};

} // namespace taliro
