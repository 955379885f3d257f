#include "views/Symbols.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>

// Outside of the namespace, as the macro demands.
static void loadResources() {
    Q_INIT_RESOURCE(resources);
}

namespace taliro {
namespace {

QString text(std::string_view name) {
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

QByteArray drawing(QString const& path) {
    static bool const loaded = (loadResources(), true);
    Q_UNUSED(loaded)
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("No drawing %s", qPrintable(path));
        return {};
    }
    return file.readAll();
}

QPixmap rendered(QByteArray const& svg, int pixels) {
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(svg).render(&painter);
    return pixmap;
}

QPixmap tinted(QPixmap pixmap, QColor const& color) {
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    return pixmap;
}

/// The drawings are made for 16 points; small ones would fade away without a stroke of about a point.
QByteArray strokeFor(qreal points, QByteArray svg) {
    auto const units = points >= 40 ? 1.5 : std::max(1.6, 24 * 0.95 / points);
    return svg.replace("stroke-width=\"1.6\"", "stroke-width=\"" + QByteArray::number(units, 'f', 2) + '"');
}

QPixmap kept(QString const& key, auto const& make) {
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = make();
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

int pixelsOf(qreal points, qreal devicePixelRatio) {
    return std::max(1, qRound(points * devicePixelRatio));
}

class SymbolIconEngine : public QIconEngine {
public:
    SymbolIconEngine(std::string_view name, ColorRole role, QColor const& color)
        : m_name(name), m_role(role), m_color(color) {}

    QIconEngine* clone() const override { return new SymbolIconEngine(*this); }
    QString key() const override { return QStringLiteral("TaliroSymbol"); }

    void paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State) override {
        drawSymbol(*painter, rect, m_name, std::min(rect.width(), rect.height()), colorFor(mode));
    }
    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }
    QPixmap scaledPixmap(QSize const& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        auto const pixels = std::min(size.width(), size.height());
        return symbolPixmap(m_name, pixels / scale, colorFor(mode), scale);
    }

private:
    QColor colorFor(QIcon::Mode mode) const {
        if (mode == QIcon::Selected)
            return colors().onAccent;
        if (mode == QIcon::Disabled)
            return colors().text3;
        return m_role ? colors().*m_role : m_color;
    }

    std::string m_name;
    ColorRole m_role;
    QColor m_color;
};

} // namespace

QPixmap symbolPixmap(std::string_view name, qreal points, QColor const& color, qreal devicePixelRatio) {
    auto const pixels = pixelsOf(points, devicePixelRatio);
    auto const key = QStringLiteral("symbol/%1/%2@%3/%4")
                         .arg(text(name))
                         .arg(pixels)
                         .arg(devicePixelRatio)
                         .arg(color.name(QColor::HexArgb));
    return kept(key, [&] {
        auto const svg = drawing(QStringLiteral(":/symbols/%1.svg").arg(text(name)));
        if (svg.isEmpty())
            return QPixmap();
        auto pixmap = tinted(rendered(strokeFor(points, svg), pixels), color);
        pixmap.setDevicePixelRatio(devicePixelRatio);
        return pixmap;
    });
}

void drawSymbol(QPainter& painter, QRectF const& box, std::string_view name, qreal points,
                QColor const& color) {
    auto const ratio = painter.device()->devicePixelRatioF();
    auto const pixmap = symbolPixmap(name, points, color, ratio);
    if (pixmap.isNull())
        return;
    auto const corner = box.center() - QPointF(points, points) / 2;
    auto const snapped = [ratio](qreal value) { return qRound(value * ratio) / ratio; };
    painter.drawPixmap(QPointF(snapped(corner.x()), snapped(corner.y())), pixmap);
}

QIcon symbolIcon(std::string_view name, ColorRole color) {
    return QIcon(new SymbolIconEngine(name, color, {}));
}

QIcon symbolIcon(std::string_view name, QColor const& color) {
    return QIcon(new SymbolIconEngine(name, nullptr, color));
}

QPixmap filePixmap(std::string_view name, qreal points, qreal devicePixelRatio) {
    auto const pixels = pixelsOf(points, devicePixelRatio);
    auto const key = QStringLiteral("file/%1/%2@%3").arg(text(name)).arg(pixels).arg(devicePixelRatio);
    return kept(key, [&] {
        auto const svg = drawing(QStringLiteral(":/files/%1.svg").arg(text(name)));
        if (svg.isEmpty())
            return QPixmap();
        auto pixmap = rendered(svg, pixels);
        pixmap.setDevicePixelRatio(devicePixelRatio);
        return pixmap;
    });
}

} // namespace taliro
