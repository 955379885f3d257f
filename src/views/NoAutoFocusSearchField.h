#pragma once

#include "foundation/Published.h"

#include <QLineEdit>

namespace taliro {

/// A field bound to a text. It has the keyboard only once it is clicked or asked for, never because its
/// window opened.
class NoAutoFocusSearchField : public QLineEdit {
    Q_OBJECT

public:
    NoAutoFocusSearchField(QString const& placeholder, Published<std::string>& text,
                           QWidget* parent = nullptr);

    void takeFocus();

Q_SIGNALS:
    void focusChanged(bool focused);
    /// Return was pressed, or Escape in an empty field: the keyboard is someone else's now.
    void gaveUpFocus();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void giveUpFocus();

    Published<std::string>& m_text;
    Subscription m_onText;
};

/// The search field in its rounded box, with a magnifying glass.
class SearchBox : public QWidget {
    Q_OBJECT

public:
    explicit SearchBox(Published<std::string>& text, QWidget* parent = nullptr);

    NoAutoFocusSearchField* field() const { return m_field; }

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override { m_field->takeFocus(); }

private:
    NoAutoFocusSearchField* m_field;
};

} // namespace taliro
