#include "bad_images.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "counting_allocator.h"
#include "support.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kMostMemory = std::size_t{192} * 1024 * 1024;
constexpr std::size_t kMostOutput = std::size_t{1024} * 1024;
constexpr int kBatchDone = 99;

/// What the child reports to its parent, in shared memory.
struct Progress {
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> completed{0};
    std::atomic<std::size_t> failed{0};
    /// Results of one copy that did not agree.
    std::atomic<std::size_t> differing{0};
    char difference[400] = {};
};

/// One damaged copy out of all.
struct Case {
    std::size_t image;
    std::size_t copy;
};

struct Observed {
    bool ok = false;
    std::string text;
    bool ranOutOfMemory = false;

    friend bool operator==(const Observed&, const Observed&) = default;
};

RubyValue noFiles(RubyVM&, RubyArguments) { throw RubyError("no files here"); }

Observed observe(const RubyBytecode& image, internal::ExecutorChoice executor) {
    const std::size_t refusedBefore = allocationCounts().refused;
    RubyVM vm;
    Observed observed;
    for (const char* name : {"file_exists?", "read_file", "write_file", "append_file"}) {
        vm.bindFunction(name, noFiles);
    }
    for (const char* name : {"puts", "print"}) {
        vm.bindFunction(name, [&observed](RubyVM&, RubyArguments arguments) {
            for (const RubyValue& argument : arguments) {
                const std::string text = argument.toString();
                if (observed.text.size() < kMostOutput) {
                    observed.text += text + '|';
                }
            }
            return RubyValue();
        });
    }
    vm.bindFunction("time_ms", [](RubyVM&, RubyArguments) { return RubyValue(0); });
    RubyVM::Impl::of(vm).executor = executor;
    RubyVM::Impl::of(vm).random.seed(1);
    const RubyResult result = vm.runBytecode(image);
    observed.ok = result.ok;
    try {
        observed.text += result.ok ? result.value.toString() : result.error;
    } catch (const std::exception& exception) {
        observed.text += exception.what();
    }
    observed.ranOutOfMemory = allocationCounts().refused != refusedBefore;
    return observed;
}

/// One executor may reach a limit of memory or stack earlier than the other.
bool meetsBound(const Observed& observed) {
    return observed.text.find("stack overflow") != std::string::npos || observed.ranOutOfMemory ||
           observed.text.size() >= kMostOutput;
}

void startTimer(unsigned milliseconds) {
    const itimerval timer{{0, 0}, {milliseconds / 1000, static_cast<suseconds_t>(milliseconds % 1000) * 1000}};
    setitimer(ITIMER_PROF, &timer, nullptr);
}

void runCase(const NamedImage& original, const Case& tried, std::size_t number, unsigned milliseconds,
             Progress& progress) {
    const RubyBytecode image = damagedCopy(original.image, tried.copy);
    startTimer(milliseconds);
    const Observed fast = observe(image, internal::ExecutorChoice::Automatic);
    startTimer(milliseconds);
    const Observed plain = observe(image, internal::ExecutorChoice::BaselineOnly);
    startTimer(0);
    ++(fast.ok ? progress.completed : progress.failed);
    if (!(fast == plain) && !original.reachesLimit && !meetsBound(fast) && !meetsBound(plain)) {
        const std::string difference = fast.text.substr(0, 150) + " / " + plain.text.substr(0, 150);
        std::strncpy(progress.difference, difference.c_str(), sizeof progress.difference - 1);
        progress.differing = number + 1;
    }
}

std::string describe(const NamedImage& image, const Case& tried) {
    const std::size_t bits = image.image.bytes.size() * 8;
    return image.name + (tried.copy < bits ? ", bit " + std::to_string(tried.copy)
                                           : ", cut to " + std::to_string(tried.copy - bits) + " bytes");
}

}  // namespace

std::vector<NamedImage> imagesOfScripts(const std::vector<std::string>& directories, std::size_t most,
                                        std::size_t largest) {
    std::vector<std::string> paths;
    for (const std::string& directory : directories) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.path().extension() == ".rb") {
                paths.push_back(entry.path().string());
            }
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<NamedImage> images;
    std::vector<std::size_t> sizes;
    const RubyVM vm;
    for (const std::string& path : paths) {
        const std::string name = std::filesystem::path(path).filename().string();
        RubyBytecode image;
        try {
            image = vm.compileScript(readFile(path), name);
        } catch (const RubyError&) {
            continue;
        }
        const std::size_t size = image.bytes.size();
        if (size <= largest && std::find(sizes.begin(), sizes.end(), size) == sizes.end()) {
            sizes.push_back(size);
            const bool reachesLimit = std::filesystem::path(path).parent_path().filename() == "limits";
            images.push_back({name, std::move(image), reachesLimit});
        }
    }
    if (images.size() <= most) {
        return images;
    }
    std::vector<NamedImage> chosen;
    for (std::size_t i = 0; i < most; ++i) {
        chosen.push_back(std::move(images[i * images.size() / most]));
    }
    return chosen;
}

std::size_t damagedCopies(const RubyBytecode& image) { return image.bytes.size() * 9; }

RubyBytecode damagedCopy(const RubyBytecode& image, std::size_t number) {
    RubyBytecode copy = image;
    const std::size_t bits = image.bytes.size() * 8;
    if (number < bits) {
        copy.bytes[number / 8] ^= static_cast<std::uint8_t>(1U << (number % 8));
    } else {
        copy.bytes.resize(number - bits);
    }
    return copy;
}

BadImageTally tryDamagedImages(const std::vector<NamedImage>& images, std::size_t step, unsigned milliseconds) {
    std::vector<Case> cases;
    for (std::size_t image = 0; image < images.size(); ++image) {
        // Different remainders, so that a step of 8 does not always hit the same bit.
        for (std::size_t copy = image % step; copy < damagedCopies(images[image].image); copy += step) {
            cases.push_back({image, copy});
        }
    }
    void* shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        throw std::runtime_error("no shared memory");
    }
    auto& progress = *new (shared) Progress;
    BadImageTally tally;
    while (progress.next < cases.size()) {
        const pid_t child = fork();
        if (child < 0) {
            throw std::runtime_error("no child process");
        }
        if (child == 0) {
            limitLiveBytes(allocationCounts().liveBytes + kMostMemory);
            while (progress.next < cases.size()) {
                const std::size_t number = progress.next;
                runCase(images[cases[number].image], cases[number], number, milliseconds, progress);
                ++progress.next;
                if (progress.differing != 0) {
                    break;
                }
            }
            _exit(kBatchDone);
        }
        int status = 0;
        waitpid(child, &status, 0);
        const std::size_t number = progress.next;
        if (WIFSIGNALED(status) && WTERMSIG(status) == SIGPROF) {
            ++tally.stopped;
            ++progress.next;
        } else if (!WIFEXITED(status) || WEXITSTATUS(status) != kBatchDone) {
            tally.crashes.push_back(describe(images[cases[number].image], cases[number]));
            ++progress.next;
        }
        if (progress.differing != 0) {
            const Case& tried = cases[progress.differing - 1];
            tally.differences.push_back(describe(images[tried.image], tried) + ": " + progress.difference);
            progress.differing = 0;
        }
    }
    tally.tried = cases.size();
    tally.completed = progress.completed;
    tally.failed = progress.failed;
    munmap(shared, sizeof(Progress));
    return tally;
}

}  // namespace morvel::ruby::tests
