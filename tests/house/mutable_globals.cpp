// The search for variables that outlive every object. No compiler front end: a walk over the braces that
// knows at each point whether only namespaces are open, and judges each statement by its words.
#include "house/house_rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <sstream>

namespace velorn::house {

namespace {

bool in_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

std::string without_preprocessor(const std::string& code) {
    std::string rest;
    std::istringstream lines{code};
    bool continued = false;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find_first_not_of(" \t");
        const bool directive = continued || (first != std::string::npos && line[first] == '#');
        continued = directive && !line.empty() && line.back() == '\\';
        rest += directive ? "\n" : line + "\n";
    }
    return rest;
}

// Takes out what stands between angle brackets, so that "std::map<int, Foo*>" has neither comma nor star. A
// '<' that no '>' closes before the statement's '=' or '(' is a comparison and ends the search.
std::string without_template_arguments(std::string_view text) {
    std::string rest;
    int depth = 0;
    for (const char c : text) {
        if (c == '<') ++depth;
        if (depth == 0) rest += c;
        if (c == '>' && depth > 0) --depth;
    }
    return rest;
}

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : text) {
        if (in_word(c)) {
            word += c;
        } else if (!word.empty()) {
            words.push_back(std::move(word));
            word.clear();
        }
    }
    if (!word.empty()) words.push_back(std::move(word));
    return words;
}

bool holds(const std::vector<std::string>& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string without_attributes(std::string_view text) {
    std::string rest{text};
    for (std::size_t open; (open = rest.find("[[")) != std::string::npos;) {
        const std::size_t close = rest.find("]]", open);
        rest.erase(open, close == std::string::npos ? std::string::npos : close + 2 - open);
    }
    return rest;
}

// Whether a statement (its inner blocks shortened to "{}") defines a variable that can change.
bool is_mutable_variable(std::string_view statement) {
    const std::string plain = without_template_arguments(without_attributes(statement));
    const std::string_view whole = trimmed(plain);
    const std::string_view head = trimmed(whole.substr(0, std::min(whole.find_first_of("={"), whole.size())));
    if (head.empty() || head.find_first_of("(,)}") != std::string_view::npos) return false;
    const std::vector<std::string> words = words_of(head);
    if (words.size() < 2) return false; // a type and a name
    for (const char* word :
         {"using",         "typedef",   "template",  "class",   "struct",   "enum",      "union", "friend",
          "static_assert", "return",    "namespace", "concept", "operator", "constexpr", "goto",  "public",
          "private",       "protected", "case",      "delete",  "throw",    "requires"}) {
        if (holds(words, word)) return false;
    }
    const std::size_t last_const = head.rfind("const");
    if (!holds(words, "const")) return true;
    return head.find('*', last_const) != std::string_view::npos; // the pointer itself can change
}

bool opens_namespace(std::string_view head) {
    const std::vector<std::string> words = words_of(head);
    if (words.empty()) return false;
    if (words[0] == "namespace") return true;
    return (words[0] == "inline" && words.size() > 1 && words[1] == "namespace") ||
           (words[0] == "extern" && trimmed(head).ends_with('"'));
}

// Whether a '}' behind this head ends the statement: a function, a branch, a loop, a bare block.
bool ends_with_its_block(std::string_view head) {
    const std::string plain = without_template_arguments(head);
    const std::string_view whole = trimmed(plain);
    if (whole.empty() || whole.front() == ',') return true;
    const std::vector<std::string> words = words_of(whole);
    if (holds(words, "operator")) return true;
    for (const char* word : {"else", "do", "try"}) {
        if (!words.empty() && words.back() == word) return true;
    }
    const std::size_t open = whole.find('(');
    return open != std::string_view::npos && whole.find('=') > open;
}

bool is_static(std::string_view statement) {
    const std::vector<std::string> words = words_of(statement);
    return !words.empty() && (words[0] == "static" || words[0] == "thread_local" ||
                              (words.size() > 1 && words[0] == "inline" && words[1] == "static"));
}

struct Block {
    bool only_namespaces = true;
    int parentheses = 0;
    std::string statement;
    int line = 0; // where the statement begins
};

} // namespace

Findings mutable_globals(const Sources& sources) {
    Findings findings;
    for (const SourceFile& file : sources) {
        if (!file.path.starts_with("src/") && !file.path.starts_with("plant/")) continue;
        std::vector<Block> blocks(1);
        int line = 1;
        for (const char c : without_preprocessor(without_comments_and_literals(file.text))) {
            Block& block = blocks.back();
            if (c == '\n') ++line;
            if (c == '{') {
                const bool space = block.only_namespaces && opens_namespace(block.statement);
                blocks.push_back({space, 0, {}, line});
                continue;
            }
            if (c == '}') {
                if (blocks.size() > 1) {
                    const bool space = block.only_namespaces;
                    blocks.pop_back();
                    Block& outer = blocks.back();
                    if (space || (outer.parentheses == 0 && ends_with_its_block(outer.statement))) {
                        outer.statement.clear();
                    } else {
                        outer.statement += "{}";
                    }
                }
                continue;
            }
            if (c == '(') ++block.parentheses;
            if (c == ')') --block.parentheses;
            if (c == ';' && block.parentheses <= 0) {
                if ((block.only_namespaces || is_static(block.statement)) &&
                    is_mutable_variable(block.statement)) {
                    findings.push_back(
                        {file.path, block.line,
                         "'" + std::string(trimmed(block.statement)) +
                             "' is a mutable global; make it a member of what Program owns, or const"});
                }
                block.statement.clear();
                continue;
            }
            if (block.statement.empty()) {
                if (c == ' ' || c == '\n' || c == '\t') continue;
                block.line = line;
            }
            block.statement += c;
            if (c == ':' && (block.statement == "public:" || block.statement == "private:" ||
                             block.statement == "protected:")) {
                block.statement.clear();
            }
        }
    }
    return findings;
}

} // namespace velorn::house
