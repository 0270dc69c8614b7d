// The make for Windows; disk_files.cpp is its twin.
#ifdef _WIN32

#include "runtime/disk_files.h"

#include <algorithm>
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace velorn {

namespace {

Failure failure_of(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND: return failure(RunTimeError::file_not_found);
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME: return failure(RunTimeError::path_not_found);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT: return failure(RunTimeError::permission_denied);
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return failure(RunTimeError::disk_full);
    case ERROR_IO_DEVICE:
    case ERROR_CRC:
    case ERROR_NOT_READY: return failure(RunTimeError::device_io);
    default: return failure(RunTimeError::path_file_access);
    }
}

OVERLAPPED at(std::int64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

class DiskFile final : public BinaryFile {
  public:
    DiskFile(HANDLE handle, bool appends) : handle_(handle), appends_(appends) {}
    ~DiskFile() override { CloseHandle(handle_); }

    Result<std::int64_t> length() override {
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(handle_, &size)) return failure_of(GetLastError());
        return static_cast<std::int64_t>(size.QuadPart);
    }

    Result<std::string> read(std::int64_t position, std::int64_t count) override {
        if (position < 1 || count < 0) return failure(RunTimeError::invalid_call);
        const Result<std::int64_t> all = length();
        if (!all) return all.failure();
        const std::int64_t there = std::clamp<std::int64_t>(*all - (position - 1), 0, count);
        std::string bytes(static_cast<std::size_t>(there), '\0');
        std::size_t done = 0;
        while (done < bytes.size()) {
            OVERLAPPED place = at(position - 1 + static_cast<std::int64_t>(done));
            const auto want = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1U << 30U));
            DWORD got = 0;
            if (!ReadFile(handle_, bytes.data() + done, want, &got, &place)) {
                if (GetLastError() == ERROR_HANDLE_EOF) break;
                return failure_of(GetLastError());
            }
            if (got == 0) break;
            done += got;
        }
        bytes.resize(done);
        return bytes;
    }

    Outcome write(std::int64_t position, std::string_view bytes) override {
        if (position < 1) return failure(RunTimeError::invalid_call);
        std::int64_t offset = position - 1;
        if (appends_) {
            const Result<std::int64_t> all = length();
            if (!all) return all.failure();
            offset = *all;
        }
        while (!bytes.empty()) {
            OVERLAPPED place = at(offset);
            const auto want = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 30U));
            DWORD put = 0;
            if (!WriteFile(handle_, bytes.data(), want, &put, &place)) return failure_of(GetLastError());
            if (put == 0) return failure(RunTimeError::device_io);
            bytes.remove_prefix(put);
            offset += put;
        }
        return {};
    }

    Outcome sync() override {
        return FlushFileBuffers(handle_) ? Outcome{} : Outcome{failure_of(GetLastError())};
    }

  private:
    HANDLE handle_;
    bool appends_;
};

class DiskLock final : public FileLock {
  public:
    explicit DiskLock(HANDLE handle) : handle_(handle) {}
    ~DiskLock() override { CloseHandle(handle_); }

  private:
    HANDLE handle_;
};

// The system would take what stands before the zero byte, which is another file.
bool names_nothing(std::string_view path) { return path.find('\0') != std::string_view::npos; }

bool is_folder(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

Result<std::unique_ptr<BinaryFile>> open_native(const std::filesystem::path& path, OpenMode mode) {
    if (is_folder(path)) return failure(RunTimeError::path_file_access);
    const DWORD access = mode == OpenMode::read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
    const DWORD creation = mode == OpenMode::read     ? OPEN_EXISTING
                           : mode == OpenMode::create ? CREATE_ALWAYS
                                                      : OPEN_ALWAYS;
    const HANDLE handle = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return failure_of(GetLastError());
    // Names such as CON or COM1 lead to devices, which would keep us waiting.
    if (GetFileType(handle) != FILE_TYPE_DISK) {
        CloseHandle(handle);
        return failure(RunTimeError::path_file_access);
    }
    return std::unique_ptr<BinaryFile>(std::make_unique<DiskFile>(handle, mode == OpenMode::append));
}

Outcome replace_native(const std::filesystem::path& from, const std::filesystem::path& to) {
    const BOOL moved =
        MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    return moved ? Outcome{} : Outcome{failure_of(GetLastError())};
}

Result<std::unique_ptr<BinaryFile>> DiskFiles::open(std::string_view path, OpenMode mode) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    return open_native(paths_.native(path), mode);
}

bool DiskFiles::exists(std::string_view path) {
    if (names_nothing(path)) return false;
    return GetFileAttributesW(paths_.native(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

Outcome DiskFiles::remove(std::string_view path) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    return DeleteFileW(paths_.native(path).c_str()) ? Outcome{} : Outcome{failure_of(GetLastError())};
}

Outcome DiskFiles::replace(std::string_view from, std::string_view to) {
    if (names_nothing(from) || names_nothing(to)) return failure(RunTimeError::path_file_access);
    return replace_native(paths_.native(from), paths_.native(to));
}

Outcome DiskFiles::make_folder(std::string_view path) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    std::error_code error;
    std::filesystem::create_directories(paths_.native(path), error);
    return error ? Outcome{failure_of(static_cast<DWORD>(error.value()))} : Outcome{};
}

Result<std::unique_ptr<FileLock>> DiskFiles::lock(std::string_view path) {
    if (names_nothing(path)) return failure(RunTimeError::path_file_access);
    const std::filesystem::path native = paths_.native(std::string(path) + ".sperre");
    const HANDLE handle =
        CreateFileW(native.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle != INVALID_HANDLE_VALUE) return std::unique_ptr<FileLock>(std::make_unique<DiskLock>(handle));
    const DWORD error = GetLastError();
    // While its holder is closing it, the file is there and refuses everything.
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_DELETE_PENDING)
        return failure(RunTimeError::file_already_open);
    return failure_of(error);
}

} // namespace velorn

#endif
