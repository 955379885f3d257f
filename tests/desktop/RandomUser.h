#pragma once

#include "desktop/Desktop.h"
#include "support/MixedFiles.h"

#include <deque>
#include <random>

namespace taliro::testing {

/// Somebody in a hurry at a desktop: keys, clicks and drags in the program's windows, and around it storms of
/// files, mounts and monitors that come and go. `seed`: the same one chooses the same, as far as the program
/// keeps pace.
class RandomUser {
public:
    RandomUser(Desktop& desktop, Program& program, unsigned seed)
        : m_desktop(desktop), m_program(program), m_random(seed) {}

    /// Fills the home folder anew: odd names, pictures, damaged files, 5,000 files, folders in folders.
    static void plant(Desktop const& desktop);

    void act();
    /// Has the program show the home folder, and goes to another, upon which it gives back what it needs no
    /// more. Whether it heard.
    bool rest();

    std::size_t actions() const { return m_count; }
    std::deque<std::string> const& lastActions() const { return m_last; }

private:
    struct Spot {
        int x, y;
    };

    int below(int limit);
    bool oneIn(int count) { return below(count) == 0; }
    template <typename List>
    auto const& anyOf(List const& list);
    void pause(int milliseconds);
    void note(std::string const& action);
    std::string anyPath();
    std::vector<WindowInfo> windows(std::string_view klass = "Taliro");
    std::optional<Spot> anySpot(int top = 0);
    bool isMenuOpen();
    void closeMenus();
    void waitForMenu(std::chrono::milliseconds limit);
    void comeBack();
    void dragBetween(Spot from, Spot to, std::string const& held);

    void press();
    void find();
    void goTo();
    void click();
    void drag();
    void turnWheel();
    void clickTray();
    void pressShortcut();
    void clickOutside();
    void resize();
    void switchMode();
    void startAgain();
    void storm();
    void mountOrUnmount();
    void changeMonitors();
    void plantAnew();

    Desktop& m_desktop;
    Program& m_program;
    Display& m_display = m_desktop.display();
    ForeignWindow m_other{m_desktop.displayName(), {20, 600, 150, 150}};
    std::mt19937 m_random;
    std::size_t m_count = 0;
    std::deque<std::string> m_last;
    bool m_hasTwoMonitors = false;
};

} // namespace taliro::testing
