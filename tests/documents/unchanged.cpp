#include "documents/unchanged.h"

#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

bool getGlobalUnchanged(const RubyVM& vm, const std::string& name, RubyValue& value) {
    return vm.getGlobal(name, value);
}

}  // namespace morvel::ruby::tests
