// Members of RubyVM that have no free function, under their own names.
#pragma once

#include <string>

namespace morvel::ruby {

class RubyValue;
class RubyVM;

namespace tests {

/// vm.getGlobal(name, value).
bool getGlobalUnchanged(const RubyVM& vm, const std::string& name, RubyValue& value);

}  // namespace tests

}  // namespace morvel::ruby
