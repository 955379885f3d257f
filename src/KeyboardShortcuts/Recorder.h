#pragma once

#include "KeyboardShortcuts/RecorderCocoa.h"

#include <QWidget>

namespace taliro {

/// The recorder of a form's row: what `RecorderCocoa` is, on the program's own platform and shortcuts.
class Recorder : public QWidget {
    Q_OBJECT

public:
    /// `onChange` is called with what the user chose; nothing when they cleared it.
    Recorder(Name name, std::function<void(std::optional<Shortcut> const&)> onChange,
             QWidget* parent = nullptr);

    RecorderCocoa& field() { return *m_field; }

private:
    RecorderCocoa* m_field;
};

} // namespace taliro
