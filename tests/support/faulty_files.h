// Files on which things go wrong at a chosen moment: every operation on files and on the open files among
// them (open, length, read, write, sync, replace, remove, make_folder, exists, lock) is counted from 1 on,
// and from a chosen one on each fails, or the process dies there. A test that breaks each step once runs
// until() nothing broke:
//
//     for (int n = 1;; ++n) {
//         FaultyFiles files(disk);
//         files.fail_from(n);
//         ... what is tested ...
//         if (!files.broke()) break;
//     }
#pragma once

#include "runtime/files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::test {

class FaultyFiles final : public Files {
  public:
    static constexpr int killed = 77; // the exit code of a process that was killed here

    explicit FaultyFiles(Files& inner) : inner_(inner) {}

    // From operation n on each gives this failure; exists says no, since it has no failure to give.
    void fail_from(int n, RunTimeError error = RunTimeError::device_io);

    // Operation n alone fails.
    void fail_at(int n, RunTimeError error = RunTimeError::device_io);

    // All writes fail from now on, each after half its bytes, as on a full disk. Other operations succeed.
    void fill_the_disk();
    // Room again, and nothing fails any more.
    void mend();

    // The process ends before operation n; where that is a write, after half its bytes if wanted.
    void kill_at(int n, bool in_the_middle_of_a_write = false);

    // The machine stands still at operation n: neither it nor any later one happens; where it is a write,
    // half its bytes may still go. What the disk then holds can be looked at in the same process.
    void stop_at(int n, bool in_the_middle_of_a_write = false);

    // The operations so far, in order: "open", "length", "read", "write", "sync", "replace" ...
    const std::vector<std::string>& operations() const { return operations_; }
    bool broke() const { return broke_; }

    Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) override;
    bool exists(std::string_view path) override;
    Outcome remove(std::string_view path) override;
    Outcome replace(std::string_view from, std::string_view to) override;
    Outcome make_folder(std::string_view path) override;
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) override;

  private:
    class File;

    // Counts an operation and breaks it if its turn has come.
    std::optional<Failure> next(const char* operation);
    Outcome write(BinaryFile& file, std::int64_t position, std::string_view bytes);

    enum class Fault { none, failure_from, failure_at, full_disk, kill, kill_in_write, stop_in_write };

    Files& inner_;
    Fault fault_ = Fault::none;
    int turn_ = 0;
    RunTimeError error_ = RunTimeError::device_io;
    std::vector<std::string> operations_;
    bool broke_ = false;
};

} // namespace velorn::test
