#include "views/ToastOverlay.h"

#include "views/Drawing.h"
#include "views/Shadow.h"
#include "views/Symbols.h"

#include <QAccessible>
#include <QPainter>
#include <QTextLayout>

namespace taliro {

namespace {

constexpr QSize cardSize(200, 150);
constexpr int cornerRadius = 16;
constexpr int symbolSize = 56;
constexpr int spacing = 12;
constexpr int textInset = 14;
constexpr int mostLines = 3;
constexpr int transitionMilliseconds = 220;
constexpr double smallestScale = .92;
constexpr Shadow shadow;

/// `text` in at most three lines of `width` points, the last one cut short where there is more.
QStringList wrapped(QString const& text, QFont const& font, int width) {
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(text, font);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (lines.size() == mostLines - 1) {
            lines += QFontMetrics(font).elidedText(text.mid(line.textStart()), Qt::ElideRight, width);
            break;
        }
        lines += text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

void drawCard(QPainter& painter, QRect const& card, ToastCenter::Toast const& toast) {
    drawShadow(painter, card, cornerRadius, shadow);
    fillRounded(painter, card, cornerRadius, faded(colors().window, .97));
    strokeRounded(painter, card, cornerRadius, faded(colors().text1, .08), .5);

    auto const font = Theme::current().font(metrics::list, QFont::Medium);
    auto const lines = wrapped(QString::fromStdString(toast.message), font, card.width() - 2 * textInset);
    auto const lineHeight = QFontMetrics(font).lineSpacing();
    auto const height = symbolSize + spacing + static_cast<int>(lines.size()) * lineHeight;
    QRect row(card.left(), card.center().y() - height / 2, card.width(), symbolSize);
    drawSymbol(painter, row, toast.icon, symbolSize, colors().accent);

    row.moveTop(row.bottom() + 1 + spacing);
    row.setHeight(lineHeight);
    painter.setFont(font);
    painter.setPen(colors().text1);
    for (auto const& line : lines) {
        painter.drawText(row, Qt::AlignCenter | Qt::TextSingleLine, line);
        row.translate(0, lineHeight);
    }
}

} // namespace

ToastOverlay::ToastOverlay(ToastCenter& center, QWidget* parent) : Overlay(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    m_transition.setDuration(transitionMilliseconds);
    m_transition.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_transition, &QVariantAnimation::valueChanged, this, [this](QVariant const& presence) {
        m_presence = presence.toDouble();
        update(cardArea());
    });
    connect(&m_transition, &QVariantAnimation::finished, this, [this] {
        if (m_presence == 0)
            hide();
    });
    m_subscription = center.current.observe([this](auto const& toast) { change(toast); });
    change(center.current);
}

void ToastOverlay::change(std::optional<ToastCenter::Toast> const& toast) {
    if (!toast) {
        if (m_presence > 0)
            animate(m_presence, 0);
        return;
    }
    m_toast = *toast;
    show();
    raise();
    animate(0, 1);
    setAccessibleName(QString::fromStdString(m_toast.message));
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void ToastOverlay::animate(double from, double to) {
    m_transition.stop();
    m_transition.setStartValue(from);
    m_transition.setEndValue(to);
    m_transition.start();
}

QRect ToastOverlay::cardArea() const {
    QRect card({}, cardSize);
    card.moveCenter(rect().center());
    auto const reach = shadow.blur + shadow.offset;
    return card.adjusted(-reach, -reach, reach, reach);
}

void ToastOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRect card({}, cardSize);
    card.moveCenter(rect().center());
    auto const scale = smallestScale + (1 - smallestScale) * m_presence;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(m_presence);
    painter.translate(QRectF(card).center());
    painter.scale(scale, scale);
    painter.translate(-QRectF(card).center());
    drawCard(painter, card, m_toast);
}

} // namespace taliro
