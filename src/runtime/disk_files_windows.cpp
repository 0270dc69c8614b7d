// The make for Windows; disk_files.cpp is its twin.
#ifdef _WIN32

#include "runtime/disk_files.h"

#include <algorithm>
#define NOMINMAX
#include <windows.h>

namespace velorn {

namespace {

Failure failure_of(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND: return failure(RunTimeError::file_not_found);
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME: return failure(RunTimeError::path_not_found);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT: return failure(RunTimeError::permission_denied);
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return failure(RunTimeError::disk_full);
    case ERROR_IO_DEVICE:
    case ERROR_CRC: return failure(RunTimeError::device_io);
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

} // namespace

Result<std::unique_ptr<BinaryFile>> DiskFiles::open(std::string_view path, OpenMode mode) {
    const std::filesystem::path native = paths_.native(path);
    const DWORD access = mode == OpenMode::read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
    const DWORD creation = mode == OpenMode::read     ? OPEN_EXISTING
                           : mode == OpenMode::create ? CREATE_ALWAYS
                                                      : OPEN_ALWAYS;
    const HANDLE handle = CreateFileW(native.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return failure_of(GetLastError());
    return std::unique_ptr<BinaryFile>(std::make_unique<DiskFile>(handle, mode == OpenMode::append));
}

bool DiskFiles::exists(std::string_view path) {
    return GetFileAttributesW(paths_.native(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

Outcome DiskFiles::remove(std::string_view path) {
    return DeleteFileW(paths_.native(path).c_str()) ? Outcome{} : Outcome{failure_of(GetLastError())};
}

Outcome DiskFiles::replace(std::string_view from, std::string_view to) {
    const BOOL moved = MoveFileExW(paths_.native(from).c_str(), paths_.native(to).c_str(),
                                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    return moved ? Outcome{} : Outcome{failure_of(GetLastError())};
}

Outcome DiskFiles::make_folder(std::string_view path) {
    std::error_code error;
    std::filesystem::create_directories(paths_.native(path), error);
    return error ? Outcome{failure_of(static_cast<DWORD>(error.value()))} : Outcome{};
}

} // namespace velorn

#endif
