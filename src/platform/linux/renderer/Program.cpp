#include "platform/linux/renderer/Renderers.h"

#include "platform/linux/ImageReading.h"

#include <memory>
#include <vector>

#include <QTemporaryDir>

#include <glib.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace taliro {

namespace {

/// One argument with its field codes filled in; `%%` is a percent sign.
std::string expand(std::string_view argument, std::string const& path, std::string const& uri,
                   std::string const& output, int size) {
    std::string result;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        if (argument[i] != '%' || i + 1 == argument.size()) {
            result += argument[i];
            continue;
        }
        switch (argument[++i]) {
        case 'i':
            result += path;
            break;
        case 'u':
            result += uri;
            break;
        case 'o':
            result += output;
            break;
        case 's':
            result += std::to_string(size);
            break;
        case '%':
            result += '%';
            break;
        default:
            break;
        }
    }
    return result;
}

bool runToEnd(std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t process = -1;
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    // It has nothing to say to the program that asks us.
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", 0, 0);
    auto const error = posix_spawnp(&process, pointers.front(), &files, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    int status = -1;
    return error == 0 && waitpid(process, &status, 0) == process && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

} // namespace

QImage drawWithProgram(std::string const& command, std::string const& path, QSize box) {
    QTemporaryDir const folder;
    int count = 0;
    char** words = nullptr;
    if (!folder.isValid() || !g_shell_parse_argv(command.c_str(), &count, &words, nullptr))
        return {};
    std::unique_ptr<char*, decltype(&g_strfreev)> const parsed(words, &g_strfreev);
    std::unique_ptr<char, decltype(&g_free)> const uri(g_filename_to_uri(path.c_str(), nullptr, nullptr),
                                                       &g_free);
    auto const output = folder.filePath(QStringLiteral("thumbnail.png")).toStdString();
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i)
        arguments.push_back(
            expand(words[i], path, uri ? uri.get() : "", output, std::max(box.width(), box.height())));
    if (!runToEnd(arguments))
        return {};
    auto read = readImage(output, box);
    return read ? std::move(read->image) : QImage();
}

} // namespace taliro
