#include "platform/files.h"

#include <fcntl.h>
#include <unistd.h>

namespace morvel::ruby::platform {

bool canOpenForReading(const std::string& path) noexcept {
    // Without O_NONBLOCK, opening a named pipe would wait for its other end.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    return file >= 0 && close(file) == 0;
}

}  // namespace morvel::ruby::platform
