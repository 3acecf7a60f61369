#include "support/conversation.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace morvel::ruby::tests {

namespace {

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

// Both ends close on exec, so the program holds only the copies it was given as standard streams.
Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void collect(FileDescriptor& from, std::string& into) {
    std::array<char, 65536> buffer{};
    const ssize_t count = read(from.number(), buffer.data(), buffer.size());
    if (count > 0) {
        into.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        from.close();
    }
}

}  // namespace

Conversation::Conversation(const ProcessSetup& setup, const std::string& sharedOutput) : m_pending(setup.input) {
    Pipe input = makePipe();
    Pipe output;
    Pipe error;
    if (sharedOutput.empty()) {
        output = makePipe();
        error = makePipe();
    } else {
        constexpr mode_t kMode = 0600;
        output.writeEnd = FileDescriptor(open(sharedOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode));
        error.writeEnd = FileDescriptor(fcntl(output.writeEnd.number(), F_DUPFD_CLOEXEC, 0));
    }
    m_input = std::move(input.writeEnd);
    m_output = std::move(output.readEnd);
    m_error = std::move(error.readEnd);
    // A program that exits without reading its input must not kill the test process.
    (void)std::signal(SIGPIPE, SIG_IGN);
    fcntl(m_input.number(), F_SETFL, O_NONBLOCK);
    m_process = startProcess(setup, input.readEnd.number(), output.writeEnd.number(), error.writeEnd.number());
}

Conversation::~Conversation() {
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
}

bool Conversation::waitForOutput(std::string_view text) {
    std::size_t found = 0;
    while ((found = m_outcome.output.find(text, m_seen)) == std::string::npos) {
        if (!m_output.isOpen() || !exchange()) {
            return false;
        }
    }
    m_seen = found + text.size();
    return true;
}

ProcessOutcome Conversation::finish() {
    m_endsInput = true;
    while (exchange()) {
    }
    awaitProcess(m_process, m_outcome);
    m_process = -1;
    return m_outcome;
}

bool Conversation::exchange() {
    if (m_pending.empty() && m_endsInput) {
        m_input.close();
    }
    if (!m_output.isOpen() && !m_error.isOpen() && !m_input.isOpen()) {
        return false;
    }
    // poll() ignores negative descriptors. A program that neither reads nor writes is killed at its time limit.
    std::array<pollfd, 3> streams{pollfd{m_pending.empty() ? -1 : m_input.number(), POLLOUT, 0},
                                  pollfd{m_output.number(), POLLIN, 0}, pollfd{m_error.number(), POLLIN, 0}};
    if (poll(streams.data(), streams.size(), -1) < 0 && errno != EINTR) {
        throw std::system_error(errno, std::generic_category(), "poll");
    }
    if (streams[0].revents != 0) {
        feed();
    }
    if (streams[1].revents != 0) {
        collect(m_output, m_outcome.output);
    }
    if (streams[2].revents != 0) {
        collect(m_error, m_outcome.error);
    }
    return true;
}

void Conversation::feed() {
    const ssize_t count = write(m_input.number(), m_pending.data(), m_pending.size());
    if (count > 0) {
        m_pending.erase(0, static_cast<std::size_t>(count));
    } else if (count < 0 && errno != EAGAIN && errno != EINTR) {
        // The program has closed its input.
        m_pending.clear();
        m_input.close();
    }
}

}  // namespace morvel::ruby::tests
