#include "app/CommandLine.h"

namespace taliro {

namespace {

Url urlOf(std::string_view argument, std::string_view workingDirectory) {
    if (argument.find("://") != std::string_view::npos) {
        if (auto url = Url::parse(argument))
            return *url;
    }
    bool const isDirectory = argument.ends_with('/');
    std::string path(argument);
    if (!path.starts_with('/'))
        path = std::string(workingDirectory) + '/' + path;
    auto const url = Url::file(path).standardized();
    return isDirectory ? url.asDirectory() : url;
}

} // namespace

std::expected<CommandLine, std::string> CommandLine::parse(std::span<char const* const> arguments,
                                                           std::string_view workingDirectory) {
    CommandLine line;
    bool optionsEnded = false;
    for (std::string_view const argument : arguments) {
        if (!optionsEnded && argument.starts_with('-') && argument != "-") {
            if (argument == "--")
                optionsEnded = true;
            else if (argument == "--help" || argument == "-h")
                line.task = Task::help;
            else if (argument == "--version")
                line.task = Task::version;
            else
                return std::unexpected("unknown option " + std::string(argument) +
                                       "; --help tells what there is");
        } else if (argument.empty()) {
            return std::unexpected("a path is empty");
        } else {
            line.urls.push_back(urlOf(argument, workingDirectory));
        }
    }
    return line;
}

std::string_view CommandLine::helpText() {
    return "Usage: Taliro [PATH...]\n"
           "Shows the file browser, at the given folders or files if there are any.\n"
           "Where Taliro runs already, it shows them and this start ends.\n"
           "\n"
           "  -h, --help     this text\n"
           "      --version  the version\n";
}

} // namespace taliro
