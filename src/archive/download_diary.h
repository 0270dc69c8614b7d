// What a download has acknowledged to its controller, kept beside the archive as "<path>.tagebuch" until the
// archive itself is saved: the controller won't send it again, and the archive's file changes only at
// closing.
//
// Each data set is handed to the system as it comes, with a checksum of its own, so that what a kill or a
// power cut leaves is taken up to the first record that is torn. Layout, little-endian:
//
//   "VLNTAGEB", version (u32), spuranz (i32), startjahr (i32), checksum (u64)
//   records: y, m, d, q, number of values (u8 each and u16), values (f32 each), checksum (u64)
//
// A record's checksum goes over its place in the file as well, so what is left of an older record behind a
// newer one is not taken for one of today's.
#pragma once

#include "archive/archive.h"
#include "runtime/files.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velorn {

class DownloadDiary {
  public:
    explicit DownloadDiary(Files& files) : files_(files) {}

    // A diary is one program's: where the archive is shared, begin and take_over do nothing.

    // Goes on behind the data sets that an earlier download of this archive has left. Anything else that lies
    // there is overwritten, unless the archive itself wasn't read as a whole (`certain`): it may be the one
    // that the diary belongs to. Nor is there a diary where the last taking over couldn't read what lies
    // there.
    Outcome begin(const Archive& archive, bool certain = true);

    // The values of tracks 1, 2, ... of a quarter-hour, within the ranges of the archive. Nothing happens,
    // and nothing fails, where no diary was begun.
    Outcome add(int y, int m, int d, int q, std::span<const float> values);

    // Deletes the diary that was begun or taken over: the archive is saved, or is not to be.
    Outcome drop();

    // Deletes that of an archive whose place a new one has taken.
    void drop_beside(std::string_view path);

    // Leaves it lying for the next opening of its archive.
    void leave();

    // Puts the data sets that a diary beside this archive holds into it and gives their number. The diary
    // stays until drop(), which is due when the next save has succeeded; one that couldn't be read to its end
    // stays for the next opening.
    int take_over(Archive& archive);

  private:
    Files& files_;
    std::string path_;   // of the diary that was begun or taken over
    std::string unread_; // of one that couldn't be read
    std::unique_ptr<BinaryFile> file_;
    std::int64_t end_ = 0; // bytes
};

} // namespace velorn
