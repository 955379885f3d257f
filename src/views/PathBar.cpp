#include "views/PathBar.h"

#include "views/Drawing.h"
#include "views/FileIcons.h"
#include "views/Names.h"
#include "views/Symbols.h"

#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace taliro {

namespace {

constexpr int barHeight = 22;
constexpr int iconPoints = 14;
constexpr int inset = 4;       ///< left and right within a component
constexpr int iconGap = 5;     ///< between icon and name
constexpr int chevronGap = 13; ///< between components; holds the chevron

} // namespace

class PathBar::Component : public QToolButton {
public:
    Component(Url const& url, QWidget* parent) : QToolButton(parent), m_url(url) {
        m_name = isRoot() ? tr("Macintosh HD") : shownName(url.lastPathComponent());
        setAccessibleName(m_name);
        setToolTip(m_name);
        setFont(Theme::current().font(metrics::list));
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
    }

    Url const& url() const { return m_url; }
    int fullWidth() const { return iconWidth() + iconGap + fontMetrics().horizontalAdvance(m_name) + 1; }
    static int iconWidth() { return 2 * inset + iconPoints; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (isDown() || underMouse())
            fillRounded(painter, rect(), 4, isDown() ? colors().pressed : colors().hover);
        QRect const icon(inset, (barHeight - iconPoints) / 2, iconPoints, iconPoints);
        if (isRoot())
            drawSymbol(painter, icon, "internaldrive", iconPoints, colors().text2);
        else
            painter.drawPixmap(icon,
                               FileIcons::shared().pixmap(m_url.lastPathComponent(), m_url.hasDirectoryPath(),
                                                          iconPoints, devicePixelRatioF()));
        auto const text = rect().adjusted(icon.right() + 1 + iconGap, 0, -inset + 1, 0);
        if (text.width() > iconGap) {
            painter.setPen(colors().text1);
            painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                             fontMetrics().elidedText(m_name, Qt::ElideMiddle, text.width()));
        }
        if (hasFocus())
            drawFocusRing(painter, rect(), 4);
    }

private:
    bool isRoot() const { return m_url.isFile() && m_url.path() == "/"; }

    Url m_url;
    QString m_name;
};

PathBar::PathBar(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Path"));
    setFixedHeight(barHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PathBar::setUrl(Url const& url) {
    if (m_url == url)
        return;
    m_url = url;
    std::vector<Url> chain{url};
    while (chain.back().path() != "/" && chain.back() != chain.back().deletingLastPathComponent())
        chain.push_back(chain.back().deletingLastPathComponent());
    std::ranges::reverse(chain);

    // What stays the same keeps its button, and with it the keyboard.
    std::size_t same = 0;
    while (same < chain.size() && same < m_components.size() && m_components[same]->url() == chain[same])
        ++same;
    for (auto i = same; i < m_components.size(); ++i) {
        m_components[i]->hide();
        m_components[i]->deleteLater(); // It may be what was clicked.
    }
    m_components.resize(same);
    for (auto i = same; i < chain.size(); ++i) {
        auto* component = new Component(chain[i], this);
        connect(component, &QToolButton::clicked, this, [this, target = chain[i]] {
            if (onNavigate)
                onNavigate(target);
        });
        m_components.push_back(component);
        if (onComponentMade)
            onComponentMade(*component, chain[i]);
    }
    layOut();
    updateGeometry();
}

QSize PathBar::sizeHint() const {
    int width = 0;
    for (auto const* component : m_components)
        width += component->fullWidth() + chevronGap;
    return {width, barHeight};
}

/// Each component's width; 0 hides it.
std::vector<int> PathBar::fittingWidths(int available) const {
    auto const count = m_components.size();
    std::vector<int> widths;
    int total = static_cast<int>(count == 0 ? 0 : count - 1) * chevronGap;
    for (auto const* component : m_components) {
        widths.push_back(component->fullWidth());
        total += widths.back();
    }
    auto const shrink = [&](std::size_t i, int width) {
        if (total > available) {
            total -= widths[i] - width;
            widths[i] = width;
        }
    };
    auto const icon = Component::iconWidth();
    for (std::size_t i = 1; i + 1 < count; ++i)
        shrink(i, icon);
    for (std::size_t i = 0; i + 1 < count; ++i)
        shrink(i, icon);
    for (std::size_t i = 0; i + 1 < count; ++i)
        shrink(i, -chevronGap); // Its chevron goes, too.
    if (count > 0 && total > available)
        widths.back() = std::max(icon, widths.back() - (total - available));
    for (auto& width : widths)
        width = std::max(width, 0);
    return widths;
}

void PathBar::layOut() {
    auto const widths = fittingWidths(width());
    int x = 0;
    for (std::size_t i = 0; i < m_components.size(); ++i) {
        auto* component = m_components[i];
        component->setVisible(widths[i] > 0);
        component->setGeometry(x, 0, widths[i], barHeight);
        if (widths[i] > 0)
            x += widths[i] + chevronGap;
    }
    update();
}

void PathBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (std::size_t i = 0; i + 1 < m_components.size(); ++i)
        if (m_components[i]->isVisible())
            drawSymbol(painter, QRectF(m_components[i]->geometry().right() + 1, 0, chevronGap, barHeight),
                       "chevron.right", 9, colors().text3);
}

} // namespace taliro
