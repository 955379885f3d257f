#include "views/PushButton.h"

namespace taliro {

PushButton::PushButton(QString const& text, Kind kind, QWidget* parent)
    : QPushButton(text, parent), m_kind(kind) {
    setAutoDefault(false);
    setDefault(isProminent());
}

} // namespace taliro
