#pragma once

#include "views/BrowserKeys.h"
#include "views/RowsView.h"

namespace taliro {

/// The rows of the current location as a list.
class FileListView : public RowsView {
public:
    FileListView(Platform& platform, BrowserState& state, QWidget* parent = nullptr);

    bool handleKey(QKeyEvent const& event);

protected:
    void paintCell(QPainter& painter, QRect const& cell, FileEntry const& entry, bool selected) override;
    QColor chevronColor(bool selected) const override;
    void revealSelection(Url const& url) override { reveal(url, Place::centre); }

private:
    BrowserKeys m_keys;
};

} // namespace taliro
