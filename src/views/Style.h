#pragma once

#include <QProxyStyle>

namespace taliro {

/// Our look for the standard widgets, over Fusion: menus, buttons, fields, check boxes, combo boxes,
/// thin scroll bars that lie over what they scroll, and tooltips.
class Style : public QProxyStyle {
    Q_OBJECT

public:
    Style();

    void polish(QWidget* widget) override;
    void unpolish(QWidget* widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    int pixelMetric(PixelMetric metric, QStyleOption const* option, QWidget const* widget) const override;
    int styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
                  QStyleHintReturn* data) const override;
    QIcon standardIcon(StandardPixmap icon, QStyleOption const* option, QWidget const* widget) const override;
    QSize sizeFromContents(ContentsType type, QStyleOption const* option, QSize const& size,
                           QWidget const* widget) const override;
    QRect subElementRect(SubElement element, QStyleOption const* option,
                         QWidget const* widget) const override;
    QRect subControlRect(ComplexControl control, QStyleOptionComplex const* option, SubControl part,
                         QWidget const* widget) const override;
    void drawPrimitive(PrimitiveElement element, QStyleOption const* option, QPainter* painter,
                       QWidget const* widget) const override;
    void drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
                     QWidget const* widget) const override;
    void drawComplexControl(ComplexControl control, QStyleOptionComplex const* option, QPainter* painter,
                            QWidget const* widget) const override;

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace taliro
