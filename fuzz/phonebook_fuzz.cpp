// Any bytes as telefon.par and dispauf.par: what is read can be written and reads back as the same book, the
// window opens on it, moves through it and closes, and bytes behind the new content stay.
#include "app/program.h"
#include "phonebook/phonebook_files.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/nobody_there.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace velorn;

namespace {

constexpr const char* telefon_par = "c:\\velorn\\telefon.par";
constexpr const char* dispauf_par = "c:\\velorn\\dispauf.par";

void check(bool holds) {
    if (!holds) std::abort();
}

// Most bytes of a book stand before the first entry that the window shows. The input is therefore read as it
// is and, in every other run, behind a whole table of the old layout.
std::string book_of(std::string_view input) {
    if (input.empty() || (static_cast<unsigned char>(input[0]) & 1U) == 0) return std::string(input);
    constexpr std::size_t empty_old_table = std::size_t{601} * 30;
    return std::string(empty_old_table, '\0') + std::string(input.substr(1));
}

void check_codec(const std::string& bytes) {
    Telefonbuch book;
    (void)decode_telefonbuch(bytes, book);
    const std::string once = encode_telefonbuch(book);
    Telefonbuch again;
    check(decode_telefonbuch(once, again));
    check(encode_telefonbuch(again) == once);
    // With anything behind it, too.
    check(decode_telefonbuch(once + bytes, again));
    check(encode_telefonbuch(again) == once);
}

// What a file holds after `fresh` was written over `old`.
bool written_over(const std::string& now, const std::string& fresh, const std::string& old) {
    return now == (old.size() > fresh.size() ? fresh + old.substr(fresh.size()) : fresh);
}

void check_window(const std::string& telefon, std::string_view dispauf) {
    VirtualEventLoop loop;
    test::MemoryFiles files;
    test::NobodyThere dialogs;
    test::FakeSerialPort serial(loop);
    test::FakeTcpClient tcp(loop);
    test::FakePrinter printer;
    test::FakeProcesses processes;
    test::FakeVisualisation visualisation;
    Program program(World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1366, 768}});
    program.start.Form_Load();
    program.settings.neustartzaehler = std::int16_t{2};
    program.settings.einstversion2 = std::int16_t{22};
    files.set_content(telefon_par, telefon);
    files.set_content(dispauf_par, dispauf);

    program.phonebook_window.Form_Load();
    FrmTelefon& window = program.frmtelefon;
    const std::string shown = encode_telefonbuch(program.telefonbuch);
    for (const int first : {0, 3, 1991}) {
        window.VScroll1.set_Value(first);
        for (const int group : {1, 2, 3, 4}) window.HScroll1.set_Value(group);
    }
    window.zeilen[9].Picture1.Click();
    check(program.module1.telindex == Telefonbuch::last_shown);
    check(encode_telefonbuch(program.telefonbuch) == shown);
    window.Command8.Click();
    window.VScroll1.set_Value(0);
    window.zeilen[0].Picture1.Click();
    window.Command11.Click();
    check(!window.geladen);
    check(encode_telefonbuch(program.telefonbuch) == shown);
    check(written_over(files.content(telefon_par), shown, telefon));

    program.phonebook_window.Form_Load();
    check(encode_telefonbuch(program.telefonbuch) == shown);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = size - size / 4;
    const std::string telefon = book_of(input.substr(0, split));
    // A whole book is much to do: each input takes one of the two ways.
    if (size > 0 && (data[0] & 2U) != 0)
        check_window(telefon, input.substr(split));
    else
        check_codec(telefon);
    return 0;
}
