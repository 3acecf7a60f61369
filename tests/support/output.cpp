#include "support/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace morvel::ruby::tests {

CapturedOutput::CapturedOutput() : m_earlier(std::cout.rdbuf(m_text.rdbuf())) {}

CapturedOutput::~CapturedOutput() { std::cout.rdbuf(m_earlier); }

SilencedOutput::SilencedOutput() : m_kept(dup(STDOUT_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY);
    std::cout.flush();
    std::fflush(stdout);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

SilencedOutput::~SilencedOutput() {
    std::cout.flush();
    std::fflush(stdout);
    dup2(m_kept, STDOUT_FILENO);
    close(m_kept);
}

}  // namespace morvel::ruby::tests
