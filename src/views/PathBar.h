#pragma once

#include "foundation/Url.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace taliro {

/// A location's folders from the root on, each a button. Where they don't all fit, those in the middle shrink
/// to their icons.
class PathBar : public QWidget {
public:
    explicit PathBar(QWidget* parent = nullptr);

    void setUrl(Url const& url);
    /// The button of a component was made; it stands for the same one as long as it lives.
    std::function<void(QWidget&, Url const&)> onComponentMade;
    /// A component was clicked.
    std::function<void(Url const&)> onNavigate;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 22}; }

protected:
    void resizeEvent(QResizeEvent*) override { layOut(); }
    void paintEvent(QPaintEvent*) override;

private:
    class Component;

    void layOut();
    std::vector<int> fittingWidths(int available) const;

    std::optional<Url> m_url;
    std::vector<Component*> m_components;
};

} // namespace taliro
