// What a program is given from outside: its loop, its files, its links, the person. Real makes in the
// desktop, scripted ones in the tests.
#pragma once

#include "core/gateway.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <string>

namespace velorn {

struct World {
    EventLoop& loop;
    Files& files;
    Dialogs& dialogs;
    SerialPort& serial;
    TcpClient& tcp;
    Printer& printer;
    Processes& processes;
    VisualisationChannel& visualisation;
    std::string program_folder; // stored form, cp1252, without a trailing separator
    ScreenSize screen;
    Gateway gateway = {};
    // Where the logs of unattended collections are written, stored form, without a trailing separator.
    std::string log_folder = "s:\\Eigene Dateien\\velorn\\Viertelstundendaten\\log";
};

} // namespace velorn
