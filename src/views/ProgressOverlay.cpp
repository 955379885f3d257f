#include "views/ProgressOverlay.h"

#include "views/Drawing.h"
#include "views/PushButton.h"
#include "views/Shadow.h"
#include "views/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QVBoxLayout>

namespace taliro {

namespace {

constexpr int cardWidth = 392; ///< a rate, two sizes and the time left side by side
constexpr int cardHeight = 64;
constexpr int spacing = 8;
constexpr int margin = 12;
constexpr int aboveBottom = 42; ///< so that the path bar stays in sight
constexpr int cornerRadius = 10;
constexpr std::size_t mostCards = 3;
constexpr int steps = 1000;
constexpr Shadow shadow{.opacity = .22, .blur = 12, .offset = 4};

/// A thin bar; where the end is unknown, a piece that runs along.
class ProgressLine : public QProgressBar {
public:
    using QProgressBar::QProgressBar;
    void setFraction(std::optional<double> fraction) {
        setRange(0, fraction ? steps : 0);
        if (fraction)
            setValue(static_cast<int>(*fraction * steps));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QRectF const track(0, (height() - 4) / 2.0, width(), 4);
        fillRounded(painter, track, 2, faded(colors().text1, .12));
        auto bar = track;
        if (maximum() > 0) {
            bar.setWidth(std::max(4.0, track.width() * value() / maximum()));
        } else { // the whole bar, pale: it moves no clock of its own
            painter.setOpacity(.35);
        }
        fillRounded(painter, bar, 2, colors().accent);
    }
};

/// A line of text, cut in its middle where it is too long.
class ElidedLabel : public QLabel {
public:
    ElidedLabel(ColorRole color, QWidget* parent) : QLabel(parent), m_color(color) {}
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(colors().*m_color);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
    }

private:
    ColorRole m_color;
};

} // namespace

class ProgressOverlay::CardView : public QWidget {
public:
    CardView(ProgressCenter& center, std::uint64_t id, QWidget* parent)
        : QWidget(parent),
          id(id),
          m_title(new ElidedLabel(&Colors::text1, this)),
          m_line(new ProgressLine(this)),
          m_detail(new ElidedLabel(&Colors::text2, this)),
          m_cancel(new PushButton(QObject::tr("Cancel"), PushButton::Kind::plain, this)) {
        auto const& theme = Theme::current();
        m_title->setFont(theme.font(metrics::list, QFont::Medium));
        m_detail->setFont(theme.font(metrics::small));
        m_line->setFixedHeight(8);
        m_line->setTextVisible(false);
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(margin, 8, margin, 8);
        row->setSpacing(margin);
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        column->addWidget(m_title);
        column->addWidget(m_line);
        column->addWidget(m_detail);
        row->addLayout(column, 1);
        row->addWidget(m_cancel);
        m_cancel->setFocusPolicy(Qt::TabFocus);
        connect(m_cancel, &QPushButton::clicked, this, [&center, id] { center.cancel(id); });
    }

    void show(ProgressCenter::Card const& card) {
        auto const title = QString::fromStdString(card.title);
        m_title->setText(title);
        m_line->setAccessibleName(title);
        m_line->setFraction(card.fraction());
        m_detail->setText(QString::fromStdString(card.detail()));
        m_cancel->setEnabled(!card.isCancelled);
    }

    std::uint64_t const id;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        fillRounded(painter, rect(), cornerRadius, colors().window);
        strokeRounded(painter, rect(), cornerRadius, faded(colors().text1, .1));
    }
    void mousePressEvent(QMouseEvent*) override {} // not through to the rows below

private:
    ElidedLabel* m_title;
    ProgressLine* m_line;
    ElidedLabel* m_detail;
    PushButton* m_cancel;
};

ProgressOverlay::ProgressOverlay(ProgressCenter& center, QWidget* parent)
    : Overlay(parent), m_center(center) {
    m_subscription = center.cards.observe([this](auto const& cards) { change(cards); });
    change(center.cards);
}

void ProgressOverlay::change(std::vector<ProgressCenter::Card> const& cards) {
    auto const count = std::min(cards.size(), mostCards);
    std::erase_if(m_views, [&](CardView* view) {
        auto const shown = std::span(cards).first(count);
        bool const isGone =
            std::ranges::none_of(shown, [&](auto const& card) { return card.id == view->id; });
        if (isGone) {
            view->hide();
            view->deleteLater(); // its button may be what is being clicked
        }
        return isGone;
    });
    for (std::size_t i = 0; i < count; ++i) {
        if (i == m_views.size())
            m_views.push_back(new CardView(m_center, cards[i].id, this));
        m_views[i]->show(cards[i]);
    }
    place();
    setVisible(!m_views.empty());
}

void ProgressOverlay::place() {
    auto const width = std::min(cardWidth, rect().width() - 2 * margin);
    auto top = rect().height() - aboveBottom;
    QRegion taken;
    for (auto* view : m_views) {
        top -= cardHeight;
        view->setGeometry((rect().width() - width) / 2, top, width, cardHeight);
        view->QWidget::show();
        auto const reach = shadow.blur + shadow.offset;
        taken += view->geometry().adjusted(-reach, -reach, reach, reach);
        top -= spacing;
    }
    if (!taken.isEmpty())
        setMask(taken);
    update();
}

void ProgressOverlay::resizeEvent(QResizeEvent* event) {
    Overlay::resizeEvent(event);
    place();
}

void ProgressOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (auto* view : m_views)
        drawShadow(painter, view->geometry(), cornerRadius, shadow);
}

} // namespace taliro
