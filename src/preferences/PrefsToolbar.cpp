#include "preferences/PrefsToolbar.h"

#include "views/Drawing.h"
#include "views/Symbols.h"
#include "views/Theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

namespace taliro {

namespace {

constexpr int edge = 8;
constexpr int gap = 6;
constexpr QSize tabSize(84, 46);
constexpr int symbolPoints = 20;

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// One of several: chosen with the mouse or, once it has the keyboard, the arrow keys.
class Tab : public QRadioButton {
public:
    Tab(PrefsToolbarDelegate::Item const& item, QWidget* parent)
        : QRadioButton(qtText(item.label), parent), m_symbol(item.symbol) {
        setFixedSize(tabSize);
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
    }

protected:
    bool hitButton(QPoint const& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        auto const& c = colors();
        if (isChecked())
            fillRounded(painter, rect(), metrics::radius, faded(c.text1, .08));
        else if (isDown() || underMouse())
            fillRounded(painter, rect(), metrics::radius, isDown() ? c.pressed : c.hover);
        auto const ink = isChecked() ? c.accent : c.text2;
        drawSymbol(painter, QRectF(0, 4, width(), symbolPoints), m_symbol, symbolPoints, ink);
        painter.setPen(ink);
        painter.setFont(Theme::current().font(metrics::small));
        painter.drawText(QRectF(0, 26, width(), 16), Qt::AlignCenter, text());
        if (hasFocus())
            drawFocusRing(painter, rect(), metrics::radius);
    }

private:
    std::string_view m_symbol;
};

} // namespace

PrefsToolbar::PrefsToolbar(PreferencesTabSelection& selection, QWidget* parent)
    : QWidget(parent), m_delegate(selection) {
    setFixedHeight(tabSize.height() + 2 * edge + 1);
    setAccessibleName(tr("Tabs"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(edge, edge, edge, edge + 1);
    row->setSpacing(gap);
    row->addStretch();
    for (auto const identifier : PrefsToolbarDelegate::allItemIdentifiers()) {
        auto* tab = new Tab(*PrefsToolbarDelegate::item(identifier), this);
        connect(tab, &QAbstractButton::toggled, this, [this, identifier](bool on) {
            if (on)
                m_delegate.toolbarItemSelected(identifier);
        });
        m_tabs[*preferencesTab(identifier)] = tab;
        row->addWidget(tab);
    }
    row->addStretch();
    m_tabs[selection.current]->setChecked(true);
    m_subscription = selection.current.observe([this](PreferencesTab tab) { m_tabs[tab]->setChecked(true); });
}

void PrefsToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, height() - 1, width(), 1, colors().line);
}

} // namespace taliro
