// The archive of a site: up to ten years of quarter-hour values in one file, with the texts of its tracks and
// the settings of the evaluation. Between opening and closing everything happens in memory; the file changes
// in save() alone. What save leaves are exactly the bytes that reading the whole file and writing the whole
// of layout 2 over it would leave, but neither is done: a year is read when it is first touched, and what is
// written is what has changed.
//
// Promises: at most one copy of the tables in memory; a kill or power cut at any moment leaves the old or the
// new content, never a mix (see archive_journal.h); a file that is cut short or gone while it is open gives
// an error, never a crash.
//
// Beside "<path>" may lie "<path>.journal", a save that was cut off, which the next opening completes or
// drops;
// "<path>.neu", a new file in the making, overwritten by the next; "<path>.sperre", by which a second program
// is noticed; "<path>.tagebuch", see download_diary.h.
#pragma once

#include "archive/archive_file.h"
#include "archive/archive_layout.h"
#include "archive/archive_tail.h"
#include "archive/year_table.h"
#include "runtime/calendar.h"
#include "runtime/failure.h"
#include "runtime/files.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velorn {

class Archive : public ArchiveSettings {
  public:
    explicit Archive(Files& files) : files_(files) {}

    // Both keep their values over closing, and a file whose size is outside all ranges is taken for one of
    // these.
    std::int16_t spuranz = 0;       // 30, 60, 90, 120 or 150; 0 before the first archive
    std::int16_t archivversion = 0; // 1 or 2; 0 before the first archive

    // Reads the settings; the tables wait until they are touched. After it the archive is open in any case: a
    // failure tells that something is missing, and whoever uses it all the same gets Empty settings and fill
    // values where it is. 62: the file ends too early; 13: a value that isn't one; 75: a size outside all
    // ranges where there was no archive before, which gives 60 tracks of fill values; 53, 57 and their like
    // as reading gave them.
    // A journal beside it that is complete is carried out first; where this fails, nothing is read, and
    // save() gives that failure.
    Outcome open(std::string_view path);

    // Has a file open that is too small to be an archive: nothing is read, there are default settings and
    // fill values for as many tracks as the last archive had, or 60, and save() writes all of it over the
    // file.
    void open_unread(std::string_view path);

    // Brings settings of older files up to date: the formula tables and the analytic curve.
    void upgrade();

    // Writes a new file with all defaults and upgraded formulas, and has it open. It is written over what
    // is there: the tail of a longer file stays behind it. After a failure the archive isn't open.
    Outcome create(std::string_view path, std::int16_t startjahr, std::int16_t tracks, const DateTime& today);

    bool is_open() const { return open_; }
    const std::string& path() const { return path_; }

    // Another program, or another window, has had this archive open since before us.
    bool shared() const { return shared_; }

    // Cells. Subscripts as in archive_layout.h, t of rechdaten 0 to 4; keeping within them is the caller's
    // duty. Where reading fails the year holds fill values, and failed() tells why from then on.
    float daten(int y, int m, int d, int q, int t);
    void set_daten(int y, int m, int d, int q, int t, float value);
    float rechdaten(int y, int m, int d, int q, int t);
    void set_rechdaten(int y, int m, int d, int q, int t, float value);

    // A quarter-hour's tracks 0 to spuranz, and 0 to 4 of the calculated ones. Valid until close, open,
    // create.
    std::span<const float> row(int y, int m, int d, int q);
    std::span<const float> rechrow(int y, int m, int d, int q);
    // All rows of a year in file order, as row_of(m, d, q) counts them.
    std::span<const float> year(int y);
    std::span<const float> rechyear(int y);

    // False: the first touch of the year's values reads megabytes, perhaps over a network.
    bool holds(int y) const { return y < 0 || y >= archive_layout::years || daten_.loaded(y); }

    // The newest day by track 1, without reading whole years. Of an archive without any value it is the first
    // day, which isn't full.
    struct NewestDay {
        int jahr = 0; // calendar year
        int monat = 1;
        int tag = 1;
        bool tagvoll = false; // its last quarter-hour has a value
    };
    NewestDay letztertag();

    // The first reading that failed since opening.
    std::optional<Failure> failed() const { return failed_; }
    // Somebody knows, and goes on with fill values.
    void forget_failure() { failed_.reset(); }

    // Writes what has changed. After a failure the data stay in memory and it may be tried again; the file is
    // old or new. 75: the file was changed by somebody else, or was made longer or shorter.
    Outcome save();

    // Gives the memory back.
    void close();

  private:
    struct Image;
    using Sink = std::function<Outcome(std::string_view)>;

    void begin(std::string_view path);
    Outcome find_out_layout();
    void take_defaults();
    void shape_tables();
    Outcome read_settings();
    void calculated_texts_from_tracks();

    std::span<float> touch(YearTable& table, int y);
    float peek(ArchiveReader& reader, YearTable& table, std::int64_t row, int t);
    Outcome readable();
    void note_failure(const Failure& what);

    Outcome find_changes(Image& image);
    Outcome write_table(ArchiveReader& reader, YearTable& table, ByteRange range, const Sink& sink);
    Outcome write_stretch(ArchiveReader& reader, const Image& image, ByteRange range, const Sink& sink);
    Outcome save_by_journal(const Image& image);
    Outcome finish_journal();
    Outcome save_by_new_file(const Image& image);
    Outcome write_new_file(const Image& image);
    void count_as_saved(const Image& image);
    std::string new_file_path() const;

    Files& files_;
    bool open_ = false;
    bool shared_ = false;
    std::string path_;
    std::unique_ptr<FileLock> lock_;
    YearTable daten_;
    YearTable rechdaten_;
    ArchiveFile file_;
    bool journal_pending_ = false;      // a save that counts as made and has not reached the file yet
    std::optional<Failure> unreadable_; // a journal that could not be carried out at opening
    std::optional<Failure> failed_;
};

} // namespace velorn
