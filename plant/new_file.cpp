#include "plant/new_file.h"

#include "runtime/disk_files.h"
#include "runtime/text.h"

#include <system_error>

namespace velorn::plant {

namespace {

Outcome make_folder(const std::filesystem::path& folder) {
    if (folder.empty()) return {};
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return failure(RunTimeError::path_not_found, cp1252_from_utf8(folder.string()).value_or("?"));
    return {};
}

} // namespace

std::filesystem::path path_of(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

Result<bool> write_if_missing(const std::filesystem::path& path,
                              const std::function<Outcome(BinaryFile&)>& fill) {
    if (const Outcome made = make_folder(path.parent_path()); !made) return made.failure();
    if (const auto there = open_native(path, OpenMode::read)) {
        const Result<std::int64_t> length = (*there)->length();
        if (!length) return length.failure();
        if (*length > 0) return false;
    } else if (!there.failure().is(RunTimeError::file_not_found)) {
        return there.failure();
    }
    std::filesystem::path fresh = path;
    fresh += ".neu";
    {
        const auto file = open_native(fresh, OpenMode::create);
        if (!file) return file.failure();
        if (const Outcome filled = fill(**file); !filled) return filled.failure();
    }
    if (const Outcome replaced = replace_native(fresh, path); !replaced) return replaced.failure();
    return true;
}

} // namespace velorn::plant
