// Runs the examples of the documents with the real program. An example is a block tagged "ruby", followed directly by a
// block tagged "text" with its standard output, one tagged "text error" with its standard error, or both. Also checks
// that the library reference covers every built-in and that links within the documents have targets.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <ostream>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "support/builtins.h"
#include "support/files.h"
#include "support/output.h"
#include "support/process.h"
#include "support/runs.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

namespace fs = std::filesystem;

// ---------------------------------------------------------------------------------------------------------------------
// Documents

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

// A fenced block, or a line outside all blocks.
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

// The heading's text without its "#"s; nothing for any other line.
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

// Runs the code as example.rb in an empty directory.
ProcessOutcome runCode(const std::string& code) {
    const TemporaryDirectory directory;
    writeFile(directory.file("example.rb"), code);
    ProcessSetup setup;
    setup.arguments = {"example.rb"};
    setup.directory = directory.path().string();
    setup.timeLimit = std::chrono::seconds(60);
    return runProcess(setup);
}

// ---------------------------------------------------------------------------------------------------------------------
// Tests

class DocumentExample : public testing::TestWithParam<Example> {};

TEST_P(DocumentExample, DoesWhatTheDocumentShows) {
    const Example& example = GetParam();
    ASSERT_TRUE(example.out || example.err) << "no block with the output follows the example";
    const ProcessOutcome outcome = runCode(example.code);
    EXPECT_EQ(example.out.value_or(""), outcome.output);
    EXPECT_EQ(example.err.value_or(""), outcome.error);
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

// The names that the reference describes, each with its section.
std::map<std::string, std::string> describedBuiltins() {
    std::map<std::string, std::string> sections;
    std::string* section = nullptr;
    for (const Element& element : elementsOf(libraryReference())) {
        if (headingOf(element)) {
            const bool isBuiltin = element.text.starts_with("### ");
            section = isBuiltin ? &sections[*headingOf(element)] : nullptr;
            EXPECT_TRUE(section == nullptr || section->empty()) << "two headings: " << element.text;
        }
        if (section != nullptr) {
            *section += element.text + "\n";
        }
    }
    return sections;
}

TEST(LibraryReference, DescribesEveryBuiltInWithAnExample) {
    const std::map<std::string, std::string> sections = describedBuiltins();
    const std::vector<std::string> builtins = builtinNames();
    EXPECT_EQ(builtins.size(), sections.size()) << "headings of built-ins";
    const std::vector<Example> examples = examplesOf(libraryReference());
    for (const std::string& name : builtins) {
        EXPECT_EQ(1U, sections.count(name)) << "headings of " << name;
        const bool shown = std::any_of(examples.begin(), examples.end(), [&](const Example& example) {
            return example.section == name && example.code.find(name + "(") != std::string::npos;
        });
        EXPECT_TRUE(shown) << "no example of " << name;
    }
}

TEST(LibraryReference, CountsTheBuiltIns) {
    const std::string start = "Every script starts with " + std::to_string(builtinNames().size()) + " functions ";
    EXPECT_NE(readFile(libraryReference()).find(start), std::string::npos) << start;
}

TEST(LibraryReference, DescribesOnlyWhatTheProgramHas) {
    std::string code;
    std::string expected;
    for (const auto& [name, section] : describedBuiltins()) {
        code += "puts(" + name + ")\n";
        expected += "[function " + name + "]\n";
    }
    const ProcessOutcome outcome = runCode(code);
    EXPECT_EQ(expected, outcome.output);
    EXPECT_EQ("", outcome.error);
}

// How many arguments a built-in takes according to its description, and the message for any other number.
struct Arity {
    std::size_t least = 0;
    std::optional<std::size_t> most;
    std::string message;
};

Arity arityOf(const std::string& name, const std::string& section) {
    const std::regex form("`([a-z0-9_?]+ expects (exactly|at least|between) ([0-9]+)( and ([0-9]+))? arguments?)`");
    std::vector<Arity> found;
    for (std::sregex_iterator match(section.begin(), section.end(), form); match != std::sregex_iterator(); ++match) {
        const std::string kind = (*match)[2];
        Arity arity{std::stoul((*match)[3]), std::nullopt, (*match)[1]};
        if (kind != "at least") {
            arity.most = kind == "exactly" ? arity.least : std::stoul((*match)[5]);
        }
        // A description may also quote the message of another function that it calls.
        if (arity.message.starts_with(name + " ")) {
            found.push_back(arity);
        }
    }
    EXPECT_LE(found.size(), 1U) << name;
    // A description says nothing if any number is allowed.
    return found.empty() ? Arity() : found.front();
}

std::string callWith(const std::string& name, std::size_t count) {
    std::string source = name + "(";
    for (std::size_t i = 0; i < count; ++i) {
        source += i == 0 ? "nil" : ", nil";
    }
    return source + ")";
}

TEST(LibraryReference, SaysHowManyArgumentsABuiltInTakes) {
    const CapturedOutput printed;
    for (const auto& [name, section] : describedBuiltins()) {
        const Arity arity = arityOf(name, section);
        for (const unsigned count : {0U, 1U, 2U, 3U, 4U, 5U, 40U}) {
            if (count < arity.least || (arity.most && count > *arity.most)) {
                expectScriptError(arity.message, callWith(name, count));
            } else {
                const RubyResult result = RubyVM().runScriptString(callWith(name, count), "t");
                EXPECT_FALSE(std::regex_search(result.error, std::regex("expects (exactly|at least|between) .*arg")))
                    << count << ": " << result.error;
            }
        }
    }
}

// The anchor of a heading in the rendered document: lower case, without punctuation, spaces as dashes.
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

// The targets of all links in a line, ignoring code in backquotes.
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

}  // namespace morvel::ruby::tests
