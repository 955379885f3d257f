#include "platform/linux/XdgWorkspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QProcess>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <memory>

namespace taliro {

namespace {

template <auto release>
struct Releases {
    template <typename T>
    void operator()(T* object) const {
        release(object);
    }
};
template <typename T>
using GObjectPointer = std::unique_ptr<T, Releases<g_object_unref>>;

/// Runs in the child: it outlives us and gets none of the keys pressed in our terminal.
void detach(gpointer) {
    setsid();
    std::signal(SIGPIPE, SIG_DFL);
}

/// A pipe, socket or device would block or do harm where it is opened.
bool isOpenable(std::string const& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
}

GObjectPointer<GAppInfo> applicationFor(GFile* file, char const* contentType) {
    if (contentType)
        return GObjectPointer<GAppInfo>(g_app_info_get_default_for_type(contentType, false));
    return GObjectPointer<GAppInfo>(g_file_query_default_handler(file, nullptr, nullptr));
}

bool launch(GAppInfo* application, GFile* file) {
    auto* uri = g_file_get_uri(file);
    GList uris{uri, nullptr, nullptr};
    GError* error = nullptr;
    bool started = false;
    if (G_IS_DESKTOP_APP_INFO(application)) {
        // No launch context: nothing then waits for the program to announce its first window.
        started = g_desktop_app_info_launch_uris_as_manager(
            G_DESKTOP_APP_INFO(application), &uris, nullptr,
            static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                     G_SPAWN_STDERR_TO_DEV_NULL),
            detach, nullptr, nullptr, nullptr, &error);
    } else {
        started = g_app_info_launch_uris(application, &uris, nullptr, &error);
    }
    g_free(uri);
    g_clear_error(&error);
    return started;
}

bool openAs(Url const& item, char const* contentType) {
    GObjectPointer<GFile> const file(g_file_new_for_path(item.path().c_str()));
    auto const application = applicationFor(file.get(), contentType);
    return application && launch(application.get(), file.get());
}

struct Terminal {
    char const* program;
    char const* folderOption; ///< null where the program starts in the folder that it is started from
};
constexpr std::array terminals{
    Terminal{"xdg-terminal-exec", nullptr},
    Terminal{"x-terminal-emulator", nullptr},
    Terminal{"gnome-terminal", nullptr},
    Terminal{"kgx", nullptr},
    Terminal{"konsole", "--workdir"},
    Terminal{"xfce4-terminal", nullptr},
    Terminal{"mate-terminal", nullptr},
    Terminal{"lxterminal", nullptr},
    Terminal{"qterminal", nullptr},
    Terminal{"alacritty", nullptr},
    Terminal{"kitty", nullptr},
    Terminal{"foot", nullptr},
    Terminal{"xterm", nullptr},
};

bool startDetached(QString const& program, QStringList const& arguments, QString const& folder) {
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setWorkingDirectory(folder);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

} // namespace

bool XdgWorkspace::open(Url const& item) {
    return item.isFile() && isOpenable(item.path()) && openAs(item, nullptr);
}

void XdgWorkspace::reveal(std::vector<Url> const& items) {
    if (items.empty())
        return;
    QStringList uris;
    for (auto const& item : items)
        uris.append(QString::fromStdString(item.absoluteString()));
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    message << uris << QString();
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message));
    QObject::connect(call, &QDBusPendingCallWatcher::finished, call, [call, first = items.front()] {
        // No file manager on the bus shows items: one shows at least their folder.
        if (call->isError())
            openAs(first.deletingLastPathComponent(), "inode/directory");
        call->deleteLater();
    });
}

bool XdgWorkspace::openTerminal(Url const& folder) {
    auto const path =
        QString::fromLocal8Bit(folder.path().data(), static_cast<qsizetype>(folder.path().size()));
    for (auto const& terminal : terminals) {
        auto const program = QStandardPaths::findExecutable(QString::fromLatin1(terminal.program));
        if (program.isEmpty())
            continue;
        QStringList arguments;
        if (terminal.folderOption)
            arguments << QString::fromLatin1(terminal.folderOption) << path;
        if (startDetached(program, arguments, path))
            return true;
    }
    return false;
}

bool XdgWorkspace::openPrivacySettings() {
    return false; // Desktops here have no page on which a program is granted access to files.
}

} // namespace taliro
