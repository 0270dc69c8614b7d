// A whole program in virtual time, with a disk in memory, a scripted person and links whose far ends the test
// plays.
#pragma once

#include "app/program.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

namespace velorn::test {

// FileLayer: what the disk is made of, a MemoryFiles or one for large files.
template <class FileLayer>
struct TestProgramOn {
    VirtualEventLoop loop;
    FileLayer files;
    ScriptedDialogs dialogs{loop};
    FakeSerialPort serial{loop};
    FakeTcpClient tcp{loop};
    FakePrinter printer;
    FakeProcesses processes;
    FakeVisualisation visualisation;
    Program program{World{loop, files, dialogs, serial, tcp, printer, processes, visualisation, folder,
                          ScreenSize{1366, 768}, Gateway{"gateway", 23, 24}}};

    static constexpr const char* folder = "c:\\velorn";

    Module1& module1 = program.module1;
    FrmTerminal& frmTerminal = program.frmTerminal;
    Settings& settings = program.settings;

    // Starts, and lets the serial port open: 1.6 s later.
    void start() {
        program.start.Form_Load();
        loop.pass(1600);
        (void)serial.take_written();
    }

    // A chunk comes in over the serial line and is worked on.
    void receive(std::string_view chunk) {
        serial.arrives(chunk);
        loop.settle();
    }

    const std::string& terminal() const { return program.frmTerminal.txtterm.Text(); }
    std::string sent() { return serial.take_written(); }
};

using TestProgram = TestProgramOn<MemoryFiles>;

} // namespace velorn::test
