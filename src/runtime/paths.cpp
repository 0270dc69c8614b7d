#include "runtime/paths.h"

#include "runtime/text.h"

#include <algorithm>
#include <system_error>

namespace velorn {

namespace {

#ifdef _WIN32
constexpr std::string_view separators = "\\";
#else
constexpr std::string_view separators = "\\/";
#endif

std::filesystem::path from_utf8(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

} // namespace

Paths::Paths(std::filesystem::path program_folder, std::map<char, std::string> drives)
    : program_folder_(std::move(program_folder)), drives_(std::move(drives)) {}

std::filesystem::path Paths::native(std::string_view stored) const {
#ifdef _WIN32
    return from_utf8(utf8_from_cp1252(stored));
#else
    std::string text = utf8_from_cp1252(stored);
    std::ranges::replace(text, '\\', '/');
    if (text.size() < 2 || text[1] != ':' || !is_letter(text[0])) return from_utf8(text);

    const char letter = static_cast<char>(to_lower(static_cast<unsigned char>(text[0])));
    std::filesystem::path folder;
    if (const auto named = drives_.find(letter); named != drives_.end() && !named->second.empty()) {
        folder = program_folder_ / from_utf8(named->second);
    } else {
        folder = program_folder_ / "laufwerke" / std::string(1, letter);
        std::error_code ignored; // what can't be created shows when the file is opened
        std::filesystem::create_directories(folder, ignored);
    }
    text.erase(0, 2);
    text.erase(0, text.find_first_not_of('/'));
    return text.empty() ? folder : folder / from_utf8(text);
#endif
}

std::optional<std::string> Paths::stored(const std::filesystem::path& native) {
#ifdef _WIN32
    std::string text;
    for (const wchar_t unit : native.native()) { // half a pair of surrogates is nothing that cp1252 has
        const std::optional<unsigned char> byte = cp1252_of(static_cast<char32_t>(unit));
        if (!byte) return std::nullopt;
        text += static_cast<char>(*byte);
    }
    return text;
#else
    // A backslash within a name would come back as a separator.
    if (native.native().find('\\') != std::string::npos) return std::nullopt;
    return cp1252_from_utf8(native.native());
#endif
}

std::string_view folder_of(std::string_view stored) {
    const std::size_t last = stored.find_last_of(separators);
    return last == std::string_view::npos ? std::string_view() : stored.substr(0, last);
}

std::string_view name_of(std::string_view stored) {
    const std::size_t last = stored.find_last_of(separators);
    return last == std::string_view::npos ? stored : stored.substr(last + 1);
}

} // namespace velorn
