#pragma once

#include <QToolButton>

#include <string>

namespace taliro {

/// Names the current place, with its symbol. With a menu it opens that; a small arrow says so.
class LocationButton : public QToolButton {
    Q_OBJECT

public:
    explicit LocationButton(QWidget* parent = nullptr);

    void setPlace(std::string symbol, QString const& name);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    bool opensMenu() const { return menu() && isEnabled(); }

    std::string m_symbol = "folder";
};

} // namespace taliro
