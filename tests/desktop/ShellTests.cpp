#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

TEST(Shell, ShowsTheHomeFolderOnceStarted) {
    Desktop desktop;
    desktop.makeFolder("Reports");
    desktop.write("notes.md");
    Program program(desktop);
    auto const panel = desktop.display().expectWindow("panel");
    program.tree().expect("", "Reports");
    program.tree().expect("", "notes.md");
    EXPECT_TRUE(waitFor([&] { return desktop.display().focused() == panel.id; }));
    EXPECT_TRUE(desktop.display().hasState(panel.id, "_NET_WM_STATE_ABOVE"));
    EXPECT_TRUE(desktop.display().hasState(panel.id, "_NET_WM_STATE_SKIP_TASKBAR"));
}

} // namespace
} // namespace taliro::testing
