#pragma once

#include "views/Theme.h"

#include <QPainter>
#include <QWidget>

namespace taliro {

/// A line, one point wide, between panes.
class Line : public QWidget {
public:
    enum Direction { horizontal, vertical };

    explicit Line(Direction direction, QWidget* parent = nullptr) : QWidget(parent) {
        if (direction == horizontal)
            setFixedHeight(1);
        else
            setFixedWidth(1);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), colors().line); }
};

} // namespace taliro
