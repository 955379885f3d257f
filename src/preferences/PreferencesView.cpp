#include "preferences/PreferencesView.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "app/AppSettings.h"
#include "platform/HotKeys.h"
#include "platform/Platform.h"
#include "preferences/CLIInstallRow.h"
#include "preferences/Form.h"
#include "preferences/ShortcutRow.h"
#include "sidebar/FavoritesStore.h"
#include "sidebar/Locations.h"
#include "views/Drawing.h"
#include "views/PushButton.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QScrollArea>
#include <QStackedLayout>

namespace taliro {

namespace {

constexpr QSize viewSize(480, 360);
constexpr int edge = 16;
constexpr int sectionGap = 14;

/// Says why the favorites are not those of the file manager.
class AccessWarning : public QWidget {
public:
    explicit AccessWarning(Platform& platform, QWidget* parent) : QWidget(parent) {
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, form::helpBottom + 2);
        m_box = new QWidget(this);
        column->addWidget(m_box);
        auto* row = new QHBoxLayout(m_box);
        row->setContentsMargins(10, 6, 6, 6);
        row->setSpacing(8);
        row->addWidget(new FormSymbol("exclamationmark.triangle.fill", 14, &Colors::warning, m_box));
        row->addWidget(
            new FormText(PreferencesView::tr("Full Disk Access isn't granted — showing default favorites."),
                         &Colors::text1, metrics::small, m_box),
            1);
        auto* settings =
            new PushButton(PreferencesView::tr("Open System Settings"), PushButton::Kind::plain, m_box);
        settings->setFont(Theme::current().font(metrics::small));
        row->addWidget(settings);
        connect(settings, &QAbstractButton::clicked, this,
                [&platform] { FinderSync::openFullDiskAccessSettings(platform); });
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        fillRounded(painter, m_box->geometry(), metrics::radius, faded(colors().warning, .10));
    }

private:
    QWidget* m_box;
};

} // namespace

PreferencesView::PreferencesView(Platform& platform, FavoritesStore& favorites, AppSettings& settings,
                                 PreferencesTabSelection& selection, QWidget* parent)
    : QWidget(parent),
      m_platform(platform),
      m_favorites(favorites),
      m_settings(settings),
      m_pages(new QStackedLayout(this)) {
    setFixedSize(viewSize);
    m_pages->addWidget(makeGeneral());
    m_pages->addWidget(makeAppearance());
    m_pages->addWidget(makeAdvanced());
    auto const showTab = [this](PreferencesTab tab) { m_pages->setCurrentIndex(static_cast<int>(tab)); };
    showTab(selection.current);
    m_subscriptions.push_back(selection.current.observe(showTab));
}

QWidget* PreferencesView::makePage(std::vector<QWidget*> const& sections) {
    auto* page = new QScrollArea(this);
    page->setFrameShape(QFrame::NoFrame);
    page->setWidgetResizable(true);
    page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page->setFocusPolicy(Qt::NoFocus);
    page->viewport()->setAutoFillBackground(false);
    auto* content = new QWidget;
    content->setAutoFillBackground(false);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(edge, 12, edge, 12);
    column->setSpacing(sectionGap);
    for (auto* section : sections)
        column->addWidget(section);
    column->addStretch();
    page->setWidget(content);
    return page;
}

QWidget* PreferencesView::makeGeneral() {
    auto* launch = new FormSection(tr("Launch"), this);
    launch->addSwitch(tr("Start at login"), m_settings.startAtLogin,
                      [this](bool on) { m_settings.setStartAtLogin(on); });

    auto* menuBar = new FormSection(tr("Menu Bar"), this);
    menuBar->addSwitch(tr("Show icon in menu bar"), m_settings.showMenuBarIcon,
                       [this](bool on) { m_settings.setShowMenuBarIcon(on); });
    auto* help = menuBar->addHelp(tr("Open Taliro from Finder to reach Preferences again."));
    help->setVisible(!m_settings.showMenuBarIcon);
    m_subscriptions.push_back(
        m_settings.showMenuBarIcon.observe([help](bool shown) { help->setVisible(!shown); }));

    auto* shortcut = new FormSection(tr("Keyboard Shortcut"), this);
    shortcut->add(new ShortcutRow(KeyboardShortcuts::shared(), shortcut));
    shortcut->addHelp(tr("A global hotkey that shows or hides Taliro from anywhere on the system. Click the "
                         "field and press the key combination you want."));
    addHotKeyNotice(*shortcut);
    return makePage({launch, menuBar, shortcut});
}

/// Where the desktop gives programs no global shortcuts, the row says so.
void PreferencesView::addHotKeyNotice(FormSection& section) {
    auto& notice = m_platform.hotKeys.notice;
    auto* label = section.addHelp(QString());
    label->setColor(&Colors::warning);
    auto const show = [label](std::string const& text) {
        label->setText(QString::fromStdString(text).toHtmlEscaped());
        label->setVisible(!text.empty());
    };
    show(notice);
    m_subscriptions.push_back(notice.observe(show));
}

QWidget* PreferencesView::makeAppearance() {
    auto* popover = new FormSection(tr("Popover"), this);
    popover->addSwitch(tr("Close on click outside"), m_settings.closePopoverOnOutsideClick,
                       [this](bool on) { m_settings.setClosePopoverOnOutsideClick(on); });
    popover->addHelp(tr("When on, clicking anywhere outside the popover dismisses it. Window mode is "
                        "unaffected."));

    auto* window = new FormSection(tr("Window"), this);
    window->addSwitch(tr("Show at mouse cursor when triggered by hotkey"),
                      m_settings.showWindowAtCursorOnHotkey,
                      [this](bool on) { m_settings.setShowWindowAtCursorOnHotkey(on); });
    window->addHelp(tr("Off: the window reopens where you last placed it. On: the keyboard shortcut centers "
                       "it on the cursor. Status-bar clicks always anchor under the menu-bar icon."));
    return makePage({popover, window});
}

QWidget* PreferencesView::makeAdvanced() {
    auto* commandLine = new FormSection(tr("Command Line"), this);
    commandLine->add(new CLIInstallRow(m_platform, commandLine));
    return makePage({makeSidebarSection(), commandLine});
}

QWidget* PreferencesView::makeSidebarSection() {
    auto* sidebar = new FormSection(tr("Sidebar"), this);
    sidebar->addSwitch(tr("Sync Favorites with Finder"), m_favorites.syncWithFinder, [this](bool on) {
        if (on)
            m_favorites.setSyncWithFinder(true);
        else
            FinderSync::turnOff(m_favorites);
    });
    sidebar->addHelp(tr("Reads your Finder sidebar favorites from ~/Library/Application "
                        "Support/com.apple.sharedfilelist. This is a macOS-protected path, so Taliro must be "
                        "granted <b>Full Disk Access</b> in System Settings."));
    auto* warning = new AccessWarning(m_platform, sidebar);
    sidebar->add(warning);
    // A property's observers hear of a value before it is there.
    auto const show = [warning](bool synced, bool denied) { warning->setVisible(synced && denied); };
    show(m_favorites.syncWithFinder, m_favorites.finderAccessDenied);
    m_subscriptions.push_back(m_favorites.syncWithFinder.observe(
        [this, show](bool synced) { show(synced, m_favorites.finderAccessDenied); }));
    m_subscriptions.push_back(m_favorites.finderAccessDenied.observe(
        [this, show](bool denied) { show(m_favorites.syncWithFinder, denied); }));
    return sidebar;
}

} // namespace taliro
