#include "platform/linux/Sandbox.h"
#include "platform/linux/Socket.h"
#include "platform/linux/player/Player.h"

#include <gst/gst.h>
#include <unistd.h>

using namespace taliro;

namespace {

constexpr int connection = STDIN_FILENO;
/// Films take a lot, and drivers that decode them map even more without using it.
constexpr unsigned mostMegabytes = 6144;

} // namespace

int main() {
    enterSandbox(mostMegabytes);
    PlayerRequest request;
    if (!receiveAll(connection, &request, sizeof request) || request.pathLength > longestPlayerPath ||
        request.width > longestFilmSide || request.height > longestFilmSide)
        return 1;
    std::string path(request.pathLength, '\0');
    if (!receiveAll(connection, path.data(), path.size()) || !gst_init_check(nullptr, nullptr, nullptr))
        return 1;
    Player(connection, path, request.width, request.height).run();
    return 0;
}
