// A full phone book: loading it beside a plain read of the same bytes, saving it beside a plain write and
// sync of them, and a search that goes through all of it. Usage: phonebook_bench [rounds]
#include "phonebook/phonebook_edits.h"
#include "phonebook/phonebook_files.h"
#include "rounds.h"
#include "runtime/disk_files.h"
#include "support/temporary_folder.h"

#include <cstdlib>
#include <memory>

using namespace velorn;
using namespace velorn::bench;

namespace {

constexpr int repetitions = 20;

// About 250 bytes of texts in each entry. Every fifth one has no archive and no snapshots yet.
Telefonbuch full_book() {
    Telefonbuch book;
    for (int i = 0; i < Telefonbuch::entries; ++i) {
        const std::string number = std::to_string(i);
        PhoneEntry& entry = book[i];
        entry.pos = static_cast<std::int16_t>(i);
        entry.name = "Heizkraftwerk " + number + ", Industriepark Nord";
        entry.nummer = i % 2 == 0 ? "0,05550" + number : "anlage" + number + ".fernwirken.example";
        entry.visdatei = "c:\\programme\\visualisierung\\anlage" + number + ".exe";
        entry.protdatei = "c:\\daten\\protokolle\\anlage" + number + ".txt";
        entry.bemerkung = "9600 Modem im Schaltschrank, Zugang port 23";
        entry.datum = 32874.0;
        entry.viertdatei = i % 5 == 0 ? "" : "d:\\viertelstunden\\anlage" + number + ".dat";
        entry.aufnahme = i % 5 == 0 ? "" : "Hauptbild 15.11.2026 11:28:00\r\n";
    }
    return book;
}

double microseconds_of_each(int count, const auto& work) {
    const double begin = seconds_now();
    for (int i = 0; i < count; ++i) work();
    return (seconds_now() - begin) / count * 1e6;
}

void stop_if(bool wrong) {
    if (wrong) std::abort();
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    const test::TemporaryFolder folder;
    const Paths paths(folder.path());
    DiskFiles files(paths);
    Settings settings;
    settings.telefonpfad = folder.stored("telefon.par");
    const std::string other = folder.stored("other.par");

    Telefonbuch book = full_book();
    PhonebookFiles phonebook_files(files, settings, book);
    phonebook_files.save_telefonbuch();
    const std::string bytes = encode_telefonbuch(book);
    folder.set_content("other.par", bytes);
    std::printf("%zu bytes, %zu of them in each entry\n", bytes.size(), bytes.size() / Telefonbuch::entries);

    const auto read = [&] {
        const auto file = files.open(other, OpenMode::read);
        stop_if(!file || (*file)->read(1, static_cast<std::int64_t>(bytes.size()))->size() != bytes.size());
    };
    const auto write = [&] {
        const auto file = files.open(other, OpenMode::read_write);
        stop_if(!file || !(*file)->write(1, bytes) || !(*file)->sync());
    };
    // The first opening of a run fills an empty book, all others one that holds the same texts.
    const auto first_load = [&] {
        double taken = 0;
        for (int i = 0; i < repetitions; ++i) {
            const auto empty = std::make_unique<Telefonbuch>();
            PhonebookFiles opening(files, settings, *empty);
            taken += microseconds_of_each(1, [&] { opening.read_telefonbuch(); });
            stop_if((*empty)[2010].bemerkung.empty());
        }
        return taken / repetitions;
    };
    const std::vector<Case> cases{
        {"plain read", "us", [&] { return microseconds_of_each(repetitions, read); }},
        {"load again", "us",
         [&] { return microseconds_of_each(repetitions, [&] { phonebook_files.read_telefonbuch(); }); },
         "plain read", 3},
        {"load first", "us", first_load, "plain read", 3},
        {"plain write and sync", "us", [&] { return microseconds_of_each(repetitions, write); }},
        {"save", "us",
         [&] { return microseconds_of_each(repetitions, [&] { phonebook_files.save_telefonbuch(); }); },
         "plain write and sync", 3},
        {"encode alone", "us",
         [&] {
             return microseconds_of_each(repetitions,
                                         [&] { stop_if(encode_telefonbuch(book).size() != bytes.size()); });
         },
         "plain read"},
        {"search in vain (aim: 1000)", "us",
         [&] {
             return microseconds_of_each(repetitions,
                                         [&] { stop_if(find_line(book, "Umspannwerk West", 0) >= 0); });
         }},
    };
    run(cases, rounds);
    return 0;
}
