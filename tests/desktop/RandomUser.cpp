#include "desktop/RandomUser.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <sys/mount.h>
#include <thread>

namespace taliro::testing {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::size_t rememberedActions = 60;
/// The titlebar's and the toolbar's: their menus would open under a drag that starts there.
constexpr int barsHeight = 60;

template <typename... Parts>
std::string joined(Parts const&... parts) {
    std::ostringstream stream;
    (stream << ... << parts);
    return stream.str();
}

/// Parted by blanks.
std::vector<std::string> words(std::string const& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

} // namespace

int RandomUser::below(int limit) {
    return std::uniform_int_distribution(0, limit - 1)(m_random);
}

template <typename List>
auto const& RandomUser::anyOf(List const& list) {
    return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
}

void RandomUser::pause(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(below(milliseconds)));
}

void RandomUser::note(std::string const& action) {
    ++m_count;
    m_last.push_back(action);
    if (m_last.size() > rememberedActions)
        m_last.pop_front();
}

void RandomUser::plant(Desktop const& desktop) {
    static auto const contents = mixedContents();
    std::error_code ignored;
    for (auto const& one : fs::directory_iterator(desktop.home()))
        fs::remove_all(one.path(), ignored);
    for (std::string const name : {" leading", "new\nline", "\xff\xfe not text", "ä\u0301\u202e right",
                                   "🗂 .tar.gz", ".hidden", "%41?#&", "-rf", "con\\aux:"})
        desktop.write("Odd/" + name);
    desktop.write("Odd/" + std::string(251, 'w') + ".txt");
    fs::create_symlink(".", desktop.home() / "Odd/loop", ignored);
    fs::create_symlink("gone", desktop.home() / "Odd/dangling", ignored);
    for (std::size_t i = 0; i < 3 * contents.size(); ++i) {
        auto const& content = contents[i % contents.size()];
        desktop.write("Photos/" + std::to_string(i) + content.extension, content.bytes);
    }
    for (int i = 0; i < 5000; ++i)
        desktop.write(joined("Many/file ", i, ".txt"));
    std::string nested = "Nested";
    for (int depth = 0; depth < 12; ++depth)
        desktop.write((nested += "/" + std::to_string(depth)) + "/note.txt");
    desktop.write("film.avi", film(2));
    desktop.write("readme.txt");
}

void RandomUser::act() {
    using Action = void (RandomUser::*)();
    static constexpr std::pair<int, Action> actions[]{
        {300, &RandomUser::press},         {150, &RandomUser::click},        {80, &RandomUser::turnWheel},
        {70, &RandomUser::drag},           {30, &RandomUser::find},          {25, &RandomUser::goTo},
        {20, &RandomUser::pressShortcut},  {20, &RandomUser::clickTray},     {20, &RandomUser::resize},
        {15, &RandomUser::clickOutside},   {15, &RandomUser::storm},         {8, &RandomUser::switchMode},
        {12, &RandomUser::mountOrUnmount}, {5, &RandomUser::changeMonitors}, {8, &RandomUser::startAgain},
        {1, &RandomUser::plantAnew}};
    static auto choice = [] {
        std::vector<int> weights;
        for (auto const& [weight, action] : actions)
            weights.push_back(weight);
        return std::discrete_distribution<std::size_t>(weights.begin(), weights.end());
    }();
    closeMenus();
    if (windows().empty() && !oneIn(10))
        comeBack();
    (this->*actions[choice(m_random)].second)();
    pause(100);
}

bool RandomUser::rest() {
    closeMenus();
    for (int i = 0; i < 4; ++i)
        m_display.key("Escape");
    bool const isHeard = runProgram(m_desktop, {m_desktop.home()}) == 0;
    clickOutside();
    return isHeard;
}

/// Those of the program, or of another; not the icon in the tray.
std::vector<WindowInfo> RandomUser::windows(std::string_view klass) {
    auto all = m_display.windows();
    std::erase_if(all, [&](WindowInfo const& one) {
        return one.klass != klass || one.place.width < 40 || one.place.height < 40;
    });
    return all;
}

/// Somewhere in the program's windows, at least `top` below the upper edge.
std::optional<RandomUser::Spot> RandomUser::anySpot(int top) {
    auto const all = windows();
    if (all.empty())
        return std::nullopt;
    auto const& place = anyOf(all).place;
    if (place.height <= top)
        return std::nullopt;
    return Spot{place.x + below(place.width), place.y + top + below(place.height - top)};
}

std::string RandomUser::anyPath() {
    auto const inside = words("Odd Photos Many Nested/0/1/2 Nested/0/1/2/3/4/5/6/7 gone .");
    auto const outside = words("/ /usr/bin /media /proc/self /etc/passwd");
    return oneIn(5) ? anyOf(outside) : (m_desktop.home() / anyOf(inside)).string();
}

bool RandomUser::isMenuOpen() {
    return std::ranges::any_of(m_display.windows(), [&](WindowInfo const& one) {
        auto const types = m_display.values(one.id, "_NET_WM_WINDOW_TYPE");
        return one.role == "status menu" ||
               std::ranges::find(types, m_display.atom("_NET_WM_WINDOW_TYPE_POPUP_MENU")) != types.end();
    });
}

/// A menu gets no key or click but this one: there is "Quit" in some.
void RandomUser::closeMenus() {
    for (int i = 0; i < 10 && (isMenuOpen() || m_display.isKeyboardGrabbed()); ++i) {
        m_display.key("Escape");
        pause(100);
    }
}

/// A busy program opens its menu when the next click is under way.
void RandomUser::waitForMenu(std::chrono::milliseconds limit) {
    waitFor([&] { return isMenuOpen(); }, limit);
}

void RandomUser::comeBack() {
    if (oneIn(2))
        return pressShortcut();
    oneIn(2) ? clickTray() : startAgain();
}

void RandomUser::press() {
    static auto const keys =
        words("Up Down Left Right Home End Page_Up Page_Down space Return Escape Tab Shift+Tab Shift+Down "
              "Shift+Right Control+1 Control+2 Control+3 Control+a Control+c Control+v Control+bracketleft "
              "Control+bracketright Control+comma BackSpace a f 7");
    auto const& key = anyOf(keys);
    for (int i = 1 + below(6); i > 0; --i) {
        note(key);
        m_display.key(key);
        pause(40);
    }
}

void RandomUser::find() {
    note("find");
    m_display.key("Control+f");
    m_display.type(anyOf(words("f file 7.jpg zzz no")));
    pause(200);
    if (oneIn(2))
        m_display.key("Escape");
}

void RandomUser::goTo() {
    auto const path = anyPath();
    note("go to " + path);
    m_display.key("Control+Shift+g");
    pause(100);
    m_display.key("Control+a");
    m_display.type(path);
    m_display.key(anyOf(words("Return Return Tab Down Escape")));
    pause(100);
    m_display.key("Return");
}

void RandomUser::click() {
    auto const spot = anySpot();
    if (!spot)
        return;
    int const button = oneIn(4) ? 3 : 1;
    int const times = button == 1 && oneIn(3) ? 2 : 1;
    note(joined(times, " clicks at ", spot->x, ',', spot->y, ", button ", button));
    m_display.click(spot->x, spot->y, button, times);
    if (button == 3)
        waitForMenu(500ms); // Not everything has one.
}

void RandomUser::drag() {
    auto const from = anySpot(barsHeight);
    auto const to = anySpot();
    if (from && to)
        dragBetween(*from, *to, anyOf(std::array<std::string, 4>{"", "", "Control", "Alt"}));
}

void RandomUser::dragBetween(Spot from, Spot to, std::string const& held) {
    constexpr int steps = 15;
    note(joined("drag ", from.x, ',', from.y, " to ", to.x, ',', to.y, ' ', held));
    m_display.move(from.x, from.y);
    m_display.button(1, true);
    for (int step = 1; step <= steps; ++step) {
        m_display.move(from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps);
        pause(20);
    }
    if (!held.empty())
        m_display.keyDown(held);
    pause(oneIn(3) ? 1500 : 100); // Folders spring open.
    if (oneIn(8))
        m_display.key("Escape");
    m_display.button(1, false);
    if (!held.empty())
        m_display.keyUp(held);
}

void RandomUser::turnWheel() {
    auto const spot = anySpot();
    if (!spot)
        return;
    int const direction = 4 + below(2);
    note(joined("wheel at ", spot->x, ',', spot->y, ", button ", direction));
    m_display.click(spot->x, spot->y, direction, 1 + below(20));
}

void RandomUser::clickTray() {
    for (auto const& icon : m_display.windows()) {
        if (icon.klass != "Taliro" || icon.place.width > 30 || icon.place.width < 10)
            continue;
        int const button = oneIn(3) ? 3 : 1;
        note(joined("tray icon, button ", button));
        m_display.click(icon.place.midX(), icon.place.midY(), button);
        return button == 3 ? waitForMenu(5s) : pause(200);
    }
}

void RandomUser::pressShortcut() {
    note("shortcut");
    m_display.key("Control+Alt+Super+p");
    pause(200);
}

void RandomUser::clickOutside() {
    for (auto const& other : windows("Foreign")) {
        note("click outside");
        m_display.click(other.place.midX(), other.place.midY());
    }
}

/// By the corner.
void RandomUser::resize() {
    auto const all = windows();
    if (all.empty())
        return;
    auto const& place = anyOf(all).place;
    dragBetween({place.maxX() - 2, place.maxY() - 2},
                {place.x + 100 + below(900), place.y + 100 + below(600)}, "");
}

void RandomUser::switchMode() {
    for (auto const* title : {"Show as Menu Bar Popover", "Show as Window"}) {
        auto const button = m_program.tree().find(QStringLiteral("push button"), QString::fromLatin1(title));
        if (!button.isShowing())
            continue;
        note(title);
        button.act();
        return pause(300);
    }
}

void RandomUser::startAgain() {
    auto const path = anyPath();
    note("second start with " + path);
    runProgram(m_desktop, {path});
}

void RandomUser::storm() {
    auto const folder = m_desktop.home() / anyOf(words("Many Photos Odd Nested Nested/0/1"));
    note("storm in " + folder.string());
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    int const count = 100 + below(300);
    auto const named = [&](char const* word, int i) { return folder / joined(word, ' ', i, ".txt"); };
    for (int i = 0; i < count; ++i) {
        if (oneIn(10))
            fs::create_directory(named("new", i), ignored);
        else
            std::ofstream(named("new", i)) << "text";
    }
    for (int i = 0; i < count; ++i)
        fs::rename(named("new", i), named("renamed", i), ignored);
    pause(300);
    for (int i = 0; i < count; ++i)
        fs::remove_all(named("renamed", i), ignored);
    if (oneIn(3)) {
        auto const aside = folder.string() + " aside";
        fs::rename(folder, aside, ignored);
        pause(500);
        fs::rename(aside, folder, ignored);
    }
}

void RandomUser::mountOrUnmount() {
    auto const point = joined("/media/Disk ", below(3));
    fs::create_directories(point);
    bool const isGone = ::umount2(point.c_str(), MNT_DETACH) == 0;
    note((isGone ? "unmount " : "mount ") + point);
    if (!isGone && ::mount("none", point.c_str(), "tmpfs", 0, "size=1m") == 0)
        std::ofstream(point + "/on the disk.txt") << "text";
}

void RandomUser::changeMonitors() {
    m_hasTwoMonitors = !m_hasTwoMonitors;
    note(m_hasTwoMonitors ? "two monitors" : "one monitor");
    auto const commands = m_hasTwoMonitors ? std::array{"--setmonitor main 800/200x800/200+0+0 screen",
                                                        "--setmonitor right 480/120x600/150+800+100 none"}
                                           : std::array{"--delmonitor right", "--delmonitor main"};
    for (auto const* command : commands)
        Process(words(joined("xrandr ", command)), m_desktop.environment(), m_desktop.log("xrandr"))
            .waitForExit();
    pause(500);
}

void RandomUser::plantAnew() {
    note("a new home folder");
    plant(m_desktop);
}

} // namespace taliro::testing
