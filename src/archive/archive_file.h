// The file of an open archive as it lies on the disk: which of its parts are where, and reading them.
//
// Files of layout 1 have no calculated tracks; there they are made from tracks 0 and 60 as they stand on the
// disk. What the file doesn't reach to is given as fill values.
#pragma once

#include "runtime/files.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace velorn {

struct ArchiveFile {
    enum class Calculated {
        none,        // fill values
        from_tracks, // layout 1
        stored,
    };

    std::string path;
    std::int16_t spuranz = 0;
    std::int64_t length = 0; // 0: no file
    std::int64_t usable = 0; // bytes from its start that are read; the rest is kept only
    std::int64_t settings_length = 0;
    Calculated calculated = Calculated::none;

    std::int64_t rechdaten_at() const;
};

// A file of the archive's kind that is there and has the length that it is known to have; nullptr for one
// that is known not to be there and isn't. 53 and 76: it is gone. 75: its length is another.
Result<std::unique_ptr<BinaryFile>> open_unchanged(Files& files, const ArchiveFile& file);

// Reads an archive's file, which is opened when it is first needed and stays open as long as the reader
// lives. 62: it has become shorter.
class ArchiveReader {
  public:
    ArchiveReader(Files& files, const ArchiveFile& file) : files_(files), file_(file) {}

    // Whole rows from `first_row` on; the span's size is a multiple of a row's.
    Outcome daten(std::int64_t first_row, std::span<float> values);
    Outcome rechdaten(std::int64_t first_row, std::span<float> values);

    // Up to `count` bytes from the offset on, fewer at the end of the file, whether usable or not.
    Result<std::string> bytes(std::int64_t offset, std::int64_t count);

    // Lets go of the file.
    void release() { open_.reset(); }

  private:
    // Has the file open where one is there.
    Outcome open();
    Outcome table(std::int64_t at, int columns, std::int64_t first_row, std::span<float> values);
    Outcome from_tracks(std::int64_t first_row, std::span<float> values);

    Files& files_;
    const ArchiveFile& file_;
    std::unique_ptr<BinaryFile> open_;
};

} // namespace velorn
