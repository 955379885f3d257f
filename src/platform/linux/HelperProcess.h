#pragma once

#include "platform/linux/FileDescriptor.h"

#include <string>

#include <sys/types.h>

namespace taliro {

/// A program of ours that reads foreign files in this process's place, for it may crash, hang or run out of
/// memory over them. It is asked and answers over a socket, its standard input.
class HelperProcess {
public:
    explicit HelperProcess(std::string program) : m_program(std::move(program)) {}
    ~HelperProcess() { stop(); }
    HelperProcess(HelperProcess const&) = delete;
    HelperProcess& operator=(HelperProcess const&) = delete;

    /// Whether it runs, started now or before.
    bool start();
    /// Ends it, if it runs, with all that it started.
    void stop();
    /// Ends the conversation: a thread that waits for an answer gets none.
    void disconnect();
    bool isRunning() const { return m_process > 0; }
    int socket() const { return m_socket.get(); }

private:
    std::string m_program;
    pid_t m_process = -1;
    FileDescriptor m_socket;
};

} // namespace taliro
