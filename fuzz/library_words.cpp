// Prints a dictionary of libFuzzer: the start of a call of each built-in.
#include <iostream>

#include "support/builtins.h"

int main() {
    for (const std::string& name : morvel::ruby::tests::builtinNames()) {
        std::cout << '"' << name << "(\"\n";
    }
    return std::cout.flush() ? 0 : 1;
}
