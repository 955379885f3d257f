#include "views/GoToBar.h"

#include "foundation/Text.h"
#include "views/Drawing.h"
#include "views/PushButton.h"
#include "views/Shadow.h"
#include "views/Symbols.h"
#include "views/Theme.h"
#include "views/ToolButton.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPainter>
#include <QPropertyAnimation>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QVBoxLayout>

namespace taliro {

namespace {

constexpr int rowHeight = 26;
constexpr int widest = 560;
constexpr int margin = 12;
constexpr int padding = 8;
constexpr int cornerRadius = 10;
constexpr Shadow shadow{.opacity = .2, .blur = 14, .offset = 5};
constexpr QMargins shadowReach(shadow.blur, shadow.blur - shadow.offset, shadow.blur,
                               shadow.blur + shadow.offset);
constexpr int fadeMilliseconds = 150;

/// A folder symbol and its path; the highlighted row in the accent colour.
class SuggestionDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(QStyleOptionViewItem const&, QModelIndex const&) const override {
        return {100, rowHeight};
    }
    void paint(QPainter* painter, QStyleOptionViewItem const& option,
               QModelIndex const& index) const override {
        bool const current = option.state & QStyle::State_Selected;
        auto const row = QRectF(option.rect).adjusted(4, 1, -4, -1);
        if (current)
            fillRounded(*painter, row, metrics::radius, colors().accent);
        auto const ink = current ? colors().onAccent : colors().text1;
        drawSymbol(*painter, QRectF(row.left() + 8, row.top(), 16, row.height()), "folder", 14,
                   current ? colors().onAccent : colors().accent);
        auto const font = Theme::current().font(metrics::list);
        auto const box = row.adjusted(30, 0, -8, 0);
        painter->setFont(font);
        painter->setPen(ink);
        painter->drawText(
            box, Qt::AlignVCenter | Qt::AlignLeft,
            QFontMetricsF(font).elidedText(index.data().toString(), Qt::ElideMiddle, box.width()));
    }
};

/// The folder symbol before the field.
class SymbolLabel : public QWidget {
public:
    explicit SymbolLabel(QWidget* parent) : QWidget(parent) { setFixedSize(22, 22); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawSymbol(painter, rect(), "arrow.right.circle", 16, colors().text2);
    }
};

/// A path as the field shows it and gives it back: bytes that are no text can't be typed.
QString shown(std::string const& path) {
    return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
}

} // namespace

GoToBar::GoToBar(GoToPath& path, QWidget* parent) : QFrame(parent), m_path(path) {
    setAccessibleName(tr("Go to folder"));
    setVisible(false);
    buildRows();
    parent->installEventFilter(this);

    m_subscriptions.push_back(m_path.isOpen.observe([this](bool open) { setOpen(open); }));
    m_subscriptions.push_back(m_path.text.observe([this](std::string const& text) {
        if (m_field->text() != shown(text))
            m_field->setText(shown(text));
    }));
    m_subscriptions.push_back(
        m_path.suggestions.observe([this](std::vector<Url> const& urls) { showSuggestions(urls); }));
    m_subscriptions.push_back(
        m_path.highlighted.observe([this](std::optional<std::size_t> const& index) { highlight(index); }));
}

void GoToBar::buildRows() {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(shadowReach + padding);
    rows->setSpacing(6);
    auto* bar = new QHBoxLayout;
    bar->setSpacing(8);
    rows->addLayout(bar);

    m_field = new QLineEdit(this);
    m_field->setFont(Theme::current().font(metrics::list));
    m_field->setPlaceholderText(tr("Go to folder (e.g. ~/Documents)"));
    m_field->setAccessibleName(tr("Go to folder"));
    connect(m_field, &QLineEdit::textEdited, this,
            [this](QString const& text) { m_path.setText(text.toUtf8().toStdString()); });

    buildHistoryMenu();
    auto* go = new PushButton(tr("Go"), PushButton::Kind::prominent, this);
    connect(go, &PushButton::clicked, this, [this] { m_path.commit(); });
    auto* cancel = new PushButton(tr("Cancel"), PushButton::Kind::plain, this);
    connect(cancel, &PushButton::clicked, this, [this] { m_path.close(); });
    bar->addWidget(new SymbolLabel(this));
    bar->addWidget(m_field, 1);
    bar->addWidget(m_history);
    bar->addWidget(go);
    bar->addWidget(cancel);

    m_divider = new QWidget(this);
    m_divider->setFixedHeight(1);
    rows->addWidget(m_divider);
    m_rows = new QStringListModel(this);
    m_suggestions = new QListView(this);
    m_suggestions->setModel(m_rows);
    m_suggestions->setItemDelegate(new SuggestionDelegate(m_suggestions));
    m_suggestions->setUniformItemSizes(true);
    m_suggestions->setFrameShape(QFrame::NoFrame);
    m_suggestions->viewport()->setAutoFillBackground(false);
    m_suggestions->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_suggestions->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_suggestions->setFocusPolicy(Qt::NoFocus);
    m_suggestions->setEditTriggers(QListView::NoEditTriggers);
    m_suggestions->setAccessibleName(tr("Suggestions"));
    connect(m_suggestions, &QListView::clicked, this, [this](QModelIndex const& index) {
        auto const row = static_cast<std::size_t>(index.row());
        if (row < m_path.suggestions->size())
            m_path.choose(Url(m_path.suggestions.get()[row]));
        m_field->setFocus();
    });
    rows->addWidget(m_suggestions);
}

void GoToBar::buildHistoryMenu() {
    m_history = new ToolButton("clock.arrow.circlepath", tr("Recent paths"), 15, this);
    m_historyMenu = new QMenu(this);
    connect(m_historyMenu, &QMenu::aboutToShow, this, [this] {
        m_historyMenu->clear();
        auto const paths = m_path.recentPaths();
        if (paths.empty())
            m_historyMenu->addAction(tr("No recent paths"))->setEnabled(false);
        for (auto const& path : paths) {
            auto* entry = m_historyMenu->addAction(
                shown(legible(path)).replace(QStringLiteral("&"), QStringLiteral("&&")));
            connect(entry, &QAction::triggered, this, [this, path] {
                m_path.setText(path);
                m_field->setFocus();
            });
        }
    });
    m_history->setMenu(m_historyMenu);
    m_history->setPopupMode(QToolButton::InstantPopup);
}

void GoToBar::setOpen(bool open) {
    if (open) {
        place();
        show();
        raise();
        fade(true);
        qApp->installEventFilter(this);
        // In the next turn: what opened the bar has its own say about the focus first.
        QTimer::singleShot(0, this, [this] {
            m_field->setFocus();
            m_field->end(false);
        });
    } else if (isVisible()) {
        bool const hadFocus = isAncestorOf(QApplication::focusWidget());
        qApp->removeEventFilter(this);
        fade(false);
        if (hadFocus)
            parentWidget()->setFocus();
    }
}

void GoToBar::fade(bool in) {
    auto* effect = new QGraphicsOpacityEffect(this);
    setGraphicsEffect(effect); // takes the place of an earlier one, whose animation ends with it
    auto* animation = new QPropertyAnimation(effect, "opacity", effect);
    animation->setDuration(fadeMilliseconds);
    animation->setEasingCurve(QEasingCurve::OutQuad);
    animation->setStartValue(in ? 0.0 : 1.0);
    animation->setEndValue(in ? 1.0 : 0.0);
    connect(animation, &QPropertyAnimation::finished, this, [this, in] {
        setVisible(in);
        setGraphicsEffect(nullptr);
    });
    animation->start();
}

void GoToBar::showSuggestions(std::vector<Url> const& suggestions) {
    QStringList paths;
    for (auto const& url : suggestions)
        paths.append(shown(legible(url.path())));
    m_rows->setStringList(paths);
    m_suggestions->setVisible(!paths.isEmpty());
    m_divider->setVisible(!paths.isEmpty());
    m_suggestions->setFixedHeight(static_cast<int>(paths.size()) * rowHeight);
    place();
}

void GoToBar::highlight(std::optional<std::size_t> index) {
    if (!index) {
        m_suggestions->selectionModel()->clear();
        return;
    }
    m_suggestions->setCurrentIndex(m_rows->index(static_cast<int>(*index)));
}

void GoToBar::place() {
    auto const available = parentWidget()->size();
    int const width = std::min(widest, available.width() - 2 * margin);
    layout()->activate();
    resize(width + shadowReach.left() + shadowReach.right(), sizeHint().height());
    move((available.width() - width) / 2 - shadowReach.left(), margin - shadowReach.top());
}

/// Keys that go through the suggestions, wherever in the window the keyboard is.
bool GoToBar::moveThroughSuggestions(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_path.pressReturn();
    case Qt::Key_Down:
        return m_path.pressDown();
    case Qt::Key_Up:
        return m_path.pressUp();
    default:
        return false;
    }
}

bool GoToBar::handleFieldKey(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_path.commit();
        return true;
    case Qt::Key_Escape:
        m_path.close();
        return true;
    default:
        return false;
    }
}

bool GoToBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    if (watched == m_field && event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        event->accept(); // Escape closes the bar, not what it lies in.
    if (event->type() == QEvent::KeyPress && watched == window()->focusWidget()) {
        int const key = static_cast<QKeyEvent*>(event)->key();
        if (moveThroughSuggestions(key) || (watched == m_field && handleFieldKey(key)))
            return true;
    }
    return QFrame::eventFilter(watched, event);
}

void GoToBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    auto const card = QRectF(rect().marginsRemoved(shadowReach));
    drawShadow(painter, card, cornerRadius, shadow);
    fillRounded(painter, card, cornerRadius, colors().window);
    strokeRounded(painter, card, cornerRadius, colors().controlBorder);
    if (m_divider->isVisible())
        painter.fillRect(m_divider->geometry(), colors().line);
}

} // namespace taliro
