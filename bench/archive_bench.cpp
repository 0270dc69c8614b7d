// The archive's file beside what the machine can do with as many bytes: opening, closing after a day and
// after everything has changed, creating. Usage: archive_bench [rounds] [folder]
#include "archive/archive.h"
#include "rounds.h"
#include "runtime/disk_files.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace velorn;
using namespace velorn::bench;

namespace {

constexpr DateTime today{2026, 11, 21};

void must(const Outcome& outcome) {
    if (outcome) return;
    std::fprintf(stderr, "%s\n", outcome.failure().text.c_str());
    std::exit(1);
}

void must(bool fine) {
    if (!fine) std::exit(1);
}

double command(const std::string& line) {
    const double begin = seconds_now();
    must(std::system(line.c_str()) == 0);
    return (seconds_now() - begin) * 1e3;
}

// A whole process, without a shell's start.
double cat(const std::string& path) {
    const double begin = seconds_now();
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        dup2(nowhere, 1);
        execlp("cat", "cat", path.c_str(), static_cast<char*>(nullptr));
        _exit(1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    must(status == 0);
    return (seconds_now() - begin) * 1e3;
}

std::int64_t resident_bytes() {
    std::ifstream in("/proc/self/statm");
    std::int64_t all = 0;
    std::int64_t resident = 0;
    in >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

// The first year of ten tracks, as a chart of it would be made.
double read_a_year(Archive& archive) {
    double sum = 0;
    for (int m = 1; m <= 12; ++m) {
        for (int d = 1; d <= 31; ++d) {
            for (int q = 1; q <= 96; ++q) {
                const std::span<const float> row = archive.row(0, m, d, q);
                for (std::size_t t = 1; t <= 10; ++t) sum += static_cast<double>(row[t]);
            }
        }
    }
    return sum;
}

void write_all(int file, const std::string& bytes, off_t at) {
    must(pwrite(file, bytes.data(), bytes.size(), at) == static_cast<ssize_t>(bytes.size()));
}

class Site {
  public:
    Site(std::string folder, std::int16_t tracks) : folder_(std::move(folder)), tracks_(tracks) {
        path_ = folder_ + "/werk" + std::to_string(tracks) + ".dat";
        Archive archive(files_);
        must(archive.create(path_, 2009, tracks, today));
        archive.close();
        size_ = static_cast<std::size_t>(std::filesystem::file_size(path_));
    }

    std::string name(std::string_view what) const {
        return std::to_string(size_ / 1'000'000) + " MB: " + std::string(what);
    }
    const std::string& path() const { return path_; }

    double open_and_read() {
        Archive archive(files_);
        const std::int64_t before = resident_bytes();
        const double begin = seconds_now();
        must(archive.open(path_));
        archive.upgrade();
        keep_ = keep_ + read_a_year(archive);
        const double taken = (seconds_now() - begin) * 1e3;
        grown_ = static_cast<double>(resident_bytes() - before) / static_cast<double>(size_);
        return taken;
    }
    double grown() const { return grown_; }

    double close_after_a_day() {
        Archive archive(files_);
        must(archive.open(path_));
        archive.upgrade();
        const float value = static_cast<float>(++round_);
        for (int q = 1; q <= 96; ++q) {
            for (int t = 1; t <= tracks_; ++t) archive.set_daten(3, 4, 5, q, t, value);
            for (int t = 0; t < 5; ++t) archive.set_rechdaten(3, 4, 5, q, t, value);
        }
        archive.archivtag = static_cast<std::int16_t>(round_ % 28 + 1);
        const double begin = seconds_now();
        must(archive.save());
        archive.close();
        return (seconds_now() - begin) * 1e3;
    }

    double close_after_everything() {
        Archive archive(files_);
        change_everything(archive);
        const double begin = seconds_now();
        must(archive.save());
        archive.close();
        return (seconds_now() - begin) * 1e3;
    }

    double rewrite_with_sync() {
        const std::string bytes = all();
        const double begin = seconds_now();
        const int file = ::open(path_.c_str(), O_RDWR);
        write_all(file, bytes, 0);
        must(fsync(file) == 0);
        ::close(file);
        return (seconds_now() - begin) * 1e3;
    }

    // As many bytes as a day takes in both tables and the settings.
    double journal_and_patch() {
        const std::string bytes(static_cast<std::size_t>(96 * (tracks_ + 1) * 4 + 96 * 20), 'j');
        const std::string journal = path_ + ".vergleich";
        const double begin = seconds_now();
        const int first = ::open(journal.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
        write_all(first, bytes, 0);
        must(fdatasync(first) == 0);
        const int file = ::open(path_.c_str(), O_RDWR);
        write_all(file, bytes, 20'000'000);
        must(fdatasync(file) == 0);
        ::close(file);
        ::close(first);
        must(unlink(journal.c_str()) == 0);
        return (seconds_now() - begin) * 1e3;
    }

    // From the memory of an archive that was changed in the same way, so that the machine is in the same
    // state.
    double new_file_and_rename() {
        const std::string bytes = all();
        Archive archive(files_);
        change_everything(archive);
        const std::string fresh = path_ + ".vergleich";
        const double begin = seconds_now();
        const int file = ::open(fresh.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
        off_t at = 0;
        for (int y = 0; y < 10; ++y) {
            const std::span<const float> year = archive.year(y);
            must(pwrite(file, year.data(), year.size_bytes(), at) == static_cast<ssize_t>(year.size_bytes()));
            at += static_cast<off_t>(year.size_bytes());
        }
        const std::string_view rest = std::string_view(bytes).substr(static_cast<std::size_t>(at));
        must(pwrite(file, rest.data(), rest.size(), at) == static_cast<ssize_t>(rest.size()));
        must(fdatasync(file) == 0);
        ::close(file);
        must(rename(fresh.c_str(), path_.c_str()) == 0);
        const int folder = ::open(folder_.c_str(), O_RDONLY | O_DIRECTORY);
        must(fsync(folder) == 0);
        ::close(folder);
        archive.close();
        return (seconds_now() - begin) * 1e3;
    }

    double create_anew() {
        std::filesystem::remove(path_);
        Archive archive(files_);
        const double begin = seconds_now();
        must(archive.create(path_, 2009, tracks_, today));
        return (seconds_now() - begin) * 1e3;
    }

    double zeros_with_sync() {
        const std::string zeros = path_ + ".vergleich";
        const double taken = command("dd if=/dev/zero of=" + zeros + " bs=1M iflag=count_bytes count=" +
                                     std::to_string(size_) + " conv=fsync 2>/dev/null");
        std::filesystem::remove(zeros);
        return taken;
    }

  private:
    void change_everything(Archive& archive) {
        must(archive.open(path_));
        const float value = static_cast<float>(++round_);
        for (int y = 0; y < 10; ++y) {
            for (int m = 0; m < 13; ++m) {
                for (int d = 0; d < 32; ++d) {
                    for (int q = 0; q < 97; ++q) {
                        for (int t = 0; t <= tracks_; ++t) archive.set_daten(y, m, d, q, t, value);
                        for (int t = 0; t < 5; ++t) archive.set_rechdaten(y, m, d, q, t, value);
                    }
                }
            }
        }
    }

    std::string all() const {
        std::string bytes(std::filesystem::file_size(path_), '\0');
        std::ifstream in(path_, std::ios::binary);
        in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return bytes;
    }

    std::string folder_;
    std::int16_t tracks_;
    std::string path_;
    std::size_t size_ = 0;
    Paths paths_{"."};
    DiskFiles files_{paths_};
    int round_ = 0;
    double grown_ = 0;
    volatile double keep_ = 0;
};

} // namespace

int main(int count, char** arguments) {
    const int rounds = count > 1 ? std::atoi(arguments[1]) : 7;
    const std::filesystem::path folder =
        std::filesystem::path(count > 2 ? arguments[2] : ".") / ("archive_bench." + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    struct Size {
        std::int16_t tracks;
        double day_goal;
    };
    for (const Size size : {Size{30, 0.045}, Size{60, 0.025}, Size{150, 0.0125}}) {
        Site site(folder.string(), size.tracks);
        std::vector<Case> cases;
        const auto add = [&](std::string_view name, std::string_view unit, std::function<double()> run,
                             std::string_view reference = {}, double goal = 0) {
            cases.push_back({site.name(name), std::string(unit), std::move(run),
                             reference.empty() ? std::string() : site.name(reference), goal});
        };
        add("cat", "ms", [&] { return cat(site.path()); });
        add(
            "open, a year of 10 tracks", "ms", [&] { return site.open_and_read(); }, "cat", 0.5);
        add("the file's size", "x", [] { return 1.0; });
        add(
            "memory grown", "x", [&] { return site.grown(); }, "the file's size", 0.25);
        add("rewrite, sync", "ms", [&] { return site.rewrite_with_sync(); });
        add("journal, sync, patch, sync", "ms", [&] { return site.journal_and_patch(); });
        add(
            "close after a day", "ms", [&] { return site.close_after_a_day(); }, "rewrite, sync",
            size.day_goal);
        add(
            "close after another day", "ms", [&] { return site.close_after_a_day(); },
            "journal, sync, patch, sync", 2);
        add("new file, sync, rename", "ms", [&] { return site.new_file_and_rename(); });
        add(
            "close after everything", "ms", [&] { return site.close_after_everything(); },
            "new file, sync, rename", 1.3);
        if (size.tracks == 150) {
            add("dd of zeros, sync", "ms", [&] { return site.zeros_with_sync(); });
            add(
                "create", "ms", [&] { return site.create_anew(); }, "dd of zeros, sync", 1.2);
        }
        run(std::move(cases), rounds);
        std::filesystem::remove(site.path());
    }
    std::filesystem::remove_all(folder);
    return 0;
}
