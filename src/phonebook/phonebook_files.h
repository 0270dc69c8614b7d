// The phone book on disk: telefon.par with all entries, dispauf.par with values that only pass through. Where
// they lie is kept in einst.par.
//
// Neither file has a header or an index. telefon.par holds 601 records of the old layout and then 2011 of the
// present one, each field after the other without padding, texts with tag and length; so a record is found by
// reading all that stand before it. Reading ends at the first value that is cut off or has an unknown tag;
// all behind it keeps what it held. Each file is replaced as a whole: a kill at any moment leaves its
// complete old or complete new content. Files are never shortened; stale bytes behind the last record are
// never read.
//
// No failure is reported: what can't be read stays as it is in memory, what can't be written stays as it is
// on disk.
#pragma once

#include "core/settings.h"
#include "core/telefonbuch.h"
#include "runtime/files.h"

#include <string>
#include <string_view>

namespace velorn {

// False: an unknown tag ended the reading, and what stands behind it was not understood.
bool decode_telefonbuch(std::string_view bytes, Telefonbuch& book);
std::string encode_telefonbuch(const Telefonbuch& book);

class PhonebookFiles {
  public:
    PhonebookFiles(Files& files, const Settings& settings, Telefonbuch& book)
        : files_(files), settings_(settings), book_(book) {}

    // A missing file is created empty.
    void read_telefonbuch();
    void read_dispaufnahmen();

    // Before a book is written over a file that could not be read to its end, that file is kept beside it as
    // "<path>.alt".
    void save_telefonbuch();
    void save_dispaufnahmen();

  private:
    Files& files_;
    const Settings& settings_;
    Telefonbuch& book_;
    std::string not_understood_; // the path of a file that the last reading could not make out
};

} // namespace velorn
