#pragma once

#include "views/Theme.h"

#include <QLabel>

namespace taliro {

/// A text of at most a few lines, broken anywhere if need be and cut in the middle: names have no spaces to
/// break at, and their ends tell as much as their beginnings.
class WrappedLabel : public QLabel {
    Q_OBJECT

public:
    WrappedLabel(QFont const& font, ColorRole color, int mostLines, QWidget* parent = nullptr);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
    bool event(QEvent* event) override;

private:
    QString shownText(int width) const;

    ColorRole m_color;
    int m_mostLines;
};

} // namespace taliro
