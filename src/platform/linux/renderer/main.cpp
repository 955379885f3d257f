#include "platform/linux/Sandbox.h"
#include "platform/linux/Socket.h"
#include "platform/linux/renderer/Renderers.h"

#include <string>

#include <QGuiApplication>

#include <unistd.h>

using namespace taliro;

namespace {

constexpr int connection = STDIN_FILENO;
constexpr unsigned secondsAPicture = 30;
constexpr unsigned mostMegabytes = 2048;

DrawnPage draw(RenderRequest const& request, std::string const& path, std::string const& command) {
    QSize const box(request.width, request.height);
    switch (request.kind) {
    case RenderKind::drawing:
        return {drawDrawing(path, box)};
    case RenderKind::document:
        return drawDocument(path, request.page, box);
    case RenderKind::text:
        return {drawText(path, box)};
    case RenderKind::font:
        return {drawFont(path, box)};
    case RenderKind::program:
        return {drawWithProgram(command, path, box)};
    case RenderKind::archive:
        break;
    }
    return {};
}

bool answerWithPicture(RenderRequest const& request, std::string const& path, std::string const& command) {
    auto drawn = draw(request, path, command);
    auto const image = std::move(drawn.image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    RenderReply const reply{.width = image.width(), .height = image.height(), .pages = drawn.pages};
    return sendAll(connection, &reply, sizeof reply) &&
           sendAll(connection, image.constBits(), static_cast<std::size_t>(image.sizeInBytes()));
}

bool answerWithSummary(std::string const& path) {
    bool connected = true;
    listArchive(path, [&](SummaryReply const& reply, std::string_view name) {
        connected =
            sendAll(connection, &reply, sizeof reply) && sendAll(connection, name.data(), name.size());
        return connected;
    });
    return connected;
}

/// One request; false once there will be no more.
bool serve() {
    RenderRequest request;
    if (!receiveAll(connection, &request, sizeof request) || request.pathLength > longestText ||
        request.commandLength > longestText || request.width > longestSide || request.height > longestSide)
        return false;
    std::string path(request.pathLength, '\0');
    std::string command(request.commandLength, '\0');
    if (!receiveAll(connection, path.data(), path.size()) ||
        !receiveAll(connection, command.data(), command.size()))
        return false;
    limitProcessorTime(secondsAPicture);
    return request.kind == RenderKind::archive ? answerWithSummary(path)
                                               : answerWithPicture(request, path, command);
}

} // namespace

int main(int argc, char** argv) {
    enterSandbox(mostMegabytes);
    QGuiApplication const application(argc, argv);
    if (!sendAll(connection, &rendererGreeting, sizeof rendererGreeting))
        return 1;
    while (serve()) {
    }
    return 0;
}
