#include "Comparison.h"
#include "Samples.h"

#include "app/AppSettings.h"
#include "browsing/BrowserState.h"
#include "browsing/DirectoryLoader.h"
#include "browsing/DirectoryWatcher.h"
#include "browsing/Listing.h"
#include "platform/Platform.h"
#include "support/TemporaryFolder.h"
#include "views/ColumnPane.h"
#include "views/FileBrowserView.h"
#include "views/FileListView.h"
#include "views/IconGridView.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QIcon>
#include <QMimeDatabase>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace taliro::bench {

namespace {

constexpr int itemCount = 100'000;
constexpr QSize windowSize(720, 460);
constexpr int dateRole = Qt::UserRole;

/// Waits until the X server did all that was asked.
void sync() {
    auto* const x = qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    std::free(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
}

/// Counts how often a widget was painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

    /// Lets the program run until the widget was painted after `act`, and the X server has the picture; for
    /// two seconds where it isn't.
    void paintAfter(std::function<void()> const& act) {
        auto const before = m_count;
        QDeadlineTimer const limit(2000);
        act();
        while (m_count == before && !limit.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents();
        sync();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++m_count;
        return false;
    }

private:
    int m_count = 0;
};

/// A view that a bar scrolls, in a window.
class Scrolled {
public:
    explicit Scrolled(QAbstractScrollArea& view)
        : m_viewport(view.viewport()), m_bar(view.verticalScrollBar()), m_paints(*m_viewport) {
        auto* window = view.window();
        m_paints.paintAfter([&] {
            window->resize(windowSize);
            window->show();
        });
    }

    /// To somewhere else, so that every visible row is new.
    std::size_t scroll() {
        m_seed = m_seed * 1664525 + 1013904223;
        m_paints.paintAfter([this] {
            m_bar->setValue(static_cast<int>(m_seed % static_cast<unsigned>(m_bar->maximum())));
            m_viewport->update(); // Where the bar happens to be there already.
        });
        return 1;
    }
    PaintCounter& paints() { return m_paints; }

private:
    QWidget* m_viewport;
    QScrollBar* m_bar;
    PaintCounter m_paints;
    unsigned m_seed = 1;
};

/// The toolkit's own view and model of the same rows.
class PlainView {
public:
    explicit PlainView(RowList const& rows) {
        QMimeDatabase const types;
        QHash<QString, QIcon> icons;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            auto const name = QString::fromStdString(rows[row].name());
            auto const icon = types.mimeTypeForFile(name, QMimeDatabase::MatchExtension).iconName();
            if (!icons.contains(icon))
                icons.insert(icon, QIcon::fromTheme(icon));
            auto* item = new QStandardItem(icons.value(icon), name);
            item->setData(qlonglong(rows[row].modified.value_or(Date()).time_since_epoch().count()),
                          dateRole);
            m_items.appendRow(item);
        }
        m_sorted.setSourceModel(&m_items);
        m_sorted.setFilterCaseSensitivity(Qt::CaseInsensitive);
        m_sorted.setSortLocaleAware(true);
        m_sorted.sort(0);
        m_view.setModel(&m_sorted);
        m_view.setUniformItemSizes(true);
        m_view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        m_scrolled = std::make_unique<Scrolled>(m_view);
    }

    Scrolled& scrolled() { return *m_scrolled; }
    std::size_t count() const { return static_cast<std::size_t>(m_sorted.rowCount()); }
    std::size_t filter(char const* text) {
        if (m_sorted.filterRegularExpression().pattern() != QLatin1String(text))
            m_scrolled->paints().paintAfter([&] { m_sorted.setFilterFixedString(QLatin1String(text)); });
        return count();
    }
    std::size_t sortBy(int role) {
        m_scrolled->paints().paintAfter([&] {
            m_sorted.setSortRole(role);
            m_sorted.sort(0);
            m_view.viewport()->update();
        });
        return count();
    }

private:
    QStandardItemModel m_items;
    QSortFilterProxyModel m_sorted;
    QListView m_view;
    std::unique_ptr<Scrolled> m_scrolled;
};

/// The whole browser, with the folder as a list.
class Browser {
public:
    Browser(Platform& platform, Url const& folder)
        : m_state(folder), m_view(platform, m_state, DirectoryWatcher::shared(), AppSettings::shared()) {
        m_state.viewMode = ViewMode::list;
        m_view.resize(windowSize);
        m_view.show();
        QCoreApplication::processEvents();
        m_list = m_view.findChild<FileListView*>();
        m_paints = std::make_unique<PaintCounter>(*m_list->viewport());
    }

    std::size_t filter(char const* text) {
        if (m_state.searchText.get() != text)
            m_paints->paintAfter([&] { m_state.searchText = std::string(text); });
        return m_list->rows().size();
    }
    std::size_t sortBy(SortKey key) {
        if (m_state.sortKey.get() != key)
            m_paints->paintAfter([&] { m_state.sortKey = key; });
        return m_list->rows().size();
    }

private:
    BrowserState m_state;
    FileBrowserView m_view;
    FileListView* m_list;
    std::unique_ptr<PaintCounter> m_paints;
};

} // namespace

bool measureViews() {
    testing::TemporaryFolder const folder;
    if (!makeSampleFiles(folder.path(), itemCount))
        return false;
    auto& platform = Platform::current();
    auto const url = Url::file(folder.path().string(), true);
    RowList const rows(DirectoryLoader::load(platform, url, "", SortKey::name, true));
    PlainView plain(rows);

    BrowserState state(url);
    FileListView list(platform, state);
    list.setRows(rows);
    Scrolled scrolledList(list);
    IconGridView grid(platform, state);
    grid.setRows(rows);
    Scrolled scrolledGrid(grid);
    ColumnPane column(platform, state, url, nullptr);
    column.setRows(rows);
    Scrolled scrolledColumn(column);
    std::vector<Contender> const plainScroll{{"QListView", [&] { return plain.scrolled().scroll(); }}};
    constexpr int frames = 101;
    if (!compare("100,000 rows, paint a screenful: list", {"ours", [&] { return scrolledList.scroll(); }},
                 plainScroll, frames) ||
        !compare("the same: column", {"ours", [&] { return scrolledColumn.scroll(); }}, plainScroll,
                 frames) ||
        !compare("the same: icons", {"ours", [&] { return scrolledGrid.scroll(); }}, plainScroll, frames))
        return false;

    Browser browser(platform, url);
    return compare(
               "100,000 rows, type a letter to find",
               {"ours", [&] { return browser.filter("9"); }, [&] { browser.filter(""); }},
               {{"QSortFilterProxyModel", [&] { return plain.filter("9"); }, [&] { plain.filter(""); }}}) &&
           compare("100,000 rows, sort by date",
                   {"ours", [&] { return browser.sortBy(SortKey::dateModified); },
                    [&] { browser.sortBy(SortKey::name); }},
                   {{"QSortFilterProxyModel", [&] { return plain.sortBy(dateRole); },
                     [&] { plain.sortBy(Qt::DisplayRole); }}},
                   5);
}

} // namespace taliro::bench
