// Talks to a program while it runs.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "support/file_descriptor.h"
#include "support/process.h"

namespace morvel::ruby::tests {

/// One run of a program connected by pipes. Input is sent and output collected concurrently, so neither side can block
/// the other.
class Conversation {
public:
    /// Starts the program and sends it `setup.input` first. With a shared output file, both standard output and
    /// standard error go there, as with "> file 2>&1" in a shell.
    explicit Conversation(const ProcessSetup& setup, const std::string& sharedOutput = {});
    ~Conversation();
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void send(std::string_view text) { m_pending += text; }

    /// Waits until `text` appears on standard output, after the output that earlier calls matched. False if the program
    /// ends first.
    [[nodiscard]] bool waitForOutput(std::string_view text);

    /// Sends the remaining input, closes it, collects the output and waits for the program to end.
    [[nodiscard]] ProcessOutcome finish();

private:
    /// Transfers some bytes in either direction. False when both outputs have ended.
    bool exchange();
    void feed();

    FileDescriptor m_input;
    FileDescriptor m_output;
    FileDescriptor m_error;
    pid_t m_process = -1;
    std::string m_pending;
    bool m_endsInput = false;
    std::size_t m_seen = 0;
    ProcessOutcome m_outcome;
};

}  // namespace morvel::ruby::tests
