// Changes to a file that either reach it all or not at all, whatever happens in between. They are first
// written to a journal beside it, "<path>.journal", which takes its name in one step when it is complete and
// on the disk; then they are put into the file; then the journal goes. A journal that is found later is put
// into the file again, which does no harm where that had been done already.
//
// Layout, little-endian:
//
//   "VLNJOURN", version (u32), number of ranges (u32)
//   bytes in the file before and after (u64 each), fingerprint of the file (u64)
//   for each range: offset, length (u64 each), ascending, none touching another
//   the bytes of all ranges
//   checksum over everything so far (u64), "JOURNEND"
//
// The fingerprint is a checksum over samples of the file without the ranges, so that it is the same before,
// during and after the change. A journal that is incomplete, garbled, or of another file is dropped.
#pragma once

#include "archive/checksum.h"
#include "archive/year_table.h"
#include "runtime/files.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velorn {

std::string journal_path(std::string_view path);

class JournalWriter {
  public:
    JournalWriter(Files& files, std::string_view path) : files_(files), path_(path) {}

    // Ranges ascending, none touching another, not empty; `target` is the file as it is.
    Outcome begin(const std::vector<ByteRange>& ranges, BinaryFile& target);
    // The bytes of the ranges, in their order, in pieces of any size.
    Outcome add(std::string_view bytes);
    // From here on the change counts as made. After a failure of one of the three nothing is left behind, and
    // the change counts as not made.
    Outcome commit();
    // Takes away what was written so far, and gives `why`.
    Outcome give_up(const Failure& why);

  private:
    Outcome flush();

    Files& files_;
    std::string path_;
    std::unique_ptr<BinaryFile> file_;
    std::int64_t end_ = 0;
    std::string buffer_;
    Checksum sum_;
};

struct JournalRun {
    Outcome outcome;
    // Nothing within the file's former length has been touched: without the journal it is what it was.
    bool untouched = true;
};

// Puts a committed journal into the file it was made for, and removes it.
JournalRun run_journal(Files& files, std::string_view path);

// At opening: completes what a journal beside the file holds, or drops it. Fine if there is none. A failure
// leaves the journal, and the file may be half changed.
Outcome complete_journal(Files& files, std::string_view path);

} // namespace velorn
