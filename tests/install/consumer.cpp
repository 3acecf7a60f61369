// The smallest program that embeds the installed library.
#include <iostream>

#include "morvel/ruby/vm.h"

int main() {
    morvel::ruby::RubyVM vm;
    vm.bindFunction("answer", [](morvel::ruby::RubyVM&, morvel::ruby::RubyArguments) { return 42; });
    const morvel::ruby::RubyResult result = vm.runScriptString("\"the answer is \" + answer()", "consumer");
    std::cout << (result.ok ? result.value.asString() : result.error) << '\n';
    return result.ok ? 0 : 1;
}
