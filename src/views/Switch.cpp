#include "views/Switch.h"

#include "views/Drawing.h"
#include "views/Theme.h"

#include <QPainter>
#include <QVariantAnimation>

namespace taliro {
namespace {

QColor blended(QColor const& from, QColor const& to, qreal amount) {
    auto const mix = [amount](int a, int b) { return qRound(a + (b - a) * amount); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

} // namespace

Switch::Switch(QString const& label, QWidget* parent)
    : QCheckBox(parent), m_motion(new QVariantAnimation(this)) {
    setAccessibleName(label);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_motion->setDuration(120);
    m_motion->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_motion, &QVariantAnimation::valueChanged, this, [this](QVariant const& value) {
        m_position = value.toReal();
        update();
    });
    connect(this, &QCheckBox::toggled, this, &Switch::moveKnob);
}

void Switch::moveKnob(bool on) {
    m_motion->stop();
    auto const target = on ? 1.0 : 0.0;
    if (!isVisible()) {
        m_position = target;
        return;
    }
    m_motion->setStartValue(m_position);
    m_motion->setEndValue(target);
    m_motion->start();
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(.45);
    auto const track = QRectF((width() - 34) / 2, (height() - 20) / 2, 34, 20);
    fillRounded(painter, track, 10, blended(colors().text3, colors().accent, m_position));
    auto const knob = QRectF(track.left() + 2 + 14 * m_position, track.top() + 2, 16, 16);
    fillRounded(painter, knob.translated(0, .7), 8, QColor(0, 0, 0, 50));
    fillRounded(painter, knob, 8, Qt::white);
    if (hasFocus())
        strokeRounded(painter, track, 10, faded(colors().text1, .55), 1.5);
}

} // namespace taliro
