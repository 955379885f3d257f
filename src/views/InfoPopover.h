#pragma once

#include "foundation/Url.h"

#include <QWidget>

namespace taliro {

class FactRows;
class ThumbnailView;
class WrappedLabel;
struct Platform;

/// A small window at a row with what is known of its item; gone as soon as another window is used.
class InfoPopover : public QWidget {
    Q_OBJECT

public:
    InfoPopover(Platform& platform, QWidget* parent);

    /// Shows the facts beside `anchor`, in screen coordinates, or hides them if they are those shown.
    void toggle(Url const& item, QRect const& anchor);

    ThumbnailView& preview() const { return *m_preview; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void place(QRect const& anchor);

    Platform& m_platform;
    ThumbnailView* m_preview;
    WrappedLabel* m_name;
    FactRows* m_facts;
    Url m_lastItem;
    qint64 m_hiddenAt = 0; ///< milliseconds since 1970
};

} // namespace taliro
