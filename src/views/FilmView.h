#pragma once

#include <QImage>
#include <QWidget>

namespace taliro {

/// A film's picture, as large as it fits.
class FilmView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    void setImage(QImage image);
    bool hasImage() const { return !m_image.isNull(); }

Q_SIGNALS:
    void clicked();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QImage m_image;
};

} // namespace taliro
