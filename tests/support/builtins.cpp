#include "support/builtins.h"

#include "morvel/ruby/vm.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {

std::vector<std::string> builtinNames() {
    RubyVM vm;
    const internal::GlobalTable& globals = RubyVM::Impl::of(vm).globals;
    std::vector<std::string> names;
    for (std::size_t slot = 0; slot < globals.size(); ++slot) {
        if (globals.value(slot).type == RubyValue::Type::Function) {
            names.push_back(globals.nameOf(slot));
        }
    }
    return names;
}

}  // namespace morvel::ruby::tests
