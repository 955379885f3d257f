#include "views/NoAutoFocusSearchField.h"

#include "views/Drawing.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

namespace taliro {

NoAutoFocusSearchField::NoAutoFocusSearchField(QString const& placeholder, Published<std::string>& text,
                                               QWidget* parent)
    : QLineEdit(QString::fromStdString(text.get()), parent), m_text(text) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFrame(false);
    setFocusPolicy(Qt::ClickFocus);
    setFont(Theme::current().font(metrics::list));
    setStyleSheet(QStringLiteral("background: transparent; border: none; padding: 0"));
    connect(this, &QLineEdit::textEdited, this,
            [this](QString const& typed) { m_text = typed.toStdString(); });
    m_onText = m_text.observe([this](std::string const& changed) {
        if (auto const shown = QString::fromStdString(changed); shown != QLineEdit::text())
            setText(shown);
    });
}

void NoAutoFocusSearchField::takeFocus() {
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
}

void NoAutoFocusSearchField::giveUpFocus() {
    clearFocus();
    Q_EMIT gaveUpFocus();
}

void NoAutoFocusSearchField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        giveUpFocus();
        return;
    case Qt::Key_Escape:
        if (text().isEmpty())
            giveUpFocus();
        else
            m_text = std::string();
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void NoAutoFocusSearchField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    Q_EMIT focusChanged(true);
}

void NoAutoFocusSearchField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    Q_EMIT focusChanged(false);
}

namespace {

constexpr int fieldWidth = 140;
constexpr int padding = 7;
constexpr int glassPoints = 13;

} // namespace

SearchBox::SearchBox(Published<std::string>& text, QWidget* parent)
    : QWidget(parent), m_field(new NoAutoFocusSearchField(tr("Find in folder"), text, this)) {
    m_field->setFixedWidth(fieldWidth);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(padding + glassPoints + 5, 0, 2, 0);
    layout->addWidget(m_field);
    setFixedHeight(metrics::controlHeight);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(m_field, &NoAutoFocusSearchField::focusChanged, this, [this] { update(); });
}

void SearchBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    auto const& c = colors();
    fillRounded(painter, rect(), metrics::radius, c.control);
    if (m_field->hasFocus())
        strokeRounded(painter, rect(), metrics::radius, faded(c.accent, .7), 2);
    else
        strokeRounded(painter, rect(), metrics::radius, c.controlBorder, .5);
    drawSymbol(painter, QRectF(padding, 0, glassPoints, height()), "magnifyingglass", glassPoints, c.text2);
}

} // namespace taliro
