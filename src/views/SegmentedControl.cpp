#include "views/SegmentedControl.h"

#include "views/Drawing.h"
#include "views/Symbols.h"
#include "views/ToolButton.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QRadioButton>

#include <string>

namespace taliro {
namespace {

constexpr int segmentWidth = 30;

void layOut(QWidget* group) {
    auto* layout = new QHBoxLayout(group);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    group->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    group->setFixedHeight(metrics::controlHeight);
}

class Segment : public QRadioButton {
public:
    Segment(std::string_view symbol, QString const& label, QWidget* parent)
        : QRadioButton(parent), m_symbol(symbol) {
        setAccessibleName(label);
        setToolTip(label);
        setFocusPolicy(Qt::TabFocus);
        setFixedSize(segmentWidth, metrics::controlHeight);
        setAttribute(Qt::WA_Hover);
    }

protected:
    bool hitButton(QPoint const& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChecked())
            painter.fillPath(outline(), colors().accent);
        else if (isDown() || underMouse())
            painter.fillPath(outline(), isDown() ? colors().pressed : colors().hover);
        drawSymbol(painter, rect(), m_symbol, 15, isChecked() ? colors().onAccent : colors().text2);
        if (hasFocus())
            strokeRounded(painter, rect(), metrics::radius, faded(colors().onAccent, .7), 2);
    }

private:
    /// Ours, with the round corners of the whole control where we are at its end.
    QPainterPath outline() const {
        QPainterPath whole;
        whole.addRoundedRect(QRectF(-pos(), parentWidget()->size()), metrics::radius, metrics::radius);
        QPainterPath own;
        own.addRect(rect());
        return whole.intersected(own);
    }

    std::string m_symbol;
};

void paintGroup(QWidget& group, std::vector<int> const& separators) {
    QPainter painter(&group);
    fillRounded(painter, group.rect(), metrics::radius, colors().control);
    for (auto const x : separators)
        painter.fillRect(x, 1, 1, group.height() - 2, colors().hair);
    strokeRounded(painter, group.rect(), metrics::radius, colors().controlBorder);
}

} // namespace

SegmentedControl::SegmentedControl(QString const& label, QWidget* parent)
    : QWidget(parent), m_segments(new QButtonGroup(this)) {
    setAccessibleName(label);
    layOut(this);
    connect(m_segments, &QButtonGroup::idClicked, this, &SegmentedControl::chosen);
}

void SegmentedControl::addSegment(std::string_view symbol, QString const& label) {
    auto* segment = new Segment(symbol, label, this);
    m_segments->addButton(segment, static_cast<int>(m_segments->buttons().size()));
    layout()->addWidget(segment);
}

int SegmentedControl::current() const {
    return m_segments->checkedId();
}

void SegmentedControl::setCurrent(int index) {
    if (auto* segment = m_segments->button(index))
        segment->setChecked(true);
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    std::vector<int> separators;
    for (auto const* segment : m_segments->buttons())
        if (segment->x() > 0)
            separators.push_back(segment->x());
    paintGroup(*this, separators);
}

ButtonGroup::ButtonGroup(QString const& label, QWidget* parent) : QWidget(parent) {
    setAccessibleName(label);
    layOut(this);
}

void ButtonGroup::add(ToolButton* button) {
    button->setFixedSize(segmentWidth, metrics::controlHeight);
    layout()->addWidget(button);
    m_buttons.push_back(button);
}

void ButtonGroup::paintEvent(QPaintEvent*) {
    std::vector<int> separators;
    for (auto const* button : m_buttons)
        if (button->x() > 0)
            separators.push_back(button->x());
    paintGroup(*this, separators);
}

} // namespace taliro
