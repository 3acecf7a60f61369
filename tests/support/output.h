// What the test program itself prints.
#pragma once

#include <sstream>
#include <streambuf>
#include <string>

namespace morvel::ruby::tests {

/// While it lives, what goes through std::cout is kept instead of printed.
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

/// While it lives, what the process writes to standard output is dropped. Needs memory only when it begins and ends.
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
