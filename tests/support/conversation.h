// Talks with a program while it runs.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "support/file_descriptor.h"
#include "support/process.h"

namespace morvel::ruby::tests {

/// One run of a program at the other end of pipes. Input is fed and output collected side by side, so that neither side
/// can block the other.
class Conversation {
public:
    /// Starts the program, which is first sent `setup.input`. With a shared output file, standard output and standard
    /// error both go there, as with "> file 2>&1" in a shell.
    explicit Conversation(const ProcessSetup& setup, const std::string& sharedOutput = {});
    ~Conversation();
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void send(std::string_view text) { m_pending += text; }

    /// Waits until the program has written the text to standard output after what earlier calls have seen. False when
    /// it ends without.
    [[nodiscard]] bool waitForOutput(std::string_view text);

    /// Sends what is left, ends the input, collects the output and waits for the end.
    [[nodiscard]] ProcessOutcome finish();

private:
    /// Moves some bytes in either direction. False when both outputs have ended.
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
