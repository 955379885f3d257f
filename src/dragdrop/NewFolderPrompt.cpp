#include "dragdrop/NewFolderPrompt.h"

#include "dragdrop/AutoSelectingTextField.h"
#include "dragdrop/NewFolderCoordinator.h"
#include "foundation/Text.h"
#include "views/Drawing.h"
#include "views/Names.h"
#include "views/PushButton.h"
#include "views/Shadow.h"
#include "views/Theme.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace taliro {

namespace {

constexpr int cardWidth = 320;
constexpr int cardPadding = 16;
constexpr int cornerRadius = 10;
constexpr int fadeMilliseconds = 150;
constexpr double backdropOpacity = .18;
constexpr Shadow shadow{.opacity = .25, .blur = 22, .offset = 4};

/// A line in the colour of what is read second, cut in its middle where it is too long.
class Question : public QLabel {
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(colors().text2);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
    }
};

class Card : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        fillRounded(painter, rect(), cornerRadius, colors().window);
        strokeRounded(painter, rect(), cornerRadius, faded(colors().text1, .08)); // sets it off in the dark
    }
};

} // namespace

NewFolderPrompt::NewFolderPrompt(NewFolderCoordinator& coordinator, QWidget* parent)
    : Overlay(parent),
      m_coordinator(coordinator),
      m_card(makeCard()),
      m_opacity(new QGraphicsOpacityEffect(this)) {
    setAccessibleName(tr("New Folder"));
    m_opacity->setOpacity(0);
    setGraphicsEffect(m_opacity);
    auto* centred = new QVBoxLayout(this);
    centred->addWidget(m_card, 0, Qt::AlignCenter);
    m_fade.setDuration(fadeMilliseconds);
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
            [this](QVariant const& opacity) { m_opacity->setOpacity(opacity.toDouble()); });
    connect(&m_fade, &QVariantAnimation::finished, this, [this] {
        if (m_opacity->opacity() == 0)
            hide();
    });
    m_onRequest = coordinator.promptingIn.observe([this](auto const& folder) { change(folder); });
    m_onName = coordinator.proposedName.observe([this](std::string const& name) { setName(name); });
    setName(coordinator.proposedName);
    change(coordinator.promptingIn);
}

QWidget* NewFolderPrompt::makeCard() {
    auto const& theme = Theme::current();
    auto* card = new Card(this);
    card->setFixedWidth(cardWidth);
    auto* rows = new QVBoxLayout(card);
    rows->setContentsMargins(cardPadding, cardPadding, cardPadding, cardPadding);
    rows->setSpacing(8);

    auto* title = new QLabel(tr("New Folder"), card);
    title->setFont(theme.headline());
    rows->addWidget(title);
    m_question = new Question(card);
    m_question->setFont(theme.font(metrics::list));
    m_question->setTextFormat(Qt::PlainText);
    rows->addWidget(m_question);
    m_field = new AutoSelectingTextField(card);
    m_field->setAccessibleName(tr("Name of the new folder"));
    m_field->onSubmit = [this] { create(); };
    m_field->onCancel = [this] { cancel(); };
    rows->addWidget(m_field);

    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, 4, 0, 0);
    buttons->setSpacing(8);
    buttons->addStretch();
    m_cancel = new PushButton(tr("Cancel"), PushButton::Kind::plain, card);
    m_create = new PushButton(tr("Create"), PushButton::Kind::prominent, card);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_create);
    rows->addLayout(buttons);
    connect(m_cancel, &QPushButton::clicked, this, [this] { cancel(); });
    connect(m_create, &QPushButton::clicked, this, [this] { create(); });
    connect(m_field, &QLineEdit::textChanged, this, [this](QString const& text) {
        auto const bytes = text.toStdString();
        m_create->setEnabled(!trimmingWhitespaceAndNewlines(bytes).empty());
    });
    return card;
}

void NewFolderPrompt::change(std::optional<Url> const& folder) {
    if (!folder) {
        if (isHidden())
            return;
        if (isAncestorOf(QApplication::focusWidget()) && m_focusBefore)
            m_focusBefore->setFocus();
        fadeTo(0);
        return;
    }
    m_question->setText(tr("Name of new folder in “%1”").arg(shownName(folder->lastPathComponent())));
    if (auto* focused = QApplication::focusWidget(); focused && !isAncestorOf(focused))
        m_focusBefore = focused;
    show();
    fadeTo(1);
    m_field->takeFocusSoon();
}

void NewFolderPrompt::setName(std::string const& name) {
    auto const text = QString::fromStdString(name);
    if (m_field->text() != text)
        m_field->setText(text);
}

void NewFolderPrompt::create() {
    auto const name = m_field->text().toStdString();
    // Later, and without us: the event loop may turn while items move, and the window may change.
    QMetaObject::invokeMethod(
        qApp, [&coordinator = m_coordinator, name] { coordinator.commit(name); }, Qt::QueuedConnection);
}

void NewFolderPrompt::cancel() {
    m_coordinator.cancel();
}

void NewFolderPrompt::fadeTo(double opacity) {
    m_fade.stop();
    m_fade.setStartValue(m_opacity->opacity());
    m_fade.setEndValue(opacity);
    m_fade.start();
}

/// The keyboard stays in the prompt.
bool NewFolderPrompt::focusNextPrevChild(bool next) {
    QWidget* const order[] = {m_field, m_cancel, m_create};
    constexpr int count = 3;
    int current = 0;
    for (int i = 0; i < count; ++i)
        if (order[i]->hasFocus())
            current = i;
    for (int step = 1; step < count; ++step) {
        auto* candidate = order[(current + (next ? step : count - step)) % count];
        if (!candidate->isEnabled())
            continue;
        candidate->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        break;
    }
    return true;
}

void NewFolderPrompt::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        cancel();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_cancel->hasFocus() ? cancel() : create();
    event->accept(); // nothing goes through to the rows below
}

bool NewFolderPrompt::isOnBackdrop(QMouseEvent const& event) const {
    return !m_card->geometry().contains(event.position().toPoint());
}

void NewFolderPrompt::mousePressEvent(QMouseEvent* event) {
    m_isPressedOutside = isOnBackdrop(*event);
}

void NewFolderPrompt::mouseReleaseEvent(QMouseEvent* event) {
    if (std::exchange(m_isPressedOutside, false) && isOnBackdrop(*event))
        cancel();
}

void NewFolderPrompt::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0, 0, 0, static_cast<int>(backdropOpacity * 255)));
    drawShadow(painter, m_card->geometry(), cornerRadius, shadow);
}

} // namespace taliro
