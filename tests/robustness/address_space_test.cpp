// Runs the program in an address space too small for its input or stack, and with unusual stack limits.
#include <gtest/gtest.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support.h"
#include "value/zeroed_array.h"

namespace morvel::ruby::tests {

namespace {

TEST(SmallAddressSpace, IsReportedAsOutOfMemory) {
    constexpr rlim_t kAddressSpace = 256 * 1024 * 1024;
    const TemporaryDirectory directory;
    const std::string source = directory.file("script.rb");
    writeFile(source, "x = 1");
    std::filesystem::resize_file(source, kAddressSpace * 2);
    for (const bool isCompiling : {true, false}) {
        ProcessSetup setup;
        setup.arguments =
            isCompiling ? std::vector<std::string>{"--compile", source, directory.file("image")} : std::vector{source};
        setup.prepare = limited(RLIMIT_AS, kAddressSpace);
        const ProcessOutcome child = runProcess(setup);
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.error, "morveltesk: out of memory\n");
    }
}

TEST(SmallAddressSpace, EndsTheReplWithAnErrorWhenALineDoesNotFit) {
    constexpr rlim_t kAddressSpace = 128 * 1024 * 1024;
    ProcessSetup setup;
    setup.arguments = {"--repl"};
    setup.input = "puts('before')\nx = '" + std::string(kAddressSpace, 'x') + "'\nputs('after')\n";
    setup.prepare = limited(RLIMIT_AS, kAddressSpace);
    const ProcessOutcome child = runProcess(setup);
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.output, "rb> before\nrb> ");
    EXPECT_EQ(child.error, "morveltesk: out of memory\n");
}

constexpr rlim_t kKiB = 1024;
constexpr rlim_t kMiB = 1024 * kKiB;

ProcessOutcome runScript(const std::string& source, const std::function<void()>& prepare) {
    const TemporaryDirectory directory;
    writeFile(directory.file("script.rb"), source);
    ProcessSetup setup;
    setup.arguments = {directory.file("script.rb")};
    setup.prepare = prepare;
    return runProcess(setup);
}

/// The numbers that a script prints under an address-space limit; checks that the program exits normally.
std::vector<double> numbersWithin(const std::string& source, rlim_t addressSpace) {
    const ProcessOutcome child = runScript(source, limited(RLIMIT_AS, addressSpace));
    EXPECT_EQ(child.status, 0) << addressSpace << child.error;
    std::istringstream output(child.output);
    return {std::istream_iterator<double>(output), {}};
}

std::string parentheses(std::size_t count) { return "x = " + repeated("(", count) + "1" + repeated(")", count); }

// Builds two lists nested 60,000 deep and fills all memory; then renders one and compares both, with memory full and
// after it is freed.
constexpr const char* kDeepListsInFullMemory =
    "def nest() list = [] n = 60000 while n > 0 do list = [list] n = n - 1 end return list end\n"
    "def same() return one == two end\n"
    "def fill() n = 1000000 while n > 2000 do r = pcall(string_rep, 'x', n)\n"
    "if len(r) == 3 then n = math_floor(n / 2) else array_push(all, r[1]) end end end\n"
    "one = nest() two = nest() all = []\n"
    "pcall(fill) pcall(to_s, one) pcall(same) all = nil\n"
    "r = [pcall(to_s, one), pcall(same)]\nputs('end')\n";

constexpr const char* kRing = "ring = [] array_push(ring, ring)\n";

void expectNoSignal(const std::string& source, rlim_t addressSpace) {
    const ProcessOutcome child = runScript(source, limited(RLIMIT_AS, addressSpace));
    const bool isRefused = child.error.ends_with("stack overflow\n") || child.error.ends_with("out of memory\n");
    EXPECT_EQ(child.signal, 0) << addressSpace << ' ' << source.substr(0, 60);
    EXPECT_TRUE(child.status == 0 || (child.status == 1 && isRefused)) << addressSpace << ' ' << child.error;
}

TEST(SmallAddressSpace, HasNoRoomForAStackThatGrows) {
    constexpr std::array<rlim_t, 7> kSizes{6000, 6500, 7000, 8000, 12'000, 50'000, 200'000};
    std::size_t limits = 0;
    for (const rlim_t kibibytes : kSizes) {
        const rlim_t size = kibibytes * kKiB;
        // A dynamically linked program may not even start.
        if (runScript("x = 1", limited(RLIMIT_AS, size)).status == 0) {
            ++limits;
            expectNoSignal(parentheses(8000), size);
            expectNoSignal(kDeepListsInFullMemory, size);
            expectNoSignal(std::string(kRing) + "to_s(ring)", size);
        }
    }
    EXPECT_GE(limits, 3U);
}

TEST(LimitsOfTheStack, UnlimitedStillEndsARing) {
    constexpr rlim_t kAddressSpace = 1024 * kMiB;
    constexpr std::size_t kMostMemory = 256 * kMiB;
    const auto limits = [] {
        limited(RLIMIT_STACK, RLIM_INFINITY)();
        limited(RLIMIT_AS, kAddressSpace)();
    };
    for (const char* work : {"to_s(ring)", "ring == [ring]", "puts(1, ring)"}) {
        const ProcessOutcome child = runScript(std::string(kRing) + work, limits);
        EXPECT_EQ(child.status, 1) << work;
        EXPECT_TRUE(child.error.ends_with("stack overflow\n")) << child.error;
        EXPECT_EQ(child.output, "");
        EXPECT_LT(child.peakMemory, kMostMemory) << work;
    }
    // The stack is far larger than the usual 8 MiB.
    EXPECT_EQ(runScript(parentheses(50'000) + " puts(x)", limits).output, "1\n");
}

// Unused stack is not resident.
TEST(LimitsOfTheStack, GrowingTakesLittleMemory) {
    constexpr std::size_t kMostMemory = 6 * kMiB;
    const ProcessOutcome child = runScript("x = 1", [] { limited(RLIMIT_STACK, RLIM_INFINITY)(); });
    EXPECT_EQ(child.status, 0);
    EXPECT_LT(child.peakMemory, kMostMemory);
}

TEST(LimitsOfTheStack, MayBeLoweredWhileTheProcessRuns) {
    constexpr unsigned kSeconds = 20;
    const ProcessOutcome child = runInChild(
        [] {
            RubyVM vm;
            (void)outcome(vm, "x = 1");
            const rlimit limit{kMiB, RLIM_INFINITY};
            setrlimit(RLIMIT_STACK, &limit);
            return outcome(vm, std::string(kRing) + "to_s(ring)") == "error: stack overflow" && isUsable(vm) ? 0 : 1;
        },
        kSeconds);
    EXPECT_EQ(child.signal, 0);
    EXPECT_EQ(child.status, 0);
}

#ifdef __x86_64__

/// Makes the system call fail with EPERM from now on.
void forbid(unsigned systemCall) {
    constexpr auto kArchitecture = static_cast<unsigned>(offsetof(seccomp_data, arch));
    constexpr auto kNumber = static_cast<unsigned>(offsetof(seccomp_data, nr));
    std::array<sock_filter, 6> code{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kArchitecture),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AUDIT_ARCH_X86_64, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNumber),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, systemCall, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog program{code.size(), code.data()};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

TEST(LimitsOfTheStack, AreBelievedWhereTheSystemCannotBeAsked) {
    const auto prepare = [] { forbid(SYS_rt_sigprocmask); };
    const ProcessOutcome ring = runScript(std::string(kRing) + "to_s(ring)", prepare);
    EXPECT_EQ(ring.status, 1);
    EXPECT_EQ(ring.error, "morveltesk: stack overflow\n");
    EXPECT_EQ(runScript(parentheses(5000) + " puts(x)", prepare).output, "1\n");
}

#endif

// The last of the memory goes in small pieces; the failure may strike at any of them.
TEST(SmallAddressSpace, EndsImagesThatFillItWithAnError) {
    const TemporaryDirectory directory;
    const std::string script = directory.file("script.rb");
    const std::string image = directory.file("image");
    writeFile(script, "a = nil\nwhile true do a = [a, 1] end\n");
    ProcessSetup compiling;
    compiling.arguments = {"--compile", script, image};
    ASSERT_EQ(runProcess(compiling).status, 0);
    for (rlim_t size = 8'000; size <= 200'000; size += size / 2 + 7) {
        ProcessSetup setup;
        setup.arguments = {"--run-bytecode", image};
        setup.prepare = limited(RLIMIT_AS, size * kKiB);
        const ProcessOutcome child = runProcess(setup);
        EXPECT_EQ(child.status, 1) << size;
        EXPECT_EQ(child.error, "morveltesk: out of memory\n") << size;
    }
}

// Memory that one round keeps for reuse or leaves scattered over the heap must be available to the next.
TEST(SmallAddressSpace, HasAboutTheSameRoomInEveryRound) {
    const std::string source =
        "def maps(n) m = map_new() while true do m['key ' + n[0]] = n[0] n[0] = n[0] + 1 end end\n"
        "def calls(n) n[0] = n[0] + 1 return calls(n) + 1 end\n"
        "def lists(n) a = nil while true do a = [a, n[0]] n[0] = n[0] + 1 end end\n"
        "kinds = [maps, calls, lists]\nn = [0]\nround = 0\n"
        "while round < 4 do\nkind = 0\nwhile kind < len(kinds) do\nn[0] = 0\np = pcall(kinds[kind], n)\n"
        "if p[2] != 'out of memory' then error(p) end\nprint(n[0], ' ')\nkind = kind + 1\nend\n"
        "round = round + 1\nend\n";
    constexpr std::size_t kKinds = 3;
    // Containers that grow by doubling may barely find room for the last step or barely miss it. The last kind grows by
    // pairs.
    constexpr std::array<double, kKinds> kLeastRoom{0.45, 0.45, 0.9};
    for (const rlim_t size : {30'000U, 60'000U}) {
        const std::vector<double> rooms = numbersWithin(source, size * kKiB);
        ASSERT_EQ(rooms.size(), kKinds * 4) << size;
        for (std::size_t i = kKinds; i < rooms.size(); ++i) {
            EXPECT_GT(rooms[i], rooms[i % kKinds] * kLeastRoom[i % kKinds]) << size << ", turn " << i;
        }
    }
}

/// Fills the address space with blocks of the general allocator and frees all but the last, which keeps the others from
/// the system.
void leaveAllToTheAllocator() {
    constexpr std::size_t kRoom = std::size_t{64} << 20;
    constexpr std::size_t kBlock = 100'000;
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t most = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + kRoom;
    const rlimit limit{most, most};
    setrlimit(RLIMIT_AS, &limit);
    static std::array<void*, kRoom / kBlock + 1> blocks;
    std::size_t count = 0;
    while (count < blocks.size() && (blocks[count] = std::malloc(kBlock)) != nullptr) {
        ++count;
    }
    for (std::size_t i = 0; i + 1 < count; ++i) {
        std::free(blocks[i]);
    }
}

TEST(ZeroedArray, TakesWhatTheAllocatorKeepsWhereTheAddressSpaceIsFull) {
    constexpr std::size_t kSize = std::size_t{2} << 20;
    const auto makeArray = [] {
        leaveAllToTheAllocator();
        const auto array = internal::makeZeroedArray<char>(kSize);
        _exit(array[0] == 0 && array[kSize - 1] == 0 ? 0 : 1);
    };
    EXPECT_EXIT(makeArray(), testing::ExitedWithCode(0), "");
}

// The memory is still in use when the failure is caught, so there is none for the result of pcall.
TEST(SmallAddressSpace, DeliversTheFailureThatAGlobalCaused) {
    const std::string source =
        "def fill(m, n) while true do m['key ' + n[0]] = n[0] n[0] = n[0] + 1 end end\n"
        "round = 0\nwhile round < 3 do\nn = [0]\nm = map_new()\np = pcall(fill, m, n)\nm = nil\n"
        "if p[2] != 'out of memory' then error(p) end\nprint(n[0], ' ')\nround = round + 1\nend\n";
    for (const rlim_t size : {30'000U, 50'000U, 80'000U, 100'000U}) {
        const std::vector<double> rooms = numbersWithin(source, size * kKiB);
        ASSERT_EQ(rooms.size(), 3U) << size;
        EXPECT_GT(rooms[1], rooms[0] * 0.9) << size;
        EXPECT_GT(rooms[2], rooms[0] * 0.9) << size;
    }
}

}  // namespace

}  // namespace morvel::ruby::tests
