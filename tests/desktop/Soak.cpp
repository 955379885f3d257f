// soak MINUTES [SEED]: uses the program at random, as a person in a hurry would, and watches what it takes.
// Status 1 where it ends, hangs or grows; the seed and what was done last are then on standard output.

#include "desktop/Desktop.h"
#include "support/MixedFiles.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <deque>
#include <fcntl.h>
#include <iostream>
#include <random>
#include <sched.h>
#include <sstream>
#include <sys/mount.h>
#include <sys/resource.h>
#include <thread>

namespace taliro::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto samplePeriod = 30s;
constexpr auto answerLimit = 5s;
constexpr std::size_t rememberedActions = 60;
constexpr char toggle[] = "Control+Alt+Super+p";

/// What a process holds, and how much more of it, by share and by count, the end may take than the beginning:
/// caches fill, and what is on the way at the moment of looking differs.
struct Figure {
    char const* name;
    double growth;
    double more;
};
constexpr Figure figures[]{{"RSS KiB", 1.15, 4096}, {"PSS KiB", 1.15, 4096}, {"descriptors", 1, 6},
                           {"watches", 1, 6},       {"threads", 1, 4},       {"children", 1, 2}};
using Sample = std::array<double, std::size(figures)>;

template <typename... Parts>
std::string joined(Parts const&... parts) {
    std::ostringstream stream;
    (stream << ... << parts);
    return stream.str();
}

double kibibytes(std::string const& text, std::string const& key) {
    auto const at = text.find("\n" + key);
    return at == std::string::npos ? 0 : std::atof(text.c_str() + at + 1 + key.size());
}

Sample sampleOf(int pid) {
    auto const proc = fs::path("/proc") / std::to_string(pid);
    auto const memory = contentsOf(proc / "smaps_rollup");
    Sample sample{kibibytes(memory, "Rss:"), kibibytes(memory, "Pss:")};
    for (auto const& one : fs::directory_iterator(proc / "fdinfo")) {
        ++sample[2];
        auto const text = contentsOf(one.path());
        for (auto at = text.find("inotify wd:"); at != std::string::npos;
             at = text.find("inotify wd:", at + 1))
            ++sample[3];
    }
    for (auto const& thread : fs::directory_iterator(proc / "task")) {
        ++sample[4];
        auto const children = contentsOf(thread.path() / "children");
        sample[5] += static_cast<double>(std::ranges::count(children, ' '));
    }
    return sample;
}

class Soak {
public:
    Soak(std::chrono::minutes length, unsigned seed) : m_length(length), m_random(seed) {
        for (auto const& content : mixedContents())
            m_contents.push_back(content);
        plant();
        m_program = std::make_unique<Program>(m_desktop, std::vector<std::string>{},
                                              Environment{{"PATH", "/nonexistent"}});
        m_desktop.display().expectWindow("panel");
    }

    /// Whether the program lived through it and took no more in the end than in the beginning.
    bool run() {
        auto const start = Clock::now();
        auto next = start + samplePeriod;
        while (Clock::now() < start + m_length) {
            if (!act())
                return fail("the program ended");
            if (Clock::now() < next)
                continue;
            next += samplePeriod;
            if (!look(std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start)))
                return false;
        }
        return hasNotGrown();
    }

private:
    // Chance
    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(m_random); }
    bool oneIn(int count) { return below(count) == 0; }
    template <typename List>
    auto const& anyOf(List const& list) {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }
    void pause(int milliseconds) {
        std::this_thread::sleep_for(std::chrono::milliseconds(below(milliseconds)));
    }

    void note(std::string const& action) {
        ++m_actions;
        m_last.push_back(action);
        if (m_last.size() > rememberedActions)
            m_last.pop_front();
    }

    // The home folder
    void plant() {
        std::error_code ignored;
        for (auto const& one : fs::directory_iterator(m_desktop.home()))
            fs::remove_all(one.path(), ignored);
        for (auto const* name : {" leading", "new\nline", "\xff\xfe not text", "ä\u0301\u202e right",
                                 "🗂 .tar.gz", ".hidden", "%41?#&", "-rf", "con\\aux:"})
            m_desktop.write("Odd/" + std::string(name));
        m_desktop.write("Odd/" + std::string(251, 'w') + ".txt");
        fs::create_symlink(".", m_desktop.home() / "Odd/loop", ignored);
        fs::create_symlink("gone", m_desktop.home() / "Odd/dangling", ignored);
        for (std::size_t i = 0; i < 3 * m_contents.size(); ++i) {
            auto const& content = m_contents[i % m_contents.size()];
            m_desktop.write("Photos/" + std::to_string(i) + content.extension, content.bytes);
        }
        for (int i = 0; i < 5000; ++i)
            m_desktop.write(joined("Many/file ", i, ".txt"));
        std::string nested = "Nested";
        for (int depth = 0; depth < 12; ++depth)
            m_desktop.write((nested += "/" + std::to_string(depth)) + "/note.txt");
        m_desktop.write("film.avi", film(2));
        m_desktop.write("readme.txt");
    }
    std::string anyPath() {
        std::string const inside[]{"",    "Odd", "Photos", "Many", "Nested/0/1/2", "Nested/0/1/2/3/4/5/6/7",
                                   "gone"};
        std::string const outside[]{"/", "/usr/bin", "/media", "/proc/self", "/etc/passwd"};
        return oneIn(5) ? anyOf(outside) : (m_desktop.home() / anyOf(inside)).string();
    }

    // Windows
    Display& display() { return m_desktop.display(); }
    /// Those of the program, or of the class; not the icon in the tray.
    std::vector<WindowInfo> windows(std::string_view klass = "Taliro") {
        auto all = display().windows();
        std::erase_if(all, [&](WindowInfo const& one) {
            return one.klass != klass || one.place.width < 40 || one.place.height < 40;
        });
        return all;
    }
    /// A menu that is left open gets no key or click but this: "Quit" is in some.
    void closeMenus() {
        for (int i = 0; i < 5 && display().isKeyboardGrabbed(); ++i) {
            display().key("Escape");
            pause(100);
        }
    }
    struct Spot {
        int x, y;
    };
    /// Somewhere in our windows; `top`: that far below their upper edge.
    std::optional<Spot> anySpot(int top = 0) {
        auto const all = windows();
        if (all.empty())
            return std::nullopt;
        auto const& place = anyOf(all).place;
        if (place.height <= top)
            return std::nullopt;
        return Spot{place.x + below(place.width), place.y + top + below(place.height - top)};
    }

    // What a person does
    void press() {
        static constexpr char const* keys[]{"Up",
                                            "Down",
                                            "Left",
                                            "Right",
                                            "Home",
                                            "End",
                                            "Page_Up",
                                            "Page_Down",
                                            "space",
                                            "Return",
                                            "Escape",
                                            "Tab",
                                            "Shift+Tab",
                                            "Shift+Down",
                                            "Shift+Right",
                                            "Control+1",
                                            "Control+2",
                                            "Control+3",
                                            "Control+a",
                                            "Control+c",
                                            "Control+v",
                                            "Control+bracketleft",
                                            "Control+bracketright",
                                            "Control+comma",
                                            "BackSpace",
                                            "a",
                                            "f",
                                            "7"};
        auto const* key = anyOf(keys);
        for (int i = 1 + below(6); i > 0; --i) {
            note(key);
            display().key(key);
            pause(40);
        }
    }
    void find() {
        note("find");
        display().key("Control+f");
        display().type(anyOf(std::to_array<char const*>({"f", "file 1", "7.jpg", "zzz", "no"})));
        pause(200);
        if (oneIn(2))
            display().key("Escape");
    }
    void goTo() {
        auto const path = anyPath();
        note("go to " + path);
        display().key("Control+Shift+g");
        pause(100);
        display().key("Control+a");
        display().type(path);
        display().key(anyOf(std::to_array<char const*>({"Return", "Return", "Tab", "Down", "Escape"})));
        pause(100);
        display().key("Return");
    }
    void click() {
        auto const spot = anySpot();
        if (!spot)
            return;
        int const button = oneIn(4) ? 3 : 1;
        int const times = button == 1 && oneIn(3) ? 2 : 1;
        note(joined(times, " clicks at ", spot->x, ',', spot->y, ", button ", button));
        display().click(spot->x, spot->y, button, times);
        if (button == 3)
            pause(150);
    }
    /// From below the bars, whose menus would open under it, and let go over "Quit".
    void drag() {
        auto const from = anySpot(60);
        auto const to = anySpot();
        if (!from || !to)
            return;
        auto const* held = anyOf(std::to_array<char const*>({"", "", "Control", "Alt"}));
        note(joined("drag ", from->x, ',', from->y, " to ", to->x, ',', to->y, ' ', held));
        display().move(from->x, from->y);
        display().button(1, true);
        for (int step = 1; step <= 15; ++step) {
            display().move(from->x + (to->x - from->x) * step / 15, from->y + (to->y - from->y) * step / 15);
            pause(20);
        }
        if (*held)
            display().keyDown(held);
        pause(oneIn(3) ? 1500 : 100);
        if (oneIn(8))
            display().key("Escape");
        display().button(1, false);
        if (*held)
            display().keyUp(held);
    }
    void wheel() {
        auto const spot = anySpot();
        if (!spot)
            return;
        int const direction = 4 + below(2);
        note(joined("wheel at ", spot->x, ',', spot->y, ", button ", direction));
        display().click(spot->x, spot->y, direction, 1 + below(20));
    }
    void clickTray() {
        for (auto const& icon : display().windows()) {
            if (icon.klass != "Taliro" || icon.place.width > 30 || icon.place.width < 10)
                continue;
            int const button = oneIn(3) ? 3 : 1;
            note(joined("tray icon, button ", button));
            display().click(icon.place.midX(), icon.place.midY(), button);
            return pause(200);
        }
    }
    void pressShortcut() {
        note("shortcut");
        display().key(toggle);
        pause(200);
    }
    void clickOutside() {
        for (auto const& other : windows("Foreign")) {
            note("click outside");
            display().click(other.place.midX(), other.place.midY());
        }
    }
    void resize() {
        auto const all = windows();
        if (all.empty())
            return;
        std::uint32_t const size[]{200 + static_cast<std::uint32_t>(below(900)),
                                   150 + static_cast<std::uint32_t>(below(600))};
        note(joined("resize to ", size[0], 'x', size[1]));
        xcb_configure_window(display().connection(), anyOf(all).id,
                             XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        display().sync();
    }
    void switchMode() {
        for (auto const* title : {"Show as Menu Bar Popover", "Show as Window"}) {
            auto const button =
                m_program->tree().find(QStringLiteral("push button"), QString::fromLatin1(title));
            if (!button || !button.isShowing())
                continue;
            note(title);
            button.act();
            return pause(300);
        }
    }
    void startAgain() {
        auto const path = anyPath();
        note("second start with " + path);
        runProgram(m_desktop, {path});
    }

    // What else happens on a desktop
    void storm() {
        auto const* relative = anyOf(std::to_array<char const*>({"", "Many", "Photos", "Odd", "Nested/0/1"}));
        auto const folder = m_desktop.home() / relative;
        note("storm in " + folder.string());
        std::error_code ignored;
        fs::create_directories(folder, ignored);
        int const count = 100 + below(300);
        auto const named = [&](char const* word, int i) { return folder / joined(word, ' ', i, ".txt"); };
        for (int i = 0; i < count; ++i)
            oneIn(10) ? void(fs::create_directory(named("new", i), ignored))
                      : void(std::ofstream(named("new", i)));
        for (int i = 0; i < count; ++i)
            fs::rename(named("new", i), named("renamed", i), ignored);
        pause(300);
        for (int i = 0; i < count; ++i)
            fs::remove_all(named("renamed", i), ignored);
        if (*relative && oneIn(3)) {
            auto const aside = folder.string() + " aside";
            fs::rename(folder, aside, ignored);
            pause(500);
            fs::rename(aside, folder, ignored);
        }
    }
    void mountOrUnmount() {
        auto const point = joined("/media/Disk ", below(3));
        fs::create_directories(point);
        bool const isGone = ::umount2(point.c_str(), MNT_DETACH) == 0;
        note((isGone ? "unmount " : "mount ") + point);
        if (!isGone && ::mount("none", point.c_str(), "tmpfs", 0, "size=1m") == 0)
            std::ofstream(point + "/on the disk.txt") << "text";
    }
    void changeMonitors() {
        auto const xrandr = [&](std::vector<std::string> arguments) {
            arguments.insert(arguments.begin(), "xrandr");
            Process(arguments, m_desktop.environment(), m_desktop.log("xrandr")).waitForExit();
        };
        m_hasTwoMonitors = !m_hasTwoMonitors;
        note(m_hasTwoMonitors ? "two monitors" : "one monitor");
        if (m_hasTwoMonitors) {
            xrandr({"--setmonitor", "main", "800/200x800/200+0+0", "screen"});
            xrandr({"--setmonitor", "right", "480/120x600/150+800+100", "none"});
        } else {
            xrandr({"--delmonitor", "right"});
            xrandr({"--delmonitor", "main"});
        }
        pause(500);
    }

    /// Does something. Whether the program still runs.
    bool act() {
        using Action = void (Soak::*)();
        static constexpr std::pair<int, Action> actions[]{
            {300, &Soak::press},        {150, &Soak::click},        {80, &Soak::wheel},
            {70, &Soak::drag},          {30, &Soak::find},          {25, &Soak::goTo},
            {20, &Soak::pressShortcut}, {20, &Soak::clickTray},     {20, &Soak::resize},
            {15, &Soak::clickOutside},  {15, &Soak::storm},         {8, &Soak::switchMode},
            {8, &Soak::mountOrUnmount}, {5, &Soak::changeMonitors}, {8, &Soak::startAgain},
            {1, &Soak::plant}};
        std::vector<double> weights;
        for (auto const& [weight, action] : actions)
            weights.push_back(weight);
        closeMenus();
        if (windows().empty() && !oneIn(10))
            oneIn(2) ? pressShortcut() : oneIn(2) ? clickTray() : startAgain();
        (this->*actions[std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(m_random)]
                    .second)();
        pause(100);
        return m_program->process().isRunning();
    }

    // What comes of it
    /// Puts it at rest in the home folder, and notes what it holds.
    bool look(std::chrono::seconds when) {
        closeMenus();
        for (int i = 0; i < 4; ++i)
            display().key("Escape");
        if (runProgram(m_desktop, {m_desktop.home()}) != 0)
            return fail("a second start was not answered");
        std::this_thread::sleep_for(2s);
        auto const asked = Clock::now();
        bool const answers = !m_program->tree().name().isEmpty();
        auto const took = Clock::now() - asked;
        if (!m_program->process().isRunning())
            return fail("the program ended");
        if (!answers || took > answerLimit)
            return fail("the program does not answer");
        m_samples.push_back(sampleOf(m_program->process().pid()));
        std::cout << when.count() << " s, " << m_actions << " actions, answer "
                  << std::chrono::duration_cast<std::chrono::milliseconds>(took).count() << " ms";
        for (std::size_t i = 0; i < std::size(figures); ++i)
            std::cout << ", " << figures[i].name << ' ' << m_samples.back()[i];
        std::cout << std::endl;
        return true;
    }
    bool hasNotGrown() const {
        auto const quarter = m_samples.size() / 4;
        if (quarter == 0)
            return true;
        bool grew = false;
        for (std::size_t i = 0; i < std::size(figures); ++i) {
            auto const median = [&](std::size_t from) {
                std::vector<double> values;
                for (auto at = from; at < from + quarter; ++at)
                    values.push_back(m_samples[at][i]);
                std::ranges::nth_element(values, values.begin() + static_cast<long>(quarter / 2));
                return values[quarter / 2];
            };
            auto const first = median(0);
            auto const last = median(m_samples.size() - quarter);
            bool const grown = last > first * figures[i].growth + figures[i].more;
            std::cout << figures[i].name << ": " << first << " in the first quarter, " << last
                      << " in the last" << (grown ? ": GROWN" : "") << std::endl;
            grew |= grown;
        }
        return !grew;
    }
    bool fail(std::string const& reason) {
        std::cout << reason << "; the last actions:\n";
        for (auto const& action : m_last)
            std::cout << "  " << action << '\n';
        auto& process = m_program->process();
        std::cout << "its output:\n" << m_program->output() << std::endl;
        std::vector<std::string> debugger{"gdb", "-batch", "-ex", "thread apply all bt 40"};
        if (process.isRunning())
            debugger.insert(debugger.end(), {"-p", std::to_string(process.pid())});
        else
            std::cout << "status " << process.waitForExit().value_or(-1) << std::endl;
        for (auto const& one : fs::directory_iterator(m_desktop.home()))
            if (!process.isRunning() && one.path().filename().string().starts_with("core"))
                debugger.insert(debugger.end(), {Program::built().string(), one.path().string()});
        if (debugger.size() > 4) {
            Process(debugger, m_desktop.environment(), m_desktop.log("gdb")).waitForExit(60s);
            std::cout << contentsOf(m_desktop.log("gdb")) << std::endl;
        }
        return false;
    }

    std::chrono::minutes m_length;
    std::mt19937 m_random;
    std::vector<MixedContent> m_contents;
    Desktop m_desktop{{.tray = true}};
    ForeignWindow m_other{m_desktop.displayName(), {20, 600, 150, 150}};
    std::unique_ptr<Program> m_program;
    bool m_hasTwoMonitors = false;
    std::size_t m_actions = 0;
    std::deque<std::string> m_last;
    std::vector<Sample> m_samples;
};

/// Random hands reach everywhere: in namespaces of its own, the machine can't be written to nor the network
/// be reached, and there is no application that a file could be opened with. Empty, or what failed.
std::string keepToItself() {
    auto const user = ::getuid();
    auto const group = ::getgid();
    constexpr int own = CLONE_NEWNS | CLONE_NEWNET;
    if (::unshare(own) != 0) {
        if (::unshare(own | CLONE_NEWUSER) != 0)
            return "unshare";
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    constexpr char services[] = "/usr/share/dbus-1/services";
    auto const accessibility = contentsOf(services + std::string("/org.a11y.Bus.service"));
    mount_attr attributes{
        .attr_set = MOUNT_ATTR_RDONLY, .attr_clr = 0, .propagation = MS_PRIVATE, .userns_fd = 0};
    if (::mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &attributes, sizeof attributes) != 0)
        return "mount_setattr";
    std::swap(attributes.attr_set, attributes.attr_clr);
    if (::mount_setattr(AT_FDCWD, "/proc", 0, &attributes, sizeof attributes) != 0)
        return "mount_setattr";
    for (auto const* folder : {"/tmp", "/media", "/dev/shm", "/usr/share/applications", services})
        if (::mount("tmpfs", folder, "tmpfs", 0, "size=1g,mode=1777") != 0)
            return folder;
    std::ofstream(services + std::string("/org.a11y.Bus.service")) << accessibility;
    return {};
}

} // namespace
} // namespace taliro::testing

int main(int argc, char** argv) {
    using namespace taliro::testing;
    int const minutes = argc > 1 ? std::atoi(argv[1]) : 0;
    unsigned const seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : std::random_device()();
    if (minutes <= 0) {
        std::cerr << "usage: soak MINUTES [SEED]\n";
        return 2;
    }
    if (auto const failed = keepToItself(); !failed.empty()) {
        std::cerr << failed << ": " << std::strerror(errno) << '\n';
        return 2;
    }
    rlimit const any{RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_CORE, &any);
    QCoreApplication application(argc, argv);
    std::cout << "seed " << seed << std::endl;
    return Soak(std::chrono::minutes(minutes), seed).run() ? 0 : 1;
}
