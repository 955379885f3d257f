#pragma once

#include <QCheckBox>

class QVariantAnimation;

namespace taliro {

/// An on-off switch without a text of its own; to assistive tools it is a check box called `label`.
class Switch : public QCheckBox {
    Q_OBJECT

public:
    explicit Switch(QString const& label, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {34, 20}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override;
    bool hitButton(QPoint const& position) const override { return rect().contains(position); }

private:
    void moveKnob(bool on);

    QVariantAnimation* m_motion;
    qreal m_position = 0; ///< of the knob: 0 off, 1 on
};

} // namespace taliro
