#include "platform/signals.h"

#include <csignal>

namespace morvel::ruby::platform {

void ignoreWriteSignals() noexcept {
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

}  // namespace morvel::ruby::platform
