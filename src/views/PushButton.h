#pragma once

#include <QPushButton>

namespace taliro {

/// A button with a text: plain, or prominent where it is the one that Return presses.
class PushButton : public QPushButton {
    Q_OBJECT

public:
    enum class Kind { plain, prominent };

    explicit PushButton(QString const& text, Kind kind = Kind::plain, QWidget* parent = nullptr);

    bool isProminent() const { return m_kind == Kind::prominent; }

private:
    Kind m_kind;
};

} // namespace taliro
