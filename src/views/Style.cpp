#include "views/Style.h"

#include "views/Drawing.h"
#include "views/PushButton.h"
#include "views/Symbols.h"
#include "views/Theme.h"

#include <QBitmap>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

namespace taliro {
namespace {

constexpr int scrollBarWidth = 10;
constexpr int sliderMinimum = 28;
constexpr int menuRow = 24;
constexpr int menuEdge = 4;       ///< around a menu's rows, and what holds its round border
constexpr int menuTextInset = 10; ///< between the highlight's edge and the text
constexpr int menuIconColumn = 24;
constexpr int menuArrowColumn = 20;

QColor textColor(QStyle::State state) {
    return state & QStyle::State_Enabled ? colors().text1 : colors().text3;
}

// --- Menus ---

QString titleOf(QStyleOptionMenuItem const& item) {
    return item.text.section(QLatin1Char('\t'), 0, 0);
}
QString shortcutOf(QStyleOptionMenuItem const& item) {
    return item.text.section(QLatin1Char('\t'), 1, 1);
}

bool hasIconColumn(QStyleOptionMenuItem const& item) {
    return item.maxIconWidth > 0 || item.menuHasCheckableItems || !item.icon.isNull();
}

QSize menuItemSize(QStyleOptionMenuItem const& item) {
    if (item.menuItemType == QStyleOptionMenuItem::Separator)
        return {menuTextInset, 9};
    QFontMetrics const metrics(item.font);
    auto width = 2 * menuTextInset + metrics.horizontalAdvance(titleOf(item));
    if (hasIconColumn(item))
        width += menuIconColumn;
    if (item.menuItemType == QStyleOptionMenuItem::SubMenu)
        width += menuArrowColumn;
    if (item.text.contains(QLatin1Char('\t')))
        width += 20; // QMenu itself adds the width of the longest shortcut.
    return {width, menuRow};
}

void drawMenuMark(QPainter& painter, QStyleOptionMenuItem const& item, QRect const& box, bool selected) {
    auto const ink = selected ? colors().onAccent : textColor(item.state);
    if (item.checked) {
        drawSymbol(painter, box, "checkmark", 13, ink);
        return;
    }
    if (item.icon.isNull())
        return;
    auto const mode = !(item.state & QStyle::State_Enabled) ? QIcon::Disabled
                      : selected                            ? QIcon::Selected
                                                            : QIcon::Normal;
    auto const corner = box.center() - QPoint(7, 7);
    item.icon.paint(&painter, QRect(corner, QSize(16, 16)), Qt::AlignCenter, mode);
}

void drawMenuItem(QPainter& painter, QStyleOptionMenuItem const& item) {
    auto const& c = colors();
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        auto const y = item.rect.center().y();
        painter.fillRect(item.rect.left() + menuTextInset, y, item.rect.width() - 2 * menuTextInset, 1,
                         c.line);
        return;
    }
    auto const selected = (item.state & QStyle::State_Selected) && (item.state & QStyle::State_Enabled);
    auto const& row = item.rect;
    if (selected)
        fillRounded(painter, row, 4, c.accent);
    auto text = row.adjusted(menuTextInset, 0, -menuTextInset, 0);
    if (hasIconColumn(item)) {
        drawMenuMark(painter, item, QRect(text.left() - 2, text.top(), 18, text.height()), selected);
        text.setLeft(text.left() + menuIconColumn);
    }
    painter.setFont(item.font);
    painter.setPen(selected ? c.onAccent : textColor(item.state));
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextHideMnemonic | Qt::TextSingleLine,
                     titleOf(item));
    if (item.menuItemType == QStyleOptionMenuItem::SubMenu) {
        drawSymbol(painter, QRect(row.right() - menuArrowColumn, row.top(), menuArrowColumn, row.height()),
                   "chevron.right", 10, selected ? c.onAccent : c.text2);
        return;
    }
    painter.setPen(selected ? faded(c.onAccent, .85) : c.text2);
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, shortcutOf(item));
}

/// Menus and combo lists are windows of their own, whose corners only a mask can round.
void roundWindow(QWidget& window) {
    QBitmap mask(window.size());
    mask.clear();
    QPainter painter(&mask);
    painter.setBrush(Qt::color1);
    painter.setPen(Qt::color1);
    painter.drawRoundedRect(QRectF(window.rect()).adjusted(.5, .5, -.5, -.5), metrics::radius,
                            metrics::radius);
    painter.end();
    window.setMask(mask);
}

// --- Buttons and fields ---

bool isProminent(QStyleOptionButton const& button, QWidget const* widget) {
    if (auto const* ours = qobject_cast<PushButton const*>(widget))
        return ours->isProminent();
    return button.features & QStyleOptionButton::DefaultButton;
}

void drawButtonPanel(QPainter& painter, QStyleOptionButton const& button, QWidget const* widget) {
    auto const& c = colors();
    auto const enabled = bool(button.state & QStyle::State_Enabled);
    auto const down = bool(button.state & (QStyle::State_Sunken | QStyle::State_On));
    auto const over = enabled && (button.state & QStyle::State_MouseOver);
    if (button.features & QStyleOptionButton::Flat) {
        if (enabled && (down || over))
            fillRounded(painter, button.rect, metrics::radius, down ? c.pressed : c.hover);
    } else if (isProminent(button, widget)) {
        auto fill = enabled ? c.accent : faded(c.accent, .4);
        if (enabled && (down || over))
            fill = down ? fill.darker(118) : fill.lighter(107);
        fillRounded(painter, button.rect, metrics::radius, fill);
    } else {
        fillRounded(painter, button.rect, metrics::radius, c.control);
        if (enabled && (down || over))
            fillRounded(painter, button.rect, metrics::radius, down ? c.pressed : c.hover);
        strokeRounded(painter, button.rect, metrics::radius, c.controlBorder);
    }
}

void drawField(QPainter& painter, QStyleOption const& option) {
    auto const& c = colors();
    fillRounded(painter, option.rect, metrics::radius, c.control);
    if (option.state & QStyle::State_HasFocus)
        drawFocusRing(painter, option.rect, metrics::radius);
    else
        strokeRounded(painter, option.rect, metrics::radius, c.controlBorder);
}

void drawIndicator(QPainter& painter, QStyleOption const& option, bool radio) {
    auto const& c = colors();
    auto const box = QRectF(option.rect.center().x() - 7, option.rect.center().y() - 7, 16, 16);
    auto const radius = radio ? 8.0 : 4.0;
    auto const on = bool(option.state & (QStyle::State_On | QStyle::State_NoChange));
    if (!(option.state & QStyle::State_Enabled))
        painter.setOpacity(.5);
    fillRounded(painter, box, radius, on ? c.accent : c.control);
    if (!on)
        strokeRounded(painter, box, radius, c.controlBorder);
    if (on && radio)
        fillRounded(painter, QRectF(box.center() - QPointF(3, 3), QSizeF(6, 6)), 3, c.onAccent);
    else if (on)
        drawSymbol(painter, box, option.state & QStyle::State_On ? "checkmark" : "minus", 12, c.onAccent);
    painter.setOpacity(1);
}

void drawComboBox(QPainter& painter, QStyleOptionComboBox const& combo) {
    auto const& c = colors();
    fillRounded(painter, combo.rect, metrics::radius, c.control);
    if (!combo.editable && (combo.state & QStyle::State_MouseOver))
        fillRounded(painter, combo.rect, metrics::radius, c.hover);
    strokeRounded(painter, combo.rect, metrics::radius, c.controlBorder);
    if (combo.state & QStyle::State_HasFocus)
        drawFocusRing(painter, combo.rect, metrics::radius);
    drawSymbol(painter, QRect(combo.rect.right() - 22, combo.rect.top(), 22, combo.rect.height()),
               "chevron.down", 11, combo.state & QStyle::State_Enabled ? c.text2 : c.text3);
}

// --- Scroll bars ---

QRect sliderRect(QStyleOptionSlider const& bar) {
    auto const across = bar.orientation == Qt::Horizontal;
    auto const length = across ? bar.rect.width() : bar.rect.height();
    auto const range = qint64(bar.maximum) - bar.minimum;
    auto slider = length;
    if (range > 0)
        slider = qBound(qMin(sliderMinimum, length),
                        int(qint64(length) * bar.pageStep / (range + bar.pageStep)), length);
    auto const start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                       length - slider, bar.upsideDown);
    return across ? QRect(bar.rect.left() + start, bar.rect.top(), slider, bar.rect.height())
                  : QRect(bar.rect.left(), bar.rect.top() + start, bar.rect.width(), slider);
}

void drawScrollBar(QPainter& painter, QStyleOptionSlider const& bar) {
    if (bar.maximum <= bar.minimum)
        return;
    auto const held = bool(bar.state & QStyle::State_Sunken);
    auto const over = held || (bar.state & QStyle::State_MouseOver);
    auto const width = over ? 7.0 : 5.0;
    auto slider = QRectF(sliderRect(bar)).adjusted(2, 2, -2, -2);
    if (bar.orientation == Qt::Horizontal)
        slider.setTop(bar.rect.bottom() - 1 - width);
    else
        slider.setLeft(bar.rect.right() - 1 - width);
    fillRounded(painter, slider, width / 2, faded(colors().text1, held ? .55 : over ? .42 : .24));
}

/// A thin line, stronger up to the knob.
void drawSlider(QPainter& painter, QStyleOptionSlider const& slider, QRectF const& knob) {
    constexpr qreal thickness = 3;
    auto const enabled = bool(slider.state & QStyle::State_Enabled);
    QRectF line(QPointF(slider.rect.left() + knob.width() / 2, slider.rect.center().y() - thickness / 2 + 1),
                QSizeF(slider.rect.width() - knob.width(), thickness));
    fillRounded(painter, line, thickness / 2, faded(colors().text1, enabled ? .16 : .1));
    if (!enabled)
        return;
    line.setRight(knob.center().x());
    fillRounded(painter, line, thickness / 2, colors().text2);
    fillRounded(painter, knob, knob.width() / 2, colors().text1);
    if (slider.state & QStyle::State_HasFocus)
        drawFocusRing(painter, knob.adjusted(-3, -3, 3, 3), knob.width() / 2 + 3);
}

} // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QMenu*>(widget) || widget->inherits("QComboBoxPrivateContainer"))
        widget->installEventFilter(this);
    if (qobject_cast<QScrollBar*>(widget)) {
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
        widget->setAttribute(Qt::WA_Hover);
    }
}

void Style::unpolish(QWidget* widget) {
    widget->removeEventFilter(this);
    if (qobject_cast<QScrollBar*>(widget))
        widget->setAttribute(Qt::WA_OpaquePaintEvent);
    QProxyStyle::unpolish(widget);
}

bool Style::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        if (auto* window = qobject_cast<QWidget*>(watched))
            roundWindow(*window);
    return QProxyStyle::eventFilter(watched, event);
}

int Style::pixelMetric(PixelMetric metric, QStyleOption const* option, QWidget const* widget) const {
    switch (static_cast<int>(metric)) {
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap:
        return scrollBarWidth;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_MenuHMargin:
    case PM_MenuVMargin:
    case PM_ButtonDefaultIndicator:
        return 0;
    case PM_ScrollBarSliderMin:
        return sliderMinimum;
    case PM_MenuPanelWidth:
        return menuEdge;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return 16;
    case PM_ToolTipLabelFrameWidth:
        return 5;
    case PM_MessageBoxIconSize:
        return 40;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
                     QStyleHintReturn* data) const {
    switch (static_cast<int>(hint)) {
    case SH_EtchDisabledText:
    case SH_UnderlineShortcut:
    case SH_ComboBox_Popup:
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton;
    case SH_DialogButtonLayout:
        return QDialogButtonBox::GnomeLayout;
    case SH_ScrollBar_LeftClickAbsolutePosition:
    case SH_Menu_MouseTracking:
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QIcon Style::standardIcon(StandardPixmap icon, QStyleOption const* option, QWidget const* widget) const {
    switch (static_cast<int>(icon)) {
    case SP_MessageBoxWarning:
        return symbolIcon("exclamationmark.triangle.fill", &Colors::warning);
    case SP_MessageBoxCritical:
        return symbolIcon("exclamationmark.triangle.fill", &Colors::failure);
    case SP_MessageBoxInformation:
    case SP_MessageBoxQuestion:
        return symbolIcon("info.circle", &Colors::text2);
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

QSize Style::sizeFromContents(ContentsType type, QStyleOption const* option, QSize const& size,
                              QWidget const* widget) const {
    switch (static_cast<int>(type)) {
    case CT_MenuItem:
        if (auto const* item = qstyleoption_cast<QStyleOptionMenuItem const*>(option))
            return menuItemSize(*item);
        break;
    case CT_PushButton:
        return {qMax(64, size.width() + 24), metrics::controlHeight};
    case CT_LineEdit:
        return {size.width() + 8, qMax(metrics::controlHeight, size.height())};
    case CT_ComboBox:
        return {size.width() + 34, metrics::controlHeight};
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

QRect Style::subElementRect(SubElement element, QStyleOption const* option, QWidget const* widget) const {
    auto const rect = QProxyStyle::subElementRect(element, option, widget);
    auto const* frame = qstyleoption_cast<QStyleOptionFrame const*>(option);
    if (element == SE_LineEditContents && frame && frame->lineWidth > 0)
        return rect.adjusted(4, 0, -4, 0);
    return rect;
}

QRect Style::subControlRect(ComplexControl control, QStyleOptionComplex const* option, SubControl part,
                            QWidget const* widget) const {
    if (control == CC_ScrollBar) {
        if (auto const* bar = qstyleoption_cast<QStyleOptionSlider const*>(option)) {
            auto const slider = sliderRect(*bar);
            auto const across = bar->orientation == Qt::Horizontal;
            auto const& all = bar->rect;
            switch (static_cast<int>(part)) {
            case SC_ScrollBarGroove:
                return all;
            case SC_ScrollBarSlider:
                return slider;
            case SC_ScrollBarSubPage:
                return across ? QRect(all.topLeft(), QPoint(slider.left() - 1, all.bottom()))
                              : QRect(all.topLeft(), QPoint(all.right(), slider.top() - 1));
            case SC_ScrollBarAddPage:
                return across ? QRect(QPoint(slider.right() + 1, all.top()), all.bottomRight())
                              : QRect(QPoint(all.left(), slider.bottom() + 1), all.bottomRight());
            default:
                return {};
            }
        }
    }
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return option->rect.adjusted(8, 1, -24, -1);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

void Style::drawPrimitive(PrimitiveElement element, QStyleOption const* option, QPainter* painter,
                          QWidget const* widget) const {
    auto const& c = colors();
    switch (static_cast<int>(element)) {
    case PE_PanelMenu:
        painter->fillRect(option->rect, Theme::current().isDark() ? c.sidebar : c.window);
        return;
    case PE_FrameMenu:
        strokeRounded(*painter, option->rect, metrics::radius,
                      Theme::current().isDark() ? c.controlBorder : c.text3);
        return;
    case PE_PanelTipLabel:
        painter->fillRect(option->rect, c.control);
        strokeRounded(*painter, option->rect, 0, c.controlBorder);
        return;
    case PE_PanelLineEdit:
        if (auto const* frame = qstyleoption_cast<QStyleOptionFrame const*>(option);
            frame && frame->lineWidth > 0)
            drawField(*painter, *option);
        return;
    case PE_FrameLineEdit:
        return;
    case PE_PanelButtonCommand:
        if (auto const* button = qstyleoption_cast<QStyleOptionButton const*>(option))
            drawButtonPanel(*painter, *button, widget);
        return;
    case PE_IndicatorCheckBox:
        drawIndicator(*painter, *option, false);
        return;
    case PE_IndicatorRadioButton:
        drawIndicator(*painter, *option, true);
        return;
    case PE_FrameFocusRect:
        drawFocusRing(*painter, option->rect, metrics::radius);
        return;
    case PE_PanelScrollAreaCorner:
        return;
    case PE_Frame:
        strokeRounded(*painter, option->rect, 0, c.controlBorder);
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void Style::drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
                        QWidget const* widget) const {
    switch (static_cast<int>(element)) {
    case CE_MenuItem:
        if (auto const* item = qstyleoption_cast<QStyleOptionMenuItem const*>(option)) {
            painter->save();
            drawMenuItem(*painter, *item);
            painter->restore();
        }
        return;
    case CE_MenuEmptyArea:
    case CE_MenuHMargin:
    case CE_MenuVMargin:
        return;
    case CE_PushButtonBevel:
        drawPrimitive(PE_PanelButtonCommand, option, painter, widget);
        return;
    case CE_PushButtonLabel:
        if (auto const* button = qstyleoption_cast<QStyleOptionButton const*>(option);
            button && !(button->features & QStyleOptionButton::Flat) && isProminent(*button, widget)) {
            auto label = *button;
            for (auto const group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
                label.palette.setColor(group, QPalette::ButtonText, colors().onAccent);
            QProxyStyle::drawControl(element, &label, painter, widget);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, QStyleOptionComplex const* option, QPainter* painter,
                               QWidget const* widget) const {
    if (control == CC_ScrollBar) {
        if (auto const* bar = qstyleoption_cast<QStyleOptionSlider const*>(option))
            drawScrollBar(*painter, *bar);
        return;
    }
    if (control == CC_ComboBox) {
        if (auto const* combo = qstyleoption_cast<QStyleOptionComboBox const*>(option))
            drawComboBox(*painter, *combo);
        return;
    }
    if (auto const* slider = qstyleoption_cast<QStyleOptionSlider const*>(option);
        slider && control == CC_Slider && slider->orientation == Qt::Horizontal) {
        QRectF knob(0, 0, 11, 11);
        knob.moveCenter(QRectF(subControlRect(CC_Slider, slider, SC_SliderHandle, widget)).center());
        drawSlider(*painter, *slider, knob);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

} // namespace taliro
