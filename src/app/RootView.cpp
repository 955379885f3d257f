#include "app/RootView.h"

#include "app/AppSettings.h"
#include "app/TitlebarMenu.h"
#include "platform/Platform.h"
#include "views/FileBrowserView.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QStackedLayout>
#include <QWindow>

namespace taliro {

namespace {

constexpr int titleHeight = 31;
constexpr int stripHeight = 7;
constexpr int fadeMilliseconds = 150;

/// The folder symbol in the accent colour.
class TitleSymbol : public QWidget {
public:
    explicit TitleSymbol(QWidget* parent) : QWidget(parent) { setFixedSize(16, 16); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawSymbol(painter, rect(), "folder", 16, colors().accent);
    }
};

/// A line under the title.
class TitleBar : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(0, height() - 1, width(), 1, colors().hair);
    }
};

/// A picture that fades away and is gone.
class FadingPicture : public QWidget {
public:
    FadingPicture(QPixmap picture, QWidget* parent) : QWidget(parent), m_picture(std::move(picture)) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        auto* fade = new QVariantAnimation(this);
        fade->setDuration(fadeMilliseconds);
        fade->setStartValue(1.0);
        fade->setEndValue(0.0);
        connect(fade, &QVariantAnimation::valueChanged, this, [this](QVariant const& opacity) {
            m_opacity = opacity.toDouble();
            update();
        });
        connect(fade, &QVariantAnimation::finished, this, &QObject::deleteLater);
        fade->start();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setOpacity(m_opacity);
        painter.drawPixmap(0, 0, m_picture);
    }

private:
    QPixmap m_picture;
    double m_opacity = 1;
};

} // namespace

RootView::RootView(Platform& platform, BrowserState& browser, DirectoryWatcher& watcher,
                   AppSettings& settings)
    : m_platform(platform),
      m_browser(browser),
      m_watcher(watcher),
      m_settings(settings),
      m_title(makeTitle()),
      m_strip(new QWidget(this)),
      m_stack(new QStackedLayout),
      m_refresher(platform.mainQueue, [this] {
          showTitle();
          showBrowser();
      }) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    m_strip->setFixedHeight(stripHeight);
    rows->addWidget(m_title);
    rows->addWidget(m_strip);
    rows->addLayout(m_stack, 1);
    m_refresher.dependOn(settings.popoverMode);
    m_refresher.dependOn(settings.miniMode);
    showTitle();
    showBrowser();
}

QWidget* RootView::makeTitle() {
    auto* bar = new TitleBar(this);
    bar->setFixedHeight(titleHeight);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(12, 0, 0, 0);
    row->setSpacing(7);
    row->addWidget(new TitleSymbol(bar));
    auto* title = new QLabel(QStringLiteral("Taliro"), bar);
    title->setFont(Theme::current().headline());
    row->addWidget(title);
    row->addStretch();
    row->addWidget(new TitlebarMenu(m_settings, bar));
    return bar;
}

void RootView::showTitle() {
    bool const popover = m_settings.popoverMode;
    m_title->setVisible(popover);
    m_strip->setVisible(!popover);
}

void RootView::showBrowser() {
    if (m_full)
        return;
    m_full = new FileBrowserView(m_platform, m_browser, m_watcher, m_settings, this);
    m_stack->addWidget(m_full);
}

void RootView::focusBrowser() {
    m_full->focusContent();
}

void RootView::crossFadeFrom(QPixmap const& before) {
    auto* picture = new FadingPicture(before, this);
    picture->setGeometry(m_stack->geometry());
    picture->show();
    for (auto* overlay : m_overlays)
        overlay->raise();
}

void RootView::resizeEvent(QResizeEvent*) {
    for (auto* overlay : m_overlays)
        overlay->setGeometry(rect());
}

void RootView::mousePressEvent(QMouseEvent* event) {
    bool const onStrip = m_strip->isVisible() && m_strip->geometry().contains(event->position().toPoint());
    if (onStrip && event->button() == Qt::LeftButton)
        window()->windowHandle()->startSystemMove();
}

} // namespace taliro
