#pragma once

#include <QRectF>
#include <QString>

class QPainter;

namespace taliro {

/// One character on the drawing of a key.
class KeyCap {
public:
    explicit KeyCap(QString character) : m_character(std::move(character)) {}

    static constexpr qreal height = 20;
    qreal width() const; ///< at least 22 points
    /// Within `rect`, but for a shadow of one point below it.
    void paint(QPainter& painter, QRectF const& rect) const;

    bool operator==(KeyCap const&) const = default;

private:
    QString m_character;
};

} // namespace taliro
