#include "app/RootView.h"

#include "app/AppSettings.h"
#include "app/TitlebarMenu.h"
#include "browsing/BrowserState.h"
#include "browsing/DirectoryWatcher.h"
#include "browsing/QuickLookCoordinator.h"
#include "dragdrop/NewFolderCoordinator.h"
#include "dragdrop/NewFolderPrompt.h"
#include "dragdrop/ProgressCenter.h"
#include "dragdrop/ToastCenter.h"
#include "platform/Platform.h"
#include "views/FileBrowserView.h"
#include "views/MiniBrowserView.h"
#include "views/ProgressOverlay.h"
#include "views/Symbols.h"
#include "views/ToastOverlay.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPropertyAnimation>
#include <QStackedLayout>

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
    new NewFolderPrompt(NewFolderCoordinator::shared(), this);
    new ProgressOverlay(ProgressCenter::shared(), this);
    new ToastOverlay(ToastCenter::shared(), this);
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

QWidget* RootView::makeFull() {
    return new FileBrowserView(m_platform, m_browser, m_watcher, m_settings, this);
}

QWidget* RootView::makeMini() {
    return new MiniBrowserView(m_platform, m_browser, m_watcher, m_settings, this);
}

void RootView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    QuickLookCoordinator::shared().attach(m_browser);
}

void RootView::showTitle() {
    bool const popover = m_settings.popoverMode;
    m_title->setVisible(popover);
    m_strip->setVisible(!popover);
}

void RootView::showBrowser() {
    bool const mini = m_settings.miniMode;
    auto*& wanted = mini ? m_mini : m_full;
    if (wanted && wanted == m_shown)
        return;
    auto const before = m_shown && isVisible() ? m_shown->grab() : QPixmap();
    if (!wanted) {
        wanted = mini ? makeMini() : makeFull();
        m_stack->addWidget(wanted);
    }
    bool const hadFocus = m_shown && m_shown->isAncestorOf(QApplication::focusWidget());
    m_shown = wanted;
    m_stack->setCurrentWidget(wanted);
    if (hadFocus)
        focusBrowser();
    if (!before.isNull())
        crossFadeFrom(before);
}

void RootView::focusBrowser() {
    m_shown->setFocus(); // The view passes it on to its rows.
}

void RootView::crossFadeFrom(QPixmap const& before) {
    auto* picture = new FadingPicture(before, this);
    picture->setGeometry(m_stack->geometry());
    picture->show();
}

} // namespace taliro
