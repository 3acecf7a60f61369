#include "support/golden.h"

#include <algorithm>
#include <filesystem>

namespace morvel::ruby::tests {

std::vector<std::string> namesIn(const std::string& directory, const std::string& extension) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        if (entry.path().extension() == extension) {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace morvel::ruby::tests
