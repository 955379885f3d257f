#include "views/Theme.h"

#include "views/Style.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QScreen>
#include <QToolTip>

namespace taliro {
namespace {

QColor black(qreal opacity) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}
QColor white(qreal opacity) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}

Colors lightColors() {
    return {
        .window = 0xf5f5f7,
        .content = 0xffffff,
        .sidebar = 0xebecef,
        .line = black(.10),
        .hair = black(.06),
        .text1 = 0x1d1d1f,
        .text2 = 0x6e6e73,
        .text3 = 0xa5a5ab,
        .accent = 0x0a66e8,
        .onAccent = 0xffffff,
        .control = 0xffffff,
        .controlBorder = black(.14),
        .cap = 0xfbfbfc,
        .hover = black(.06),
        .pressed = black(.11),
        .success = 0x23863b,
        .warning = 0xc55e00,
        .failure = 0xd02f2a,
        .shadow = black(.25),
    };
}

Colors darkColors() {
    return {
        .window = 0x232428,
        .content = 0x1c1d20,
        .sidebar = 0x2a2b30,
        .line = white(.10),
        .hair = white(.06),
        .text1 = 0xf1f1f3,
        .text2 = 0xa0a0a7,
        .text3 = 0x6d6d75,
        .accent = 0x3d86f6,
        .onAccent = 0xffffff,
        .control = 0x34353b,
        .controlBorder = white(.14),
        .cap = 0x3a3b41,
        .hover = white(.07),
        .pressed = white(.13),
        .success = 0x4cc35f,
        .warning = 0xff9f3d,
        .failure = 0xff6961,
        .shadow = black(.6),
    };
}

QPalette paletteOf(Colors const& c) {
    QPalette palette(c.text1, c.control, white(.2), black(.3), c.text3, c.text1, c.onAccent, c.content,
                     c.window);
    palette.setColor(QPalette::AlternateBase, c.sidebar);
    palette.setColor(QPalette::Highlight, c.accent);
    palette.setColor(QPalette::HighlightedText, c.onAccent);
    palette.setColor(QPalette::PlaceholderText, c.text3);
    palette.setColor(QPalette::ToolTipBase, c.control);
    palette.setColor(QPalette::ToolTipText, c.text1);
    palette.setColor(QPalette::Link, c.accent);
    palette.setColor(QPalette::LinkVisited, c.accent);
    for (auto const role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, c.text3);
    return palette;
}

QString fontFamily() {
    static QString const family = [] {
        auto const inter = QStringLiteral("Inter");
        return QFontDatabase::hasFamily(inter)
                   ? inter
                   : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    }();
    return family;
}

} // namespace

Theme& Theme::current() {
    static Theme theme;
    return theme;
}

void Theme::install(QApplication& application) {
    m_application = &application;
    application.setStyle(new Style);
    application.setFont(font());
    application.setFont(font(metrics::list), "QPushButton");
    QToolTip::setFont(font(metrics::small));
    apply();
}

void Theme::setDark(bool dark) {
    if (m_dark == dark)
        return;
    m_dark = dark;
    apply();
    Q_EMIT changed();
}

void Theme::apply() {
    if (!m_application)
        return;
    auto const palette = paletteOf(colors());
    m_application->setPalette(palette);
    QToolTip::setPalette(palette);
}

Colors const& Theme::colors() const {
    return colors(m_dark);
}

Colors const& Theme::colors(bool dark) {
    static Colors const lightOnes = lightColors();
    static Colors const darkOnes = darkColors();
    return dark ? darkOnes : lightOnes;
}

QFont Theme::font(qreal points, QFont::Weight weight) const {
    QFont font(fontFamily());
    if (points == qRound(points)) {
        font.setPixelSize(qRound(points));
    } else {
        auto const* screen = QGuiApplication::primaryScreen();
        font.setPointSizeF(points * 72 / (screen ? screen->logicalDotsPerInchY() : 96));
    }
    font.setWeight(weight);
    return font;
}

Colors const& colors() {
    return Theme::current().colors();
}

QColor faded(QColor color, qreal opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

} // namespace taliro
