// Files as the system knows them: binary, with one-based positions, reached by stored paths.
//
// A path here is a stored path in cp1252: a Windows path, or elsewhere also a path of the system's own. Files
// maps it (see runtime/paths.h) when it opens. Everything that can fail in the field gives a Failure.
#pragma once

#include "runtime/failure.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velorn {

enum class OpenMode {
    read,       // must exist
    read_write, // created empty when missing, never shortened: the binary mode of the system
    append,     // created when missing; every write goes to the end
    create,     // created or emptied
};

// An open file. Closing (destruction) gives no error; who needs to know calls sync first.
class BinaryFile {
  public:
    virtual ~BinaryFile() = default;
    BinaryFile() = default;
    BinaryFile(const BinaryFile&) = delete;
    BinaryFile& operator=(const BinaryFile&) = delete;

    // Bytes in the file.
    virtual Result<std::int64_t> length() = 0;

    // Up to `count` bytes from the one-based position on; fewer at the end of the file, none behind it.
    virtual Result<std::string> read(std::int64_t position, std::int64_t count) = 0;

    // The same into memory that is there already; gives how many bytes it has put there.
    virtual Result<std::int64_t> read_into(std::int64_t position, std::span<char> bytes);

    // Writes all bytes at the one-based position; a gap behind the end is filled with zeros. Error 61 when
    // the disk is full; 53 or 76 when the file or its folder was deleted meanwhile, what was written before
    // can still be read then. In append mode the position is not looked at.
    virtual Outcome write(std::int64_t position, std::string_view bytes) = 0;

    // What was written has reached the disk.
    virtual Outcome sync() = 0;
};

// Held until destruction.
class FileLock {
  public:
    virtual ~FileLock() = default;
    FileLock() = default;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
};

class Files {
  public:
    virtual ~Files() = default;

    // Errors: 53 missing file, 76 missing folder, 70 no permission, 75 otherwise.
    virtual Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) = 0;

    virtual bool exists(std::string_view path) = 0;
    virtual Outcome remove(std::string_view path) = 0;

    // `from` takes the place of `to` in one step, and the step has reached the disk when this returns. A
    // write-protected `to` stays, with error 70.
    virtual Outcome replace(std::string_view from, std::string_view to) = 0;

    // The folder and those above it; fine if it is there already.
    virtual Outcome make_folder(std::string_view path) = 0;

    // Notes that somebody works with the file, in a neighbour "<path>.sperre" that goes when the lock goes or
    // its program dies. It hinders nobody: error 55 tells that somebody else, here or in another program,
    // holds it. The file itself need not exist.
    virtual Result<std::unique_ptr<FileLock>> lock(std::string_view path) = 0;
};

// What a file may hold to be read as a whole; a larger one gives error 75.
inline constexpr std::int64_t largest_whole_file = std::int64_t{1} << 30;

// The whole file.
Result<std::string> read_whole(Files& files, std::string_view path);

// Creates the file empty if it isn't there; a file that is there must be readable, no more.
Outcome ensure_exists(Files& files, std::string_view path);

// Appends to the file's end, creating it when missing.
Outcome append_to(Files& files, std::string_view path, std::string_view bytes);

// Puts new content into a file so that a kill or a power cut at any moment leaves the old or the new content,
// never a mix. The bytes are those of a plain overwrite: where the new content is shorter, the old file's
// tail stays behind it. Goes through a neighbour "<path>.neu", which an interrupted run may leave behind and
// the next one overwrites. A failure leaves the old content, but for one: where the last step was taken and
// could not be made durable, the new content stands and the failure is told.
Outcome replace_content(Files& files, std::string_view path, std::string_view content);

} // namespace velorn
