// soak MINUTES [SEED]: has a random user at the program, and notes what it holds. Status 1 where it crashes,
// hangs or has grown; what was done last and where it stands are then on standard output. One that was quit
// from a menu is started again: in a hurry, the hand finds "Quit" before it sees the menu.

#include "desktop/PrivateRoot.h"
#include "desktop/RandomUser.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <sys/resource.h>
#include <thread>

namespace taliro::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto samplePeriod = 30s;
constexpr auto answerLimit = 5s;
constexpr std::size_t fewestSamples = 4; ///< in a quarter of the time

/// What a process holds, and by which factor and number more of it is no growth: caches fill, and columns,
/// the preview and its helpers come and go with what is shown.
struct Figure {
    char const* name;
    double factor;
    double more;
};
constexpr Figure figures[]{{"RSS KiB", 1.15, 4096}, {"own KiB", 1.15, 4096}, {"descriptors", 1, 6},
                           {"watches", 1, 6},       {"threads", 1, 4},       {"children", 1, 2}};
using Sample = std::array<double, std::size(figures)>;

double numberAfter(std::string const& text, std::string const& key) {
    auto const at = text.find(key);
    return at == std::string::npos ? 0 : std::atof(text.c_str() + at + key.size());
}

double occurrences(std::string const& text, std::string const& wanted) {
    double count = 0;
    for (auto at = text.find(wanted); at != std::string::npos; at = text.find(wanted, at + 1))
        ++count;
    return count;
}

Sample sampleOf(int pid) {
    auto const process = fs::path("/proc") / std::to_string(pid);
    auto const memory = contentsOf(process / "smaps_rollup");
    Sample sample{numberAfter(memory, "\nRss:"), numberAfter(memory, "\nAnonymous:")};
    auto& [rss, own, descriptors, watches, threads, children] = sample;
    for (auto const& one : fs::directory_iterator(process / "fdinfo")) {
        ++descriptors;
        watches += occurrences(contentsOf(one.path()), "inotify wd:");
    }
    for (auto const& thread : fs::directory_iterator(process / "task")) {
        ++threads;
        children += occurrences(contentsOf(thread.path() / "children"), " ");
    }
    return sample;
}

std::vector<std::string> const noArguments;
/// It finds none to start.
Environment const noPrograms{{"PATH", "/nonexistent"}};

class Soak {
public:
    explicit Soak(unsigned seed) : m_user(m_desktop, *m_program, seed) {
        m_desktop.display().expectWindow("panel");
    }

    /// Whether the program never failed and held no more in the end of its longest life than in the
    /// beginning.
    bool run(std::chrono::minutes length) {
        auto const start = Clock::now();
        for (auto next = start + samplePeriod; Clock::now() < start + length;) {
            m_user.act();
            if (!m_program->process().isRunning() && !startAfterQuit())
                return false;
            if (Clock::now() < next)
                continue;
            next += samplePeriod;
            if (!look(std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start)))
                return false;
        }
        endLife();
        std::cout << "quit " << m_quits << " times" << std::endl;
        return !hasGrown();
    }

private:
    static Desktop& planted(Desktop& desktop) {
        RandomUser::plant(desktop);
        return desktop;
    }

    bool look(std::chrono::seconds when) {
        bool const hears = m_user.rest();
        std::this_thread::sleep_for(2s);
        if (!m_program->process().isRunning())
            return startAfterQuit();
        if (!hears)
            return fail("the program does not hear a second start");
        auto const asked = Clock::now();
        bool const answers = !m_program->tree().name().isEmpty() && Clock::now() - asked < answerLimit;
        if (!answers)
            return fail("the program does not answer");
        m_samples.push_back(sampleOf(m_program->process().pid()));
        std::cout << when.count() << " s, " << m_user.actions() << " actions";
        for (std::size_t i = 0; i < std::size(figures); ++i)
            std::cout << ", " << figures[i].name << ' ' << m_samples.back()[i];
        std::cout << std::endl;
        return true;
    }

    /// Whether it had been quit and is there again.
    bool startAfterQuit() {
        if (m_program->process().waitForExit() != 0)
            return fail("the program ended");
        ++m_quits;
        tell("the program was quit");
        endLife();
        m_program.emplace(m_desktop, noArguments, noPrograms);
        return m_program->tree() || fail("the program does not start again");
    }

    /// Each start has figures of its own; the longest life tells most.
    void endLife() {
        if (m_samples.size() > m_longestLife.size())
            m_longestLife = m_samples;
        m_samples.clear();
    }

    /// The median of one figure in a quarter of the longest life.
    double median(std::size_t figure, std::size_t from) const {
        std::vector<double> values;
        for (auto at = from; at < from + m_longestLife.size() / 4; ++at)
            values.push_back(m_longestLife[at][figure]);
        std::ranges::sort(values);
        return values[values.size() / 2];
    }

    bool hasGrown() const {
        auto const quarter = m_longestLife.size() / 4;
        if (quarter < fewestSamples) {
            std::cout << "too short a time to tell whether it grows" << std::endl;
            return false;
        }
        std::cout << m_longestLife.size() << " samples in the longest life" << std::endl;
        bool hasGrown = false;
        for (std::size_t i = 0; i < std::size(figures); ++i) {
            auto const first = median(i, 0);
            auto const last = median(i, m_longestLife.size() - quarter);
            bool const isGrowth = last > first * figures[i].factor + figures[i].more;
            hasGrown |= isGrowth;
            std::cout << figures[i].name << ": " << first << " in the first quarter, " << last
                      << " in the last" << (isGrowth ? ": too much" : "") << std::endl;
        }
        return hasGrown;
    }

    void tell(char const* event) {
        std::cout << event << "; done last:\n";
        for (auto const& action : m_user.lastActions())
            std::cout << "  " << action << '\n';
        std::cout << m_program->output() << std::endl;
    }

    bool fail(char const* reason) {
        tell(reason);
        auto& process = m_program->process();
        if (process.isRunning())
            showStacks({"-p", std::to_string(process.pid())});
        else
            std::cout << "status " << process.waitForExit().value_or(-1) << std::endl;
        for (auto const& one : fs::directory_iterator(m_desktop.home()))
            if (one.path().filename().string().starts_with("core"))
                showStacks({Program::built().string(), one.path().string()});
        return false;
    }
    void showStacks(std::vector<std::string> const& of) {
        std::vector<std::string> command{"gdb", "-batch", "-ex", "thread apply all bt 40"};
        command.insert(command.end(), of.begin(), of.end());
        Process(command, m_desktop.environment(), m_desktop.log("gdb")).waitForExit(1min);
        std::cout << contentsOf(m_desktop.log("gdb")) << std::endl;
    }

    Desktop m_desktop{{.tray = true}};
    std::optional<Program> m_program{std::in_place, planted(m_desktop), noArguments, noPrograms};
    RandomUser m_user;
    int m_quits = 0;
    std::vector<Sample> m_samples, m_longestLife;
};

} // namespace
} // namespace taliro::testing

int main(int argc, char** argv) {
    using namespace taliro::testing;
    std::chrono::minutes const length(argc > 1 ? std::atoi(argv[1]) : 0);
    unsigned const seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : std::random_device()();
    if (length.count() <= 0) {
        std::cerr << "usage: soak MINUTES [SEED]\n";
        return 2;
    }
    if (auto const failure = enterReadOnlyRoot(); !failure.empty()) {
        std::cerr << failure << '\n';
        return 2;
    }
    rlimit const unlimited{RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_CORE, &unlimited);
    QCoreApplication application(argc, argv);
    std::cout << "seed " << seed << std::endl;
    return Soak(seed).run(length) ? 0 : 1;
}
