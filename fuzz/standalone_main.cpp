// Runs a fuzz target without libFuzzer: replays files, then tries a fixed number of random inputs.
//     TARGET [--rounds N] [--seed N] [--most-bytes N] [--dictionary FILE] [<file or directory>...]
// The same options give the same inputs. An input that ends the process is saved as the file "finding" in the working
// directory.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

using Input = std::vector<std::uint8_t>;

// Time limit for one input, in seconds.
constexpr unsigned kMostSeconds = 120;

const Input* currentInput = nullptr;

extern "C" void keepInput(int signal) {
    const int file = open("finding", O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file >= 0 && currentInput != nullptr) {
        const ssize_t written = write(file, currentInput->data(), currentInput->size());
        close(written >= 0 ? file : -1);
    }
    std::signal(signal, SIG_DFL);
    (void)raise(signal);
}

void tryInput(const Input& input) {
    currentInput = &input;
    alarm(kMostSeconds);
    (void)LLVMFuzzerTestOneInput(input.data(), input.size());
    alarm(0);
    currentInput = nullptr;
}

Input readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void collect(const std::filesystem::path& path, std::vector<Input>& inputs) {
    if (!std::filesystem::is_directory(path)) {
        inputs.push_back(readFile(path));
        return;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        inputs.push_back(readFile(file));
    }
}

/// The quoted entries of a libFuzzer dictionary, with \\, \" and \xHH decoded.
std::vector<Input> readDictionary(const std::string& path) {
    std::vector<Input> words;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const std::size_t begin = line.find('"');
        if (line.empty() || line[0] == '#' || begin == std::string::npos) {
            continue;
        }
        Input word;
        for (std::size_t i = begin + 1; i < line.size() && line[i] != '"'; ++i) {
            if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == 'x' && i + 3 < line.size()) {
                word.push_back(static_cast<std::uint8_t>(std::stoul(line.substr(i + 2, 2), nullptr, 16)));
                i += 3;
            } else {
                i += line[i] == '\\' ? 1U : 0U;
                word.push_back(static_cast<std::uint8_t>(line[i]));
            }
        }
        words.push_back(word);
    }
    return words;
}

class InputMaker {
public:
    InputMaker(std::uint64_t seed, std::size_t mostBytes, std::vector<Input> seeds, std::vector<Input> words)
        : m_random(seed), m_mostBytes(mostBytes), m_seeds(std::move(seeds)), m_words(std::move(words)) {}

    Input make() {
        Input input;
        if (m_seeds.empty() || below(4) == 0) {
            input.resize(below(m_mostBytes) + 1);
            std::generate(input.begin(), input.end(), [this] { return static_cast<std::uint8_t>(m_random()); });
        } else {
            input = m_seeds[below(m_seeds.size())];
            for (std::size_t left = below(6); left > 0; --left) {
                change(input);
            }
        }
        input.resize(std::min(input.size(), m_mostBytes));
        return input;
    }

private:
    std::size_t below(std::size_t count) { return m_random() % count; }

    void insert(Input& input, const Input& part) {
        const std::size_t at = below(input.size() + 1);
        input.insert(input.begin() + static_cast<std::ptrdiff_t>(at), part.begin(), part.end());
    }

    void change(Input& input) {
        const std::size_t at = input.empty() ? 0 : below(input.size());
        const auto position = input.begin() + static_cast<std::ptrdiff_t>(at);
        const std::size_t length = std::min(below(20) + 1, input.size() - at);
        switch (input.empty() ? 6 : below(7)) {
            case 0:
                input[at] ^= static_cast<std::uint8_t>(1U << below(8));
                break;
            case 1:
                input[at] = static_cast<std::uint8_t>(m_random());
                break;
            case 2:
                input.erase(position, position + static_cast<std::ptrdiff_t>(length));
                break;
            case 3:
                insert(input, Input(position, position + static_cast<std::ptrdiff_t>(length)));
                break;
            case 4:
                if (!m_words.empty()) {
                    insert(input, m_words[below(m_words.size())]);
                }
                break;
            case 5: {
                // The beginning of one seed and the end of another.
                const Input& other = m_seeds[below(m_seeds.size())];
                input.resize(at);
                const std::size_t from = below(other.size() + 1);
                input.insert(input.end(), other.begin() + static_cast<std::ptrdiff_t>(from), other.end());
                break;
            }
            default:
                input.insert(position, static_cast<std::uint8_t>(m_random()));
                break;
        }
    }

    std::mt19937_64 m_random;
    std::size_t m_mostBytes;
    std::vector<Input> m_seeds;
    std::vector<Input> m_words;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    // The handler has its own stack, because it must also work after a stack overflow.
    static std::array<char, 1 << 16> handlerStack;
    const stack_t stack{handlerStack.data(), 0, handlerStack.size()};
    sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_handler = keepInput;
    action.sa_flags = SA_ONSTACK;
    for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGALRM}) {
        sigaction(signal, &action, nullptr);
    }
    std::size_t rounds = 0;
    std::uint64_t seed = 1;
    std::size_t mostBytes = 2000;
    std::vector<Input> inputs;
    std::vector<Input> words;
    const std::span given(arguments, static_cast<std::size_t>(argumentCount));
    for (std::size_t i = 1; i < given.size(); ++i) {
        const std::string word = given[i];
        const bool hasNext = i + 1 < given.size();
        if (word == "--rounds" && hasNext) {
            rounds = std::strtoul(given[++i], nullptr, 10);
        } else if (word == "--seed" && hasNext) {
            seed = std::strtoul(given[++i], nullptr, 10);
        } else if (word == "--most-bytes" && hasNext) {
            mostBytes = std::max<std::size_t>(1, std::strtoul(given[++i], nullptr, 10));
        } else if (word == "--dictionary" && hasNext) {
            words = readDictionary(given[++i]);
        } else {
            collect(word, inputs);
        }
    }
    for (const Input& input : inputs) {
        tryInput(input);
    }
    const std::size_t replayed = inputs.size();
    InputMaker maker(seed, mostBytes, std::move(inputs), std::move(words));
    for (std::size_t round = 0; round < rounds; ++round) {
        tryInput(maker.make());
    }
    std::cout << "replayed " << replayed << " inputs, tried " << rounds << " random ones\n";
    return 0;
}
