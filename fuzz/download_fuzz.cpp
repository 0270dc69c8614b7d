// Any bytes from the controller while a download runs: nothing crashes, and a cell changes only by a frame
// that was acknowledged.
#include "archive/download.h"
#include "archive/download_frame.h"
#include "support/block_files.h"
#include "support/receive_rig.h"

#include <cstdint>
#include <cstdlib>

using namespace velorn;

namespace {

constexpr std::string_view path = "c:\\daten\\werk.dat";
constexpr std::int16_t tracks = 30;

void must(bool fine) {
    if (!fine) std::abort();
}

// The window's side of a receive path, with a sparse archive open: cells hold zeros.
struct Rig : test::ReceiveRig {
    test::BlockFiles disk;
    FrmTelefon frmtelefon{loop};
    FrmGrafick frmgrafick{loop};
    Archive archive{disk};
    DownloadDiary diary{disk};
    Download download{loop, module1, frmtelefon, frmgrafick, archive, diary, output, receive.receive_events};

    Rig() {
        disk.set_length(path, archive_layout::daten_size(tracks) + archive_layout::rechdaten_size + 4096);
        archive.spuranz = tracks;
        (void)archive.open(path);
        archive.startjahr = std::int16_t{2020};
        frmgrafick.geladen = true;
        download.opendathol_Click();
    }
    std::size_t count(std::string_view sent) const {
        std::size_t number = 0;
        for (const std::string& one : news) number += one == "serial:" + std::string(sent) ? 1 : 0;
        return number;
    }
};

void as_fields(std::string_view bytes) {
    (void)value_of_field(bytes.substr(0, 8));
    if (const auto all = take_initialisation(bytes, tracks)) {
        must(all->tracks >= 0 && all->tracks <= tracks);
        must(all->units.size() == static_cast<std::size_t>(all->tracks));
        must(all->names.size() == all->units.size());
    }
    std::string_view frame = bytes;
    if (const auto set = take_data_set(frame, 2))
        must(set->values.size() == 2 && frame.size() + 24 == bytes.size());
}

// The first byte tells the phase and the mode, byte 255 ends a chunk.
void as_stream(std::string_view bytes) {
    Rig rig;
    const auto choice = static_cast<unsigned char>(bytes.front());
    rig.frmgrafick.dlphase = choice % 3;
    rig.frmgrafick.dlmodus = (choice >> 2U) % 2;
    rig.archive.exportspuren = static_cast<std::int16_t>((choice >> 3U) % 4);
    rig.module1.empfgrafick = true;
    rig.frmgrafick.Timer4.Enabled = true;
    bytes.remove_prefix(1);
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\xff'), bytes.size());
        rig.serial.arrives(bytes.substr(0, end));
        rig.loop.pass(300);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    rig.loop.pass(20'000);
    must(rig.frmgrafick.neuwerte <= 16 * static_cast<int>(rig.count("OK")));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 8192;
    if (size < 2 || size > longest) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.front() % 2 == 0)
        as_fields(bytes.substr(1));
    else
        as_stream(bytes.substr(1));
    return 0;
}
