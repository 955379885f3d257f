#include "sidebar/SidebarNotices.h"

#include "sidebar/SidebarLabels.h"
#include "views/Drawing.h"
#include "views/ToolButton.h"

#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QPainter>
#include <QPropertyAnimation>

namespace taliro {

namespace {
constexpr int fadeMilliseconds = 200;
constexpr qreal noticeText = 10.5;
} // namespace

SyncBanner::SyncBanner(QWidget* parent)
    : QWidget(parent),
      m_opacity(new QGraphicsOpacityEffect(this)),
      m_fade(new QPropertyAnimation(m_opacity, "opacity", this)) {
    auto const& theme = Theme::current();
    auto* head = new QHBoxLayout;
    head->setSpacing(6);
    head->addWidget(ThemedLabel::symbol("arrow.triangle.2.circlepath", 12, &Colors::onAccent, this));
    head->addWidget(new ThemedLabel(QStringLiteral("Sync with Finder"),
                                    theme.font(metrics::small, QFont::DemiBold), &Colors::onAccent, 1, this),
                    1);
    auto* dismiss = new ToolButton("xmark", QStringLiteral("Dismiss"), 9, this);
    dismiss->setFixedSize(17, 17);
    dismiss->setTint(&Colors::onAccent);
    head->addWidget(dismiss);

    auto* text = new ThemedLabel(QStringLiteral("Mirror your Finder sidebar favorites here."),
                                 theme.font(noticeText), &Colors::onAccent, .85, this);
    text->setWordWrap(true);
    auto* enable = new TextButton(QStringLiteral("Enable"),
                                  {.font = theme.font(metrics::small, QFont::DemiBold),
                                   .color = &Colors::accent,
                                   .background = &Colors::onAccent,
                                   .paddingX = 10,
                                   .paddingY = 3},
                                  this);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(10, 8, 8, 10);
    column->setSpacing(4);
    column->addLayout(head);
    column->addWidget(text);
    column->addSpacing(2);
    column->addWidget(enable, 0, Qt::AlignLeft);

    setGraphicsEffect(m_opacity);
    m_opacity->setOpacity(0);
    m_fade->setDuration(fadeMilliseconds);
    hide();
    connect(m_fade, &QPropertyAnimation::finished, this, [this] {
        setVisible(m_shown);
        m_opacity->setEnabled(false); // Drawing through it costs; it is needed only for fading.
    });
    connect(dismiss, &QAbstractButton::clicked, this, &SyncBanner::dismissed);
    connect(enable, &QAbstractButton::clicked, this, &SyncBanner::enabled);
}

void SyncBanner::setShown(bool shown, bool animated) {
    if (m_shown == shown)
        return;
    m_shown = shown;
    m_fade->stop();
    if (!animated) {
        m_opacity->setEnabled(false);
        setVisible(shown);
        return;
    }
    m_opacity->setEnabled(true);
    m_fade->setStartValue(shown ? 0.0 : 1.0);
    m_fade->setEndValue(shown ? 1.0 : 0.0);
    show();
    m_fade->start();
}

void SyncBanner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillRounded(painter, rect(), 8, colors().accent);
}

AccessFooter::AccessFooter(QWidget* parent) : QWidget(parent) {
    auto const& theme = Theme::current();
    auto* head = new QHBoxLayout;
    head->setSpacing(5);
    head->addWidget(ThemedLabel::symbol("exclamationmark.triangle.fill", 10, &Colors::warning, this));
    head->addWidget(new ThemedLabel(QStringLiteral("Full Disk Access needed"),
                                    theme.font(noticeText, QFont::Medium), &Colors::warning, 1, this),
                    1);

    auto* settings = new TextButton(QStringLiteral("Open Settings"),
                                    {.font = theme.font(noticeText), .color = &Colors::accent}, this);
    auto* turnOff = new TextButton(QStringLiteral("Turn off sync"),
                                   {.font = theme.font(noticeText), .color = &Colors::text1}, this);
    auto* actions = new QHBoxLayout;
    actions->setSpacing(12);
    actions->addWidget(settings);
    actions->addWidget(turnOff);
    actions->addStretch();

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 0, 8, 2);
    column->setSpacing(4);
    column->addLayout(head);
    column->addLayout(actions);

    connect(settings, &QAbstractButton::clicked, this, &AccessFooter::settingsWanted);
    connect(turnOff, &QAbstractButton::clicked, this, &AccessFooter::turnedOff);
}

} // namespace taliro
