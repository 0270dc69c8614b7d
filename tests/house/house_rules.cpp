#include "house/house_rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <span>
#include <sstream>

namespace velorn::house {

namespace {

struct Floor {
    std::string_view folder;
    int height;
};
constexpr std::array floors = {
    Floor{"runtime", 0},  Floor{"core", 1},        Floor{"links", 2},   Floor{"terminal", 3},
    Floor{"transfer", 4}, Floor{"phonebook", 5},   Floor{"archive", 6}, Floor{"evaluation", 7},
    Floor{"export", 7},   Floor{"accessories", 8}, Floor{"panels", 8},  Floor{"app", 9},
    Floor{"desktop", 10},
};

constexpr std::size_t largest_room = 700;

enum class After { anything, call, call_for_now };

struct ForbiddenWord {
    std::string_view word;
    After after;
    std::string_view folder; // where it is looked for; empty means everywhere
};

constexpr std::array<std::string_view, 2> files_that_turn = {"src/desktop/qt_event_loop.cpp",
                                                             "plant/poll_event_loop.cpp"};
constexpr std::array words_that_turn = {
    ForbiddenWord{"processEvents", After::anything, ""},
    ForbiddenWord{"QEventLoop", After::anything, ""},
    ForbiddenWord{"exec", After::call, "src/desktop/"},
    ForbiddenWord{"sleep_for", After::anything, ""},
    ForbiddenWord{"sleep_until", After::anything, ""},
    ForbiddenWord{"usleep", After::call, ""},
    ForbiddenWord{"nanosleep", After::call, ""},
    ForbiddenWord{"msleep", After::call, ""},
    ForbiddenWord{"qWait", After::call, ""},
    ForbiddenWord{"ppoll", After::call, ""},
    ForbiddenWord{"epoll_wait", After::call, ""},
    ForbiddenWord{"condition_variable", After::anything, ""},
    ForbiddenWord{"waitForReadyRead", After::call, ""},
    ForbiddenWord{"waitForBytesWritten", After::call, ""},
    ForbiddenWord{"waitForConnected", After::call, ""},
    ForbiddenWord{"waitForDisconnected", After::call, ""},
    ForbiddenWord{"waitForStarted", After::call, ""},
    ForbiddenWord{"waitForFinished", After::call, ""},
};

// A make's header keeps the time at which its clock began.
constexpr std::array<std::string_view, 4> files_with_a_clock = {
    "src/desktop/qt_event_loop.cpp", "src/desktop/qt_event_loop.h", "plant/poll_event_loop.cpp",
    "plant/poll_event_loop.h"};
constexpr std::array words_of_time = {
    ForbiddenWord{"system_clock", After::anything, ""},
    ForbiddenWord{"steady_clock", After::anything, ""},
    ForbiddenWord{"high_resolution_clock", After::anything, ""},
    ForbiddenWord{"utc_clock", After::anything, ""},
    ForbiddenWord{"time", After::call_for_now, ""},
    ForbiddenWord{"gettimeofday", After::call, ""},
    ForbiddenWord{"clock_gettime", After::call, ""},
    ForbiddenWord{"timespec_get", After::call, ""},
    ForbiddenWord{"GetLocalTime", After::call, ""},
    ForbiddenWord{"GetSystemTime", After::call, ""},
    ForbiddenWord{"GetTickCount", After::call, ""},
    ForbiddenWord{"GetTickCount64", After::call, ""},
    ForbiddenWord{"currentDateTime", After::call, ""},
    ForbiddenWord{"currentDateTimeUtc", After::call, ""},
    ForbiddenWord{"currentDate", After::call, ""},
    ForbiddenWord{"currentTime", After::call, ""},
    ForbiddenWord{"currentMSecsSinceEpoch", After::call, ""},
    ForbiddenWord{"currentSecsSinceEpoch", After::call, ""},
    ForbiddenWord{"QElapsedTimer", After::anything, ""},
};

bool in_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }
bool blank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool in(std::string_view path, std::string_view folder) { return path.starts_with(folder); }
bool in_product(const SourceFile& file) { return in(file.path, "src/") || in(file.path, "plant/"); }

template <std::size_t N>
bool one_of(std::string_view path, const std::array<std::string_view, N>& paths) {
    return std::find(paths.begin(), paths.end(), path) != paths.end();
}

std::optional<int> height_of(std::string_view folder) {
    for (const Floor& floor : floors) {
        if (floor.folder == folder) return floor.height;
    }
    return std::nullopt;
}

// "src/core/module1.h" -> "core"; empty outside src/.
std::string_view floor_folder(std::string_view path) {
    if (!in(path, "src/")) return {};
    path.remove_prefix(4);
    const std::size_t slash = path.find('/');
    return slash == std::string_view::npos ? std::string_view{} : path.substr(0, slash);
}

std::string_view folder_of(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view{} : path.substr(0, slash);
}

struct Include {
    std::string name; // without its quotes
    bool system = false;
    int line = 0;
};

std::vector<Include> includes_of(const SourceFile& file) {
    std::vector<Include> found;
    std::istringstream lines{without_comments_and_literals(file.text)};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        std::size_t at = line.find_first_not_of(" \t");
        if (at == std::string::npos || line[at] != '#') continue;
        at = line.find_first_not_of(" \t", at + 1);
        if (at == std::string::npos || line.compare(at, 7, "include") != 0) continue;
        const std::size_t open = line.find_first_of("\"<", at);
        if (open == std::string::npos) continue;
        const std::size_t close = line.find(line[open] == '<' ? '>' : '"', open + 1);
        if (close == std::string::npos) continue;
        found.push_back({line.substr(open + 1, close - open - 1), line[open] == '<', number});
    }
    return found;
}

bool is_toolkit_header(const Include& include) {
    const std::string& name = include.name;
    if (name.empty()) return false;
    if (include.system) {
        const bool class_header = name.size() > 1 && name[0] == 'Q' && name.find('.') == std::string::npos;
        return class_header || name.starts_with("Qt") || (name[0] == 'q' && name.ends_with(".h"));
    }
    return (name[0] == 'q' || name[0] == 'Q') && name.find('/') == std::string::npos;
}

bool holds_next(std::string_view code, std::size_t at, After after) {
    if (after == After::anything) return true;
    while (at < code.size() && blank(code[at])) ++at;
    if (at == code.size() || code[at] != '(') return false;
    if (after == After::call) return true;
    ++at;
    while (at < code.size() && blank(code[at])) ++at;
    const std::string_view rest = code.substr(at);
    return rest.starts_with("nullptr") || rest.starts_with("NULL") || rest.starts_with("0)") ||
           rest.starts_with("&");
}

void find_words(const SourceFile& file, std::span<const ForbiddenWord> words, std::string_view remedy,
                Findings& findings) {
    const std::string code = without_comments_and_literals(file.text);
    int line = 1;
    for (std::size_t at = 0; at < code.size();) {
        if (code[at] == '\n') ++line;
        if (!in_word(code[at])) {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < code.size() && in_word(code[end])) ++end;
        const std::string_view word = std::string_view{code}.substr(at, end - at);
        for (const ForbiddenWord& forbidden : words) {
            if (forbidden.word == word && in(file.path, forbidden.folder) &&
                holds_next(code, end, forbidden.after)) {
                findings.push_back({file.path, line, std::string(word) + ": " + std::string(remedy)});
            }
        }
        at = end;
    }
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Finding& finding) {
    return out << finding.path << ':' << finding.line << ": " << finding.remedy;
}

Findings includes_that_point_up(const Sources& sources) {
    Findings findings;
    for (const SourceFile& file : sources) {
        if (!in_product(file)) continue;
        const bool plant = in(file.path, "plant/");
        const std::string own{plant ? "plant" : floor_folder(file.path)};
        const std::optional<int> own_height = height_of(own);
        if (!plant && !own_height) {
            findings.push_back({file.path, 0,
                                "src/" + own +
                                    " is no floor; move the file, or give the floor "
                                    "its place in the table of house_rules.cpp"});
            continue;
        }
        for (const Include& include : includes_of(file)) {
            const std::size_t slash = include.name.find('/');
            if (include.system || slash == std::string::npos) continue;
            const std::string theirs = include.name.substr(0, slash);
            if (theirs == own) continue;
            if (plant) {
                if (theirs == "runtime") continue;
                findings.push_back({file.path, include.line,
                                    "\"" + include.name +
                                        "\": the plant shares nothing with the program but "
                                        "runtime/; write its half anew here"});
                continue;
            }
            const std::optional<int> their_height = height_of(theirs);
            if (their_height && *their_height < *own_height) continue;
            findings.push_back({file.path, include.line,
                                "\"" + include.name + "\" doesn't lie below " + own +
                                    "/; raise an Event that "
                                    "src/app/ wires, or move the shared part down"});
        }
    }
    return findings;
}

Findings toolkit_below_the_desktop(const Sources& sources) {
    Findings findings;
    for (const SourceFile& file : sources) {
        if (in(file.path, "src/desktop/") || in(file.path, "tests/desktop/") || in(file.path, "bench/"))
            continue;
        for (const Include& include : includes_of(file)) {
            if (is_toolkit_header(include)) {
                findings.push_back({file.path, include.line,
                                    include.name +
                                        ": the toolkit lives in src/desktop/ only; put an interface "
                                        "into runtime/ and its make into desktop/"});
            } else if (!in(file.path, "src/") && include.name.starts_with("desktop/")) {
                findings.push_back({file.path, include.line,
                                    include.name + ": this links without the toolkit; move the test to "
                                                   "tests/desktop/"});
            }
        }
    }
    return findings;
}

Findings include_circles(const Sources& sources) {
    std::map<std::string, std::vector<std::string>> graph;
    for (const SourceFile& file : sources) {
        if (in_product(file)) graph[file.path];
    }
    for (const SourceFile& file : sources) {
        if (!in_product(file)) continue;
        for (const Include& include : includes_of(file)) {
            const std::array candidates = {"src/" + include.name, include.name,
                                           std::string(folder_of(file.path)) + "/" + include.name};
            for (const std::string& candidate : candidates) {
                if (!graph.contains(candidate)) continue;
                graph[file.path].push_back(candidate);
                break;
            }
        }
    }

    Findings findings;
    std::set<std::string> done;
    std::vector<std::string> way;
    const std::function<void(const std::string&)> visit = [&](const std::string& path) {
        const auto seen = std::find(way.begin(), way.end(), path);
        if (seen != way.end()) {
            std::string circle;
            for (auto it = seen; it != way.end(); ++it) circle += *it + " -> ";
            findings.push_back({path, 0,
                                circle + path +
                                    ": cut the circle with a forward declaration or move "
                                    "what both need into a third header"});
            return;
        }
        if (done.contains(path)) return;
        way.push_back(path);
        for (const std::string& next : graph[path]) visit(next);
        way.pop_back();
        done.insert(path);
    };
    for (const auto& [path, next] : graph) visit(path);
    return findings;
}

Findings loops_beside_the_loop(const Sources& sources) {
    Findings findings;
    for (const SourceFile& file : sources) {
        if (!in_product(file) || one_of(file.path, files_that_turn)) continue;
        find_words(file, words_that_turn,
                   "wait with EventLoop::wait_until, the one place that turns the loop", findings);
    }
    return findings;
}

Findings time_beside_the_loop(const Sources& sources) {
    Findings findings;
    for (const SourceFile& file : sources) {
        const bool may_measure = in(file.path, "tests/desktop/") || in(file.path, "bench/");
        if (may_measure || one_of(file.path, files_with_a_clock)) continue;
        find_words(file, words_of_time, "take the time from EventLoop (now_ms, local_time)", findings);
    }
    return findings;
}

Findings rooms_too_large(const Sources& sources) {
    Findings findings;
    for (const SourceFile& file : sources) {
        if (!in_product(file)) continue;
        const auto lines = static_cast<std::size_t>(std::count(file.text.begin(), file.text.end(), '\n'));
        if (lines <= largest_room) continue;
        findings.push_back({file.path, 0,
                            std::to_string(lines) + " lines are more than " + std::to_string(largest_room) +
                                "; find the second subject inside "
                                "and give it a file"});
    }
    return findings;
}

std::string without_comments_and_literals(std::string_view text) {
    std::string code{text};
    const auto blank_out = [&code](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < std::min(to, code.size()); ++i) {
            if (code[i] != '\n') code[i] = ' ';
        }
    };
    bool line_is_include = false;
    bool line_is_empty = true;
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (c == '\n') {
            line_is_include = false;
            line_is_empty = true;
            ++i;
        } else if (c == '/' && next == '/') {
            const std::size_t end = std::min(text.find('\n', i), text.size());
            blank_out(i, end);
            i = end;
        } else if (c == '/' && next == '*') {
            const std::size_t close = text.find("*/", i + 2);
            const std::size_t end = close == std::string_view::npos ? text.size() : close + 2;
            blank_out(i, end);
            i = end;
        } else if (c == '#' && line_is_empty) {
            std::size_t word = i + 1;
            while (word < text.size() && (text[word] == ' ' || text[word] == '\t')) ++word;
            line_is_include = text.substr(word).starts_with("include");
            line_is_empty = false;
            ++i;
        } else if (c == '"' && !line_is_include) {
            std::size_t end = text.size();
            if (i > 0 && text[i - 1] == 'R') {
                const std::size_t open = std::min(text.find('(', i), text.size());
                const std::string close = ")" + std::string(text.substr(i + 1, open - i - 1)) + "\"";
                const std::size_t found = text.find(close, open);
                if (found != std::string_view::npos) end = found + close.size();
            } else {
                std::size_t at = i + 1;
                while (at < text.size() && text[at] != '"' && text[at] != '\n')
                    at += text[at] == '\\' ? 2 : 1;
                end = std::min(at + 1, text.size());
            }
            blank_out(i + 1, end - 1);
            i = end;
        } else if (c == '\'' && !(i > 0 && in_word(text[i - 1]) && in_word(next))) {
            std::size_t at = i + 1;
            while (at < text.size() && text[at] != '\'' && text[at] != '\n') at += text[at] == '\\' ? 2 : 1;
            blank_out(i + 1, at);
            i = std::min(at + 1, text.size());
        } else {
            if (!blank(c)) line_is_empty = false;
            ++i;
        }
    }
    return code;
}

Sources read_sources(const std::filesystem::path& repository) {
    Sources sources;
    for (const char* folder : {"src", "plant", "tests", "bench", "fuzz"}) {
        std::error_code error;
        for (std::filesystem::recursive_directory_iterator it{repository / folder, error}, end;
             !error && it != end; it.increment(error)) {
            const std::filesystem::path& path = it->path();
            if (path.extension() != ".h" && path.extension() != ".cpp") continue;
            std::ifstream in{path, std::ios::binary};
            std::ostringstream text;
            text << in.rdbuf();
            sources.push_back({path.lexically_relative(repository).generic_string(), text.str()});
        }
    }
    std::sort(sources.begin(), sources.end(),
              [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
    return sources;
}

} // namespace velorn::house
