// Runs the examples of the documents with the real program. An example is a block tagged "ruby", followed at once by a
// block tagged "text" with its standard output, by one tagged "text error" with its standard error, or by both.
// Also checks that the library reference leaves no built-in out and that links inside the documents lead somewhere.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr unsigned kTimeLimitSeconds = 60;

constexpr std::array kBuiltIns{
    "puts",
    "print",
    "len",
    "time_ms",
    "to_s",
    "type_of",
    "to_i",
    "to_f",
    "to_number",
    "collect_garbage",
    "error",
    "pcall",
    "load",
    "range",
    "array_new",
    "map_new",
    "array_push",
    "array_pop",
    "array_shift",
    "array_unshift",
    "array_slice",
    "array_reverse",
    "array_join",
    "map_delete",
    "map_merge",
    "map_clone",
    "table_clone",
    "table_clear",
    "keys",
    "values",
    "table_get",
    "table_has_key",
    "table_set",
    "table_insert",
    "table_remove",
    "table_sort",
    "table_concat",
    "math_floor",
    "math_ceil",
    "math_abs",
    "math_min",
    "math_max",
    "math_sin",
    "math_cos",
    "math_rad",
    "math_log",
    "math_sqrt",
    "math_pow",
    "math_deg",
    "math_exp",
    "math_clamp",
    "math_random_seed",
    "math_random",
    "string_upper",
    "string_lower",
    "string_sub",
    "string_find",
    "string_match",
    "string_gmatch",
    "string_byte",
    "string_char",
    "string_format",
    "string_rep",
    "string_gsub",
    "string_split",
    "string_strip",
    "string_lstrip",
    "string_rstrip",
    "string_reverse",
    "string_include?",
    "string_start_with?",
    "string_end_with?",
    "utf8_len",
    "file_exists?",
    "read_file",
    "write_file",
    "append_file",
};
static_assert(kBuiltIns.size() == 77);

// ---------------------------------------------------------------------------------------------------------------------
// Documents

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> readLines(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<fs::path> findDocuments() {
    std::vector<fs::path> documents;
    if (fs::is_directory(MORVELTESK_DOCS_DIR)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(MORVELTESK_DOCS_DIR)) {
            if (entry.path().extension() == ".md") {
                documents.push_back(entry.path());
            }
        }
    }
    std::sort(documents.begin(), documents.end());
    if (fs::exists(MORVELTESK_README)) {
        documents.emplace_back(MORVELTESK_README);
    }
    return documents;
}

// A fenced block or a line outside of all of them.
struct Element {
    std::size_t line = 0;  // from 1
    bool isBlock = false;
    std::string tag;
    std::string text;
};

std::vector<Element> elementsOf(const fs::path& document) {
    constexpr std::string_view kFence = "```";
    std::vector<Element> elements;
    bool inside = false;
    std::size_t number = 0;
    for (const std::string& line : readLines(document)) {
        ++number;
        const bool fence = line.starts_with(kFence);
        if (inside && line == kFence) {
            inside = false;
        } else if (inside) {
            elements.back().text += line + "\n";
        } else if (fence) {
            inside = true;
            elements.push_back({number, true, line.substr(kFence.size()), ""});
        } else {
            elements.push_back({number, false, "", line});
        }
    }
    return elements;
}

struct Example {
    fs::path document;
    std::size_t line = 0;
    std::string section;  // the heading it stands under
    std::string code;
    std::optional<std::string> out;
    std::optional<std::string> err;
};

void PrintTo(const Example& example, std::ostream* stream) {
    *stream << example.document.filename().string() << ", line " << example.line;
}

// The heading's text without its "#"s, or nothing for any other line.
std::optional<std::string> headingOf(const Element& element) {
    const std::size_t level = element.text.find_first_not_of('#');
    if (element.isBlock || level == 0 || level == std::string::npos || element.text[level] != ' ') {
        return std::nullopt;
    }
    return element.text.substr(level + 1);
}

std::vector<Example> examplesOf(const fs::path& document) {
    const std::vector<Element> elements = elementsOf(document);
    std::vector<Example> examples;
    std::string section;
    for (auto element = elements.begin(); element != elements.end(); ++element) {
        section = headingOf(*element).value_or(section);
        if (!element->isBlock || element->tag != "ruby") {
            continue;
        }
        Example example{document, element->line, section, element->text, std::nullopt, std::nullopt};
        const auto nextBlock = [&](std::string_view tag, std::optional<std::string>& text) {
            auto next = std::next(element);
            while (next != elements.end() && !next->isBlock && next->text.empty()) {
                ++next;
            }
            if (next != elements.end() && next->isBlock && next->tag == tag) {
                text = next->text;
                element = next;
            }
        };
        nextBlock("text", example.out);
        nextBlock("text error", example.err);
        examples.push_back(std::move(example));
    }
    return examples;
}

std::vector<Example> findExamples() {
    std::vector<Example> examples;
    for (const fs::path& document : findDocuments()) {
        for (Example& example : examplesOf(document)) {
            examples.push_back(std::move(example));
        }
    }
    return examples;
}

fs::path libraryReference() { return fs::path(MORVELTESK_DOCS_DIR) / "library.md"; }

// ---------------------------------------------------------------------------------------------------------------------
// Running the program

class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string name = (fs::temp_directory_path() / "morveltesk-docs-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), "mkdtemp");
        }
        path_ = name;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

struct Outcome {
    int status = -1;  // the exit status, or -1 when the program was killed
    std::string out;
    std::string err;
};

bool redirect(int stream, const fs::path& file) {
    const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    return fd >= 0 && ::dup2(fd, stream) >= 0;
}

// Runs the code as example.rb in an empty directory.
Outcome runCode(const std::string& code) {
    const TemporaryDirectory directory;
    const fs::path work = directory.path() / "work";
    fs::create_directory(work);
    std::ofstream(work / "example.rb", std::ios::binary) << code;

    const std::string program = fs::absolute(MORVELTESK_PROGRAM).string();
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        // The alarm outlives the change of program and ends one that does not end by itself.
        ::alarm(kTimeLimitSeconds);
        if (redirect(1, directory.path() / "out") && redirect(2, directory.path() / "err") &&
            ::chdir(work.c_str()) == 0) {
            ::execl(program.c_str(), program.c_str(), "example.rb", static_cast<char*>(nullptr));
        }
        ::_exit(127);
    }
    int state = 0;
    while (::waitpid(child, &state, 0) < 0 && errno == EINTR) {
    }
    Outcome outcome;
    outcome.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    outcome.out = readFile(directory.path() / "out");
    outcome.err = readFile(directory.path() / "err");
    return outcome;
}

// ---------------------------------------------------------------------------------------------------------------------
// Tests

class DocumentExample : public testing::TestWithParam<Example> {};

TEST_P(DocumentExample, DoesWhatTheDocumentShows) {
    const Example& example = GetParam();
    ASSERT_TRUE(example.out || example.err) << "no block with the output follows the example";
    const Outcome outcome = runCode(example.code);
    EXPECT_EQ(example.out.value_or(""), outcome.out);
    EXPECT_EQ(example.err.value_or(""), outcome.err);
    EXPECT_EQ(example.err ? 1 : 0, outcome.status);
}

std::string nameOfExample(const testing::TestParamInfo<Example>& info) {
    std::string name = info.param.document.stem().string() + "_line_" + std::to_string(info.param.line);
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentExample, testing::ValuesIn(findExamples()), nameOfExample);

TEST(LanguageReference, HasExamples) {
    EXPECT_GT(examplesOf(fs::path(MORVELTESK_DOCS_DIR) / "language.md").size(), 0u);
}

TEST(LibraryReference, DescribesEveryBuiltInWithAnExample) {
    std::map<std::string, int> headings;
    for (const Element& element : elementsOf(libraryReference())) {
        if (element.text.starts_with("### ")) {
            ++headings[headingOf(element).value_or("")];
        }
    }
    EXPECT_EQ(kBuiltIns.size(), headings.size()) << "headings of built-ins";
    const std::vector<Example> examples = examplesOf(libraryReference());
    for (const std::string name : kBuiltIns) {
        EXPECT_EQ(1, headings[name]) << "headings of " << name;
        const bool shown = std::any_of(examples.begin(), examples.end(), [&](const Example& example) {
            return example.section == name && example.code.find(name + "(") != std::string::npos;
        });
        EXPECT_TRUE(shown) << "no example of " << name;
    }
}

TEST(LibraryReference, DescribesOnlyWhatTheProgramHas) {
    std::string code;
    std::string expected;
    for (const std::string name : kBuiltIns) {
        code += "puts(" + name + ")\n";
        expected += "[function " + name + "]\n";
    }
    const Outcome outcome = runCode(code);
    EXPECT_EQ(expected, outcome.out);
    EXPECT_EQ("", outcome.err);
}

// The anchor that a heading gets when the document is shown: lower case, without signs, blanks as dashes.
std::string anchorOf(const std::string& heading) {
    std::string anchor;
    for (const char c : heading) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || c == '_' || c == '-' || byte >= 128) {
            anchor += static_cast<char>(std::tolower(byte));
        } else if (c == ' ') {
            anchor += '-';
        }
    }
    return anchor;
}

bool hasAnchor(const fs::path& document, const std::string& anchor) {
    const std::vector<Element> elements = elementsOf(document);
    return std::any_of(elements.begin(), elements.end(), [&](const Element& element) {
        const std::optional<std::string> heading = headingOf(element);
        return heading && anchorOf(*heading) == anchor;
    });
}

// The targets of all links in a line; what stands in backquotes is code and holds none.
std::vector<std::string> linksOf(const std::string& line) {
    std::string text;
    bool code = false;
    for (const char c : line) {
        code = code != (c == '`');
        if (!code && c != '`') {
            text += c;
        }
    }
    std::vector<std::string> links;
    for (std::size_t at = text.find("]("); at != std::string::npos; at = text.find("](", at + 2)) {
        links.push_back(text.substr(at + 2, text.find(')', at) - at - 2));
    }
    return links;
}

TEST(Documents, LinksLeadSomewhere) {
    for (const fs::path& document : findDocuments()) {
        for (const Element& element : elementsOf(document)) {
            if (element.isBlock) {
                continue;
            }
            for (const std::string& link : linksOf(element.text)) {
                if (link.find("://") != std::string::npos || link.starts_with("mailto:")) {
                    continue;
                }
                SCOPED_TRACE(document.filename().string() + ", line " + std::to_string(element.line) + ": " + link);
                const std::size_t hash = std::min(link.find('#'), link.size());
                const fs::path target = hash == 0 ? document : document.parent_path() / link.substr(0, hash);
                EXPECT_TRUE(fs::exists(target));
                if (hash < link.size() && fs::is_regular_file(target)) {
                    EXPECT_TRUE(hasAnchor(target, link.substr(hash + 1)));
                }
            }
        }
    }
}

}  // namespace
