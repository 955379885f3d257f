#pragma once

#include <QLineEdit>

#include <functional>

namespace taliro {

/// A field whose text is all selected when it takes the keyboard, so that typing replaces it.
class AutoSelectingTextField : public QLineEdit {
public:
    explicit AutoSelectingTextField(QWidget* parent = nullptr);

    std::function<void()> onSubmit; ///< Return
    std::function<void()> onCancel; ///< Escape

    /// In the next turn, when it is surely on screen.
    void takeFocusSoon();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace taliro
