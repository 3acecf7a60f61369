// Captures or drops what the test program itself prints.
#pragma once

#include <sstream>
#include <streambuf>
#include <string>

namespace morvel::ruby::tests {

/// During its lifetime, keeps what is written to std::cout instead of printing it.
class CapturedOutput {
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    [[nodiscard]] std::string text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::streambuf* m_earlier;
};

/// During its lifetime, drops what the process writes to standard output. Allocates only on construction and
/// destruction.
class SilencedOutput {
public:
    SilencedOutput();
    ~SilencedOutput();
    SilencedOutput(const SilencedOutput&) = delete;
    SilencedOutput& operator=(const SilencedOutput&) = delete;

private:
    int m_kept;
};

}  // namespace morvel::ruby::tests
