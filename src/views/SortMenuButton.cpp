#include "views/SortMenuButton.h"

#include "views/Symbols.h"

#include <QMenu>

namespace taliro {

namespace {

constexpr int buttonWidth = 40;
constexpr int menuGap = 2;

QString qstring(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Stands a little below its button, where it opens downward.
class SortMenu : public QMenu {
public:
    using QMenu::QMenu;

protected:
    void showEvent(QShowEvent* event) override {
        auto const* button = parentWidget();
        auto const place = button->mapToGlobal(QPoint(0, button->height() + menuGap));
        if (y() >= place.y() - menuGap - 1)
            move(x(), place.y());
        QMenu::showEvent(event);
    }
};

} // namespace

SortMenuButton::SortMenuButton(BrowserState& state, int height, QWidget* parent)
    : ToolButton("arrow.up.arrow.down", tr("Sort"), 15, parent), m_state(state) {
    setFixedSize(buttonWidth, height);
    setFrame(Frame::bordered);
    setTint(&Colors::text1);
    setMenu(new SortMenu(this));
    connect(menu(), &QMenu::aboutToShow, this, [this] { fillMenu(); });
    connect(menu(), &QMenu::triggered, this,
            [this](QAction const* item) { choose(item->data().toString()); });
}

void SortMenuButton::fillMenu() {
    menu()->clear();
    for (auto key : allSortKeys) {
        auto* item = menu()->addAction(qstring(title(key)));
        item->setData(qstring(rawValue(key)));
        if (key == m_state.sortKey.get())
            item->setIcon(symbolIcon(m_state.sortAscending.get() ? "arrow.up" : "arrow.down"));
    }
}

void SortMenuButton::choose(QString const& rawValue) {
    auto const key = sortKey(rawValue.toStdString());
    if (!key)
        return;
    if (*key == m_state.sortKey.get())
        m_state.sortAscending = !m_state.sortAscending.get();
    else
        m_state.sortKey = *key;
}

} // namespace taliro
