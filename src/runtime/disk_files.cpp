// The make for POSIX systems; disk_files_windows.cpp is its twin.
#ifndef _WIN32

#include "runtime/disk_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velorn {

namespace {

Failure failure_of(int error, const std::filesystem::path& path) {
    switch (error) {
    case ENOENT: {
        struct stat ignored {};
        const std::filesystem::path folder = path.parent_path();
        const bool folder_is_there = folder.empty() || stat(folder.c_str(), &ignored) == 0;
        return failure(folder_is_there ? RunTimeError::file_not_found : RunTimeError::path_not_found);
    }
    case EACCES:
    case EPERM:
    case EROFS: return failure(RunTimeError::permission_denied);
    case ENOSPC:
    case EDQUOT: return failure(RunTimeError::disk_full);
    case EIO: return failure(RunTimeError::device_io);
    default: return failure(RunTimeError::path_file_access);
    }
}

// Content and length; the time of the last change may follow when it likes.
int sync_content(int descriptor) {
#ifdef __linux__
    return fdatasync(descriptor);
#else
    return fsync(descriptor);
#endif
}

class DiskFile final : public BinaryFile {
  public:
    DiskFile(int descriptor, std::filesystem::path path, bool appends)
        : descriptor_(descriptor), path_(std::move(path)), appends_(appends) {}
    ~DiskFile() override { ::close(descriptor_); }

    Result<std::int64_t> length() override {
        struct stat status {};
        if (fstat(descriptor_, &status) != 0) return failure_of(errno, path_);
        return static_cast<std::int64_t>(status.st_size);
    }

    Result<std::string> read(std::int64_t position, std::int64_t count) override {
        if (position < 1 || count < 0) return failure(RunTimeError::invalid_call);
        const Result<std::int64_t> all = length();
        if (!all) return all.failure();
        const std::int64_t there = std::clamp<std::int64_t>(*all - (position - 1), 0, count);
        std::string bytes(static_cast<std::size_t>(there), '\0');
        const Result<std::int64_t> got = read_into(position, bytes);
        if (!got) return got.failure();
        bytes.resize(static_cast<std::size_t>(*got)); // it may have become shorter meanwhile
        return bytes;
    }

    Result<std::int64_t> read_into(std::int64_t position, std::span<char> bytes) override {
        if (position < 1) return failure(RunTimeError::invalid_call);
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t got = pread(descriptor_, bytes.data() + done, bytes.size() - done,
                                      static_cast<off_t>(position - 1) + static_cast<off_t>(done));
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) return failure_of(errno, path_);
            if (got == 0) break;
            done += static_cast<std::size_t>(got);
        }
        return static_cast<std::int64_t>(done);
    }

    Outcome write(std::int64_t position, std::string_view bytes) override {
        if (position < 1) return failure(RunTimeError::invalid_call);
        auto at = static_cast<off_t>(position - 1);
        while (!bytes.empty()) {
            const ssize_t put = appends_ ? ::write(descriptor_, bytes.data(), bytes.size())
                                         : pwrite(descriptor_, bytes.data(), bytes.size(), at);
            if (put < 0 && errno == EINTR) continue;
            if (put < 0) return failure_of(errno, path_);
            if (put == 0) return failure(RunTimeError::device_io);
            bytes.remove_prefix(static_cast<std::size_t>(put));
            at += put;
        }
        return still_there();
    }

    Outcome sync() override {
        while (sync_content(descriptor_) != 0) {
            if (errno != EINTR) return failure_of(errno, path_);
        }
        return {};
    }

  private:
    // The system goes on writing to a file that was deleted, and nobody would ever see it.
    Outcome still_there() const {
        struct stat status {};
        if (fstat(descriptor_, &status) != 0) return failure_of(errno, path_);
        if (status.st_nlink > 0) return {};
        std::error_code error;
        const bool folder_is_there = std::filesystem::exists(path_.parent_path(), error);
        return failure(folder_is_there ? RunTimeError::file_not_found : RunTimeError::path_not_found);
    }

    int descriptor_;
    std::filesystem::path path_;
    bool appends_;
};

int flags_of(OpenMode mode) {
    switch (mode) {
    case OpenMode::read: return O_RDONLY;
    case OpenMode::read_write: return O_RDWR | O_CREAT;
    case OpenMode::append: return O_WRONLY | O_CREAT | O_APPEND;
    case OpenMode::create: return O_RDWR | O_CREAT | O_TRUNC;
    }
    return O_RDONLY;
}

Outcome sync_folder(const std::filesystem::path& folder) {
    const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return failure_of(errno, folder);
    int result = 0;
    do result = fsync(descriptor);
    while (result != 0 && errno == EINTR);
    // Some file systems can't do this for folders; the step itself has been taken.
    const bool synced = result == 0 || errno == EINVAL;
    const int error = errno;
    ::close(descriptor);
    return synced ? Outcome{} : Outcome{failure_of(error, folder)};
}

class DiskLock final : public FileLock {
  public:
    DiskLock(int descriptor, std::filesystem::path path) : descriptor_(descriptor), path_(std::move(path)) {}
    ~DiskLock() override {
        (void)unlink(path_.c_str());
        ::close(descriptor_);
    }

  private:
    int descriptor_;
    std::filesystem::path path_;
};

// The system would take what stands before the zero byte, which is another file.
bool names_nothing(std::string_view path) { return path.find('\0') != std::string_view::npos; }

} // namespace

Result<std::unique_ptr<BinaryFile>> open_native(const std::filesystem::path& path, OpenMode mode) {
    // A pipe must not keep us waiting for its other end.
    const int descriptor = ::open(path.c_str(), flags_of(mode) | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0644);
    if (descriptor < 0) return failure_of(errno, path);
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return failure(RunTimeError::path_file_access);
    }
    return std::unique_ptr<BinaryFile>(
        std::make_unique<DiskFile>(descriptor, path, mode == OpenMode::append));
}

Outcome replace_native(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::path target = to;
    struct stat status {};
    if (stat(target.c_str(), &status) == 0) {
        if (access(target.c_str(), W_OK) != 0) return failure_of(errno, target);
        // The old file's permissions stay; where it is a link, what it leads to is replaced.
        (void)chmod(from.c_str(), status.st_mode & 07777U);
        std::error_code error;
        if (std::filesystem::path real = std::filesystem::canonical(target, error); !error)
            target = std::move(real);
    }
    if (std::rename(from.c_str(), target.c_str()) != 0) return failure_of(errno, from);
    return sync_folder(target.parent_path());
}

Result<std::unique_ptr<BinaryFile>> DiskFiles::open(std::string_view path, OpenMode mode) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    return open_native(paths_.native(path), mode);
}

bool DiskFiles::exists(std::string_view path) {
    if (names_nothing(path)) return false;
    struct stat status {};
    return stat(paths_.native(path).c_str(), &status) == 0;
}

Outcome DiskFiles::remove(std::string_view path) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    const std::filesystem::path native = paths_.native(path);
    return unlink(native.c_str()) == 0 ? Outcome{} : Outcome{failure_of(errno, native)};
}

Outcome DiskFiles::replace(std::string_view from, std::string_view to) {
    if (names_nothing(from) || names_nothing(to)) return failure(RunTimeError::path_file_access);
    return replace_native(paths_.native(from), paths_.native(to));
}

Outcome DiskFiles::make_folder(std::string_view path) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    std::error_code error;
    std::filesystem::create_directories(paths_.native(path), error);
    return error ? Outcome{failure_of(error.value(), paths_.native(path))} : Outcome{};
}

Result<std::unique_ptr<FileLock>> DiskFiles::lock(std::string_view path) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    const std::filesystem::path native = paths_.native(std::string(path) + ".sperre");
    for (;;) {
        const int descriptor =
            ::open(native.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0644);
        if (descriptor < 0) return failure_of(errno, native);
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            ::close(descriptor);
            if (error == EINTR) continue;
            if (error == EWOULDBLOCK) return failure(RunTimeError::file_already_open);
            return failure_of(error, native);
        }
        // Its last holder may have taken the file away between the two steps.
        struct stat held {};
        struct stat there {};
        const bool same = fstat(descriptor, &held) == 0 && stat(native.c_str(), &there) == 0 &&
                          held.st_ino == there.st_ino && held.st_dev == there.st_dev;
        if (same) return std::unique_ptr<FileLock>(std::make_unique<DiskLock>(descriptor, native));
        ::close(descriptor);
    }
}

} // namespace velorn

#endif
