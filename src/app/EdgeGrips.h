#pragma once

#include <QObject>
#include <QRect>

#include <vector>

class QWidget;

namespace taliro {

/// Makes a frameless window resizable at its edges and corners.
class EdgeGrips : public QObject {
public:
    explicit EdgeGrips(QWidget& window);

    /// `surface`: what looks like the window, in its coordinates.
    void lieAlong(QRect const& surface);

private:
    class Grip;
    std::vector<Grip*> m_grips;
};

} // namespace taliro
