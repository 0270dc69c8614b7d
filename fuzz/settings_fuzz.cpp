// Any bytes as the three settings files: the program starts, the files are of the present version, and a
// second start reads what the first one left.
#include "app/program.h"
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

void start(test::MemoryFiles& files) {
    VirtualEventLoop loop;
    test::NobodyThere dialogs;
    test::FakeSerialPort serial(loop);
    test::FakeTcpClient tcp(loop);
    test::FakePrinter printer;
    test::FakeProcesses processes;
    test::FakeVisualisation visualisation;
    Program program(World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1366, 768}});
    program.start.Form_Load();
    if (!program.frmTerminal.form.Visible) std::abort();
    if (program.settings.einstversion2 < Variant(std::int16_t{20})) std::abort();
    program.settings_files.saveeinst();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    test::MemoryFiles files;
    // The first two bytes share the rest out.
    const std::size_t first = size > 1 ? data[0] * 4U : 0;
    const std::size_t second = size > 1 ? data[1] : 0;
    const std::string_view rest = bytes.substr(size > 1 ? 2 : 0);
    files.set_content("c:\\velorn\\einst.par", rest.substr(0, first));
    files.set_content("c:\\velorn\\lan.par", rest.substr(std::min(first, rest.size())).substr(0, second));
    files.set_content("c:\\velorn\\datpfad.par", rest.substr(std::min(first + second, rest.size())));
    start(files);
    start(files);
    return 0;
}
