#include "preferences/Form.h"

#include "views/Drawing.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>

namespace taliro {

namespace {

constexpr int boxRadius = 8;
constexpr int titleGap = 6;

class Box : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        fillRounded(painter, rect(), boxRadius, colors().content);
        strokeRounded(painter, rect(), boxRadius, colors().hair);
    }
};

/// Turns its switch also when clicked beside it.
class SwitchRow : public QWidget {
public:
    SwitchRow(QString const& label, Switch* control, QWidget* parent) : QWidget(parent), m_switch(control) {
        setFixedHeight(form::rowHeight);
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        auto* text = new QLabel(label, this);
        row->addWidget(text, 1);
        row->addWidget(control);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
            m_switch->click();
    }

private:
    Switch* m_switch;
};

} // namespace

SettingSwitch::SettingSwitch(QString const& label, Published<bool>& setting, std::function<void(bool)> set,
                             QWidget* parent)
    : Switch(label, parent) {
    setChecked(setting);
    m_subscription = setting.observe([this](bool on) {
        m_isFollowing = true;
        setChecked(on);
        m_isFollowing = false;
    });
    connect(this, &QCheckBox::toggled, this, [this, set = std::move(set)](bool on) {
        if (!m_isFollowing)
            set(on);
    });
}

FormText::FormText(QString const& html, ColorRole color, qreal points, QWidget* parent)
    : QLabel(html, parent), m_color(color) {
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setFont(Theme::current().font(points));
    connect(&Theme::current(), &Theme::changed, this, &FormText::applyColor);
    applyColor();
}

void FormText::setColor(ColorRole color) {
    m_color = color;
    applyColor();
}

void FormText::applyColor() {
    auto own = palette();
    own.setColor(QPalette::WindowText, colors().*m_color);
    setPalette(own);
}

QString FormText::code(QString const& text) {
    return QStringLiteral("<span style=\"font-family:monospace\">%1</span>").arg(text.toHtmlEscaped());
}

FormSymbol::FormSymbol(std::string_view name, qreal points, ColorRole color, QWidget* parent)
    : QWidget(parent), m_name(name), m_points(points), m_color(color) {
    setFixedSize(qRound(points), qRound(points));
}

void FormSymbol::setSymbol(std::string_view name, ColorRole color) {
    m_name = name;
    m_color = color;
    update();
}

void FormSymbol::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, rect(), m_name, m_points, colors().*m_color);
}

FormSection::FormSection(QString const& title, QWidget* parent) : QWidget(parent), m_box(new Box(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(titleGap);
    auto* heading = new QLabel(title, this);
    heading->setFont(Theme::current().headline());
    heading->setContentsMargins(4, 0, 4, 0);
    column->addWidget(heading);
    column->addWidget(m_box);
    m_rows = new QVBoxLayout(m_box);
    m_rows->setContentsMargins(form::inset, 0, form::inset, 0);
    m_rows->setSpacing(0);
}

SettingSwitch* FormSection::addSwitch(QString const& label, Published<bool>& setting,
                                      std::function<void(bool)> set) {
    auto* control = new SettingSwitch(label, setting, std::move(set), m_box);
    add(new SwitchRow(label, control, m_box));
    return control;
}

FormText* FormSection::addHelp(QString const& html) {
    auto* help = new FormText(html, &Colors::text2, metrics::small, m_box);
    help->setContentsMargins(0, 0, 0, form::helpBottom);
    add(help);
    return help;
}

void FormSection::add(QWidget* row) {
    m_rows->addWidget(row);
}

} // namespace taliro
