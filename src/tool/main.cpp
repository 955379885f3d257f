// taliro: opens folders, and shows files in theirs, in the running program; starts it where it isn't.

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gio/gio.h>
#include <memory>
#include <optional>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

constexpr char service[] = "com.taliro.Taliro";
constexpr char objectPath[] = "/com/taliro/Taliro";
constexpr char interface[] = "org.freedesktop.Application";
constexpr int replyTimeoutMilliseconds = 10'000;

constexpr char usage[] =
    "Usage: taliro [PATH…]\n"
    "Shows folders, and files in their folders, in Taliro; starts it if it isn't running.\n"
    "A PATH may be relative, or a file: URL. Without one, Taliro comes to the front.\n"
    "\n"
    "  -h, --help     this text\n"
    "      --version  the version\n";

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
struct Free {
    void operator()(gpointer memory) const { g_free(memory); }
};

int fail(std::string const& reason) {
    std::fprintf(stderr, "taliro: %s\n", reason.c_str());
    return 1;
}

std::string workingFolder() {
    std::array<char, PATH_MAX> buffer;
    return ::getcwd(buffer.data(), buffer.size()) ? buffer.data() : "/";
}

/// The argument as an absolute path, its bytes kept; nothing for a URL of another machine or scheme.
std::optional<std::string> absolutePath(char const* argument) {
    if (std::string_view(argument).starts_with("file:")) {
        std::unique_ptr<char, Free> const path(g_filename_from_uri(argument, nullptr, nullptr));
        return path ? std::optional<std::string>(path.get()) : std::nullopt;
    }
    return argument[0] == '/' ? std::string(argument) : workingFolder() + "/" + argument;
}

std::string asUri(std::string const& path) {
    std::unique_ptr<char, Free> const uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    return uri ? uri.get() : std::string();
}

enum class Asked { taken, silent, nobody };

/// Hands the request over by D-Bus, whose daemon starts the program if it knows how to; nobody takes it where
/// it doesn't, or where there is no bus.
Asked askRunningProgram(std::vector<std::string> const& uris) {
    std::unique_ptr<GDBusConnection, Unref> const bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus)
        return Asked::nobody;
    GVariantBuilder platformData;
    g_variant_builder_init(&platformData, G_VARIANT_TYPE("a{sv}"));
    GVariant* arguments = nullptr;
    if (uris.empty()) {
        arguments = g_variant_new("(a{sv})", &platformData);
    } else {
        GVariantBuilder list;
        g_variant_builder_init(&list, G_VARIANT_TYPE("as"));
        for (auto const& uri : uris)
            g_variant_builder_add(&list, "s", uri.c_str());
        arguments = g_variant_new("(asa{sv})", &list, &platformData);
    }
    GError* error = nullptr;
    GVariant* const reply = g_dbus_connection_call_sync(
        bus.get(), service, objectPath, interface, uris.empty() ? "Activate" : "Open", arguments, nullptr,
        G_DBUS_CALL_FLAGS_NONE, replyTimeoutMilliseconds, nullptr, &error);
    if (reply) {
        g_variant_unref(reply);
        return Asked::taken;
    }
    bool const isSilent = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
    g_error_free(error);
    return isSilent ? Asked::silent : Asked::nobody;
}

/// `…/bundle/Taliro` beside `…/bundle/Resources/taliro`, links to the tool followed.
std::optional<std::string> programPath() {
    std::array<char, PATH_MAX> buffer;
    auto const length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length <= 0)
        return std::nullopt;
    std::string path(buffer.data(), static_cast<std::size_t>(length));
    for (int up = 0; up < 2; ++up)
        path.resize(std::min(path.rfind('/'), path.size()));
    path += "/Taliro";
    return ::access(path.c_str(), X_OK) == 0 ? std::optional(path) : std::nullopt;
}

/// Starts the program in a session of its own, so that the terminal can be closed. Zero, or an error number.
int startProgram(std::string program, std::vector<std::string> uris) {
    std::vector<char*> arguments{program.data()};
    for (auto& uri : uris)
        arguments.push_back(uri.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t process = 0;
    int const error =
        ::posix_spawn(&process, program.c_str(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> uris;
    bool onlyPaths = false;
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (!onlyPaths && argument == "--") {
            onlyPaths = true;
        } else if (!onlyPaths && (argument == "--help" || argument == "-h")) {
            std::fputs(usage, stdout);
            return 0;
        } else if (!onlyPaths && argument == "--version") {
            std::puts("taliro " TALIRO_VERSION);
            return 0;
        } else if (!onlyPaths && argument.size() > 1 && argument.starts_with('-')) {
            return fail("unknown option " + std::string(argument) + "; see taliro --help");
        } else {
            auto const path = absolutePath(argv[i]);
            struct stat status {};
            if (!path || ::lstat(path->c_str(), &status) != 0)
                return fail(std::string(argument) + ": " +
                            (path ? std::strerror(errno) : "not a file's address"));
            uris.push_back(asUri(*path));
        }
    }
    switch (askRunningProgram(uris)) {
    case Asked::taken:
        return 0;
    case Asked::silent:
        return fail("Taliro runs already but does not answer");
    case Asked::nobody:
        break;
    }
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
        return fail("no display to show anything on; is DISPLAY set?");
    auto const program = programPath();
    if (!program)
        return fail("the program Taliro is missing beside this tool");
    if (int const error = startProgram(*program, uris); error != 0)
        return fail(*program + ": " + std::strerror(error));
    return 0;
}
