#pragma once

#include "foundation/Url.h"

#include <QWidget>

#include <optional>

namespace taliro {

/// What stands in the path bar's place for a location that is no folder: its title and the selected item's
/// name.
class SmartFolderLabel : public QWidget {
public:
    explicit SmartFolderLabel(QWidget* parent = nullptr);

    void setLocation(Url const& location, std::optional<Url> const& selection);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    bool m_isRecents = false;
    QString m_selected; ///< empty while nothing is
};

} // namespace taliro
