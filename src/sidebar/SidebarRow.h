#pragma once

#include "sidebar/SidebarItem.h"

#include <QAbstractButton>

#include <functional>
#include <string>

class QMenu;

namespace taliro {

class ToolButton;

/// One place in the sidebar; a click opens it.
class SidebarRow : public QAbstractButton {
    Q_OBJECT

public:
    explicit SidebarRow(QWidget* parent = nullptr);

    void setItem(SidebarItem const& item);
    SidebarItem const& item() const { return m_item; }
    /// Marks the row of the folder that the browser shows.
    void setCurrent(bool current);
    /// With a button at the row's end that ejects.
    void setEjectable(std::function<void()> eject);

    /// Fills the row's context menu; none is shown where it stays empty.
    std::function<void(QMenu&)> fillMenu;

    QSize sizeHint() const override { return {100, 26}; }

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;

private:
    void placeEject();
    QRect titleRect() const;
    bool isTitleCut() const;

    SidebarItem m_item;
    bool m_current = false;
    ToolButton* m_eject = nullptr;
};

} // namespace taliro
