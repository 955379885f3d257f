#include "views/TabOrder.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

QWidget* add(QWidget& parent, QRect const& place, Qt::FocusPolicy policy, char const* name) {
    auto* const widget = new QWidget(&parent);
    widget->setGeometry(place);
    widget->setFocusPolicy(policy);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

TEST(TabOrder, FollowsTheEyeWhateverWasMadeFirst) {
    QWidget window;
    window.resize(600, 400);
    auto* const path = add(window, {0, 380, 600, 20}, Qt::StrongFocus, "path");
    auto* const content = add(window, {200, 30, 400, 350}, Qt::NoFocus, "content");
    auto* const sidebar = add(window, {0, 30, 200, 350}, Qt::NoFocus, "sidebar");
    auto* const title = add(window, {550, 5, 20, 20}, Qt::TabFocus, "title");
    add(*content, {0, 40, 400, 300}, Qt::StrongFocus, "list");
    add(*content, {100, 6, 20, 20}, Qt::TabFocus, "sort");
    add(*content, {10, 4, 20, 24}, Qt::TabFocus, "back");
    add(*sidebar, {0, 60, 200, 20}, Qt::TabFocus, "disk");
    add(*sidebar, {0, 20, 200, 20}, Qt::TabFocus, "home");
    add(*sidebar, {0, 40, 200, 20}, Qt::ClickFocus, "label");
    add(*sidebar, {0, 80, 200, 20}, Qt::TabFocus, "off")->setEnabled(false);
    add(*sidebar, {0, 100, 200, 20}, Qt::TabFocus, "hidden")->hide();
    window.show();

    QStringList order;
    auto* at = title;
    do {
        order << at->objectName();
        auto* const next = nextInTabOrder(window, at, true);
        ASSERT_TRUE(next);
        EXPECT_EQ(nextInTabOrder(window, next, false), at);
        at = next;
    } while (at != title && order.size() < 20);
    EXPECT_EQ(order.join(u' ').toStdString(), "title home disk back sort list path");
    EXPECT_EQ(nextInTabOrder(window, nullptr, false), path);
}

} // namespace
} // namespace taliro::testing
