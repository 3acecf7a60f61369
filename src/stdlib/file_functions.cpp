#include "stdlib/file_functions.h"

#include "value/files.h"

namespace morvel::ruby::internal::builtins {

namespace {

RubyValue writeContent(const BuiltinCall& call, WriteMode mode, const char* openMessage, const char* writeMessage) {
    const std::string& path = requireStringArgument(call, 0);
    const std::string content = call[1].toString();
    switch (writeWholeFile(path, content, mode)) {
        case WriteOutcome::CannotOpen:
            throw RubyError(openMessage + path);
        case WriteOutcome::CannotWrite:
            throw RubyError(writeMessage + path);
        case WriteOutcome::Written:
            break;
    }
    return content.size();
}

}  // namespace

RubyValue fileExists(const BuiltinCall& call) { return canOpenFile(requireStringArgument(call, 0)); }

RubyValue readFile(const BuiltinCall& call) {
    const std::string& path = requireStringArgument(call, 0);
    std::string content;
    if (!readWholeFile(path, content)) {
        throw RubyError("failed to open file: " + path);
    }
    return content;
}

RubyValue writeFile(const BuiltinCall& call) {
    return writeContent(call, WriteMode::Truncate, "failed to open file for writing: ", "failed to write file: ");
}

RubyValue appendFile(const BuiltinCall& call) {
    return writeContent(call, WriteMode::Append, "failed to open file for appending: ", "failed to append file: ");
}

}  // namespace morvel::ruby::internal::builtins
