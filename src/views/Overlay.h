#pragma once

#include <QWidget>

namespace taliro {

/// A layer over all of its parent, following its size. Hidden at first; comes to the top when shown.
class Overlay : public QWidget {
public:
    explicit Overlay(QWidget* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;
};

} // namespace taliro
