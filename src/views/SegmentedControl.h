#pragma once

#include <QWidget>

#include <string_view>
#include <vector>

class QButtonGroup;

namespace taliro {

class ToolButton;

/// A row of symbols of which one is chosen, with the mouse or the arrow keys; radio buttons to assistive
/// tools.
class SegmentedControl : public QWidget {
    Q_OBJECT

public:
    /// `label` names the whole control.
    explicit SegmentedControl(QString const& label, QWidget* parent = nullptr);

    void addSegment(std::string_view symbol, QString const& label);

    /// -1 while none is chosen.
    int current() const;
    /// Chooses without emitting `chosen`.
    void setCurrent(int index);

Q_SIGNALS:
    /// The user chose the segment at `index`.
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QButtonGroup* m_segments;
};

/// Push buttons that stand as one bordered group, such as back and forward.
class ButtonGroup : public QWidget {
    Q_OBJECT

public:
    explicit ButtonGroup(QString const& label, QWidget* parent = nullptr);

    /// Takes `button` in, as wide as a segment.
    void add(ToolButton* button);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::vector<ToolButton*> m_buttons;
};

} // namespace taliro
