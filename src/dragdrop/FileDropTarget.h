#pragma once

#include "dragdrop/SpringLoad.h"
#include "foundation/Url.h"

#include <QBasicTimer>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <functional>
#include <optional>

class QDropEvent;
class QWidget;

namespace taliro {

class BrowserState;
class DropHighlight;
class PasteboardDropHandler;
struct Platform;

/// Makes a widget of rows take drops: on its folder rows, which spring open under a resting drag, and on the
/// rest of it for the folder that it shows. Owned by the widget.
class FileDropTarget : public QObject {
public:
    struct FolderRow {
        Url folder;
        QRect rect; ///< in the surface's coordinates
    };
    /// What the surface shows, asked for while a drag is over it. Each but `onOpen` may be empty.
    struct Places {
        /// The folder row under a point, if there is one.
        std::function<std::optional<FolderRow>(QPoint)> folderRowAt;
        /// The folder that the surface as a whole stands for; without it only rows take drops.
        std::function<Url()> destination;
        /// A folder sprang open.
        std::function<void(Url const& folder)> onOpen;
        /// Where a drop on a row goes that has not become the target yet: the browser's folder.
        std::function<Url()> currentFolder;
        /// Whether the surface as a whole, a row that isn't the target yet included, is where a drop would
        /// go.
        std::function<void(bool)> onTargeted;
        bool singleStage = false; ///< rows open without having been marked first
    };

    /// `surface` is the widget whose coordinates are meant: the viewport of a scrolling view.
    FileDropTarget(QWidget& surface, Places places, Platform& platform, PasteboardDropHandler& handler);
    ~FileDropTarget() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    bool dragMoved(QDropEvent& event);
    void dragLeft();
    bool dropped(QDropEvent& event);
    void track(QPoint position);
    void enterRow(FolderRow const& row);
    void leaveRow();
    bool isTarget() const;
    void setTargeted(bool targeted);
    void showRow();
    void scrollAtEdges();

    QWidget& m_surface;
    Places m_places;
    PasteboardDropHandler& m_handler;
    QPointer<DropHighlight> m_highlight;
    SpringLoad m_spring;
    std::optional<FolderRow> m_row;
    bool m_carriesFiles = false;
    bool m_targeted = false;
    bool m_wasBlinking = false;
    QPoint m_position;
    QBasicTimer m_resting; ///< looks again while the drag rests: rows may move under it
};

/// Makes a widget that stands for one folder take drops and, under a resting drag, open it in the browser.
void attachFolderDrop(QWidget& widget, std::function<Url()> folder, BrowserState& state, Platform& platform);

} // namespace taliro
