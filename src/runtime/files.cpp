#include "runtime/files.h"

#include <algorithm>

namespace velorn {

Result<std::int64_t> BinaryFile::read_into(std::int64_t position, std::span<char> bytes) {
    const Result<std::string> got = read(position, static_cast<std::int64_t>(bytes.size()));
    if (!got) return got.failure();
    std::copy(got->begin(), got->end(), bytes.begin());
    return static_cast<std::int64_t>(got->size());
}

Result<std::string> read_whole(Files& files, std::string_view path) {
    Result<std::unique_ptr<BinaryFile>> file = files.open(path, OpenMode::read);
    if (!file) return file.failure();
    const Result<std::int64_t> length = (*file)->length();
    if (!length) return length.failure();
    if (*length > largest_whole_file) return failure(RunTimeError::path_file_access);
    return (*file)->read(1, *length);
}

Outcome ensure_exists(Files& files, std::string_view path) {
    // Reading first: a write-protected file is there, too.
    if (const auto old = files.open(path, OpenMode::read); old)
        return {};
    else if (!old.failure().is(RunTimeError::file_not_found))
        return old.failure();
    const auto file = files.open(path, OpenMode::read_write);
    return file ? Outcome{} : Outcome{file.failure()};
}

Outcome append_to(Files& files, std::string_view path, std::string_view bytes) {
    Result<std::unique_ptr<BinaryFile>> file = files.open(path, OpenMode::append);
    if (!file) return file.failure();
    return (*file)->write(1, bytes);
}

Outcome replace_content(Files& files, std::string_view path, std::string_view content) {
    std::string whole{content};
    const Result<std::string> old = read_whole(files, path);
    if (!old && !old.failure().is(RunTimeError::file_not_found)) return old.failure();
    if (old && old->size() > whole.size()) whole.append(*old, whole.size());
    const std::string neighbour = std::string(path) + ".neu";
    const auto give_up = [&](const Failure& why) -> Outcome {
        (void)files.remove(neighbour); // what went wrong first is what counts
        return why;
    };
    {
        Result<std::unique_ptr<BinaryFile>> file = files.open(neighbour, OpenMode::create);
        if (!file) return file.failure();
        if (const Outcome written = (*file)->write(1, whole); !written) return give_up(written.failure());
        if (const Outcome synced = (*file)->sync(); !synced) return give_up(synced.failure());
    }
    if (const Outcome replaced = files.replace(neighbour, path); !replaced)
        return give_up(replaced.failure());
    return {};
}

} // namespace velorn
