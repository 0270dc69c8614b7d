// A disk in memory for large files. Files are made of blocks of 64 KiB that are copied when they are written:
// a copy of a file shares all its blocks, and blocks of one value (zeros, a fill value) are there once. Names
// are compared as Windows does, without regard to case.
//
// It knows what has been synced. A power cut leaves of what was written since then any part, in any order:
// what sync or replace has promised is there, everything else may be.
#pragma once

#include "runtime/files.h"
#include "support/memory_locks.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::test {

class BlockFiles : public Files {
  public:
    static constexpr std::int64_t block_size = 64 * 1024;
    using Block = std::array<char, block_size>;

    struct Content {
        std::int64_t length = 0;
        std::vector<std::shared_ptr<Block>> blocks; // bytes behind the length are zeros
    };

    Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) override;
    bool exists(std::string_view path) override { return files_.contains(to_lower(path)); }
    Outcome remove(std::string_view path) override;
    Outcome replace(std::string_view from, std::string_view to) override;
    Outcome make_folder(std::string_view) override { return {}; }
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) override { return locks_.lock(path); }

    // Cheap, whatever the size.
    void copy(std::string_view from, std::string_view to);
    Content content(std::string_view path) const;
    void set_content(std::string_view path, Content content);

    std::int64_t length(std::string_view path) const;
    std::string bytes(std::string_view path, std::int64_t offset, std::int64_t count) const;
    void set_bytes(std::string_view path, std::int64_t offset, std::string_view bytes);
    // A file that is cut or grown with zeros, as only tests do it.
    void set_length(std::string_view path, std::int64_t length);

    // The power goes and comes back.
    void power_cut(std::uint32_t seed);

    // The names of all files, in order.
    std::vector<std::string> names() const;

    // Bytes that all files together take.
    std::int64_t memory() const;

  private:
    class File;

    // What was opened and what is found under a name are the same as long as nobody has replaced it.
    struct Entry {
        Content now;
        Content synced;
        bool gone = false;
    };

    std::map<std::string, std::shared_ptr<Entry>> files_;
    std::map<std::string, std::shared_ptr<Entry>> promised_; // names that a power cut leaves
    std::vector<std::shared_ptr<Block>> plain_;              // blocks of one value
    MemoryLocks locks_;

    std::shared_ptr<Block> plain_block(std::string_view value);
    void write(Content& content, std::int64_t offset, std::string_view bytes);
    static std::string read(const Content& content, std::int64_t offset, std::int64_t count);
    static std::int64_t read(const Content& content, std::int64_t offset, std::span<char> bytes);
};

// Equal bytes from `offset` on.
bool same_bytes(const BlockFiles::Content& content, std::int64_t offset, std::string_view bytes);
bool operator==(const BlockFiles::Content& a, const BlockFiles::Content& b);

} // namespace velorn::test
