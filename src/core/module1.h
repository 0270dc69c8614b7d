// The state that windows share. Plain values with the system's own names; start values are those of a fresh
// start. What the settings files keep lives in core/settings.h.
#pragma once

#include <cstdint>
#include <string>

namespace velorn {

struct Module1 {
    std::string apppfad; // folder of the program file, without a trailing backslash

    std::int32_t globalsek = 0;  // seconds since the start, or since the window began to close
    std::int16_t dialalter = 0;  // age of the last dial attempt in ticks of 2 s, up to 1000
    std::int16_t loginalter = 0; // the same for the login

    std::string projektname;    // name of the site
    std::int16_t telindex = -1; // the selected site in the phone book, -1 for none

    bool protokollan = false;    // the site's protocol file is usable
    std::string protokollname;   // its path
    bool protokollaktiv = false; // a capture is being written to it

    bool tcpoffen = false;            // the TCP link is the active link
    bool gatewayoffen = false;        // text received over TCP is shown in the terminal
    bool istip = false;               // the selected entry's number is a host or an address
    bool modem2versucht = false;      // the second gateway modem has been tried
    std::int16_t verbindungticks = 0; // seconds of the running attempt
    int anrufnr =
        0; // counts the attempts to reach a site; who waits for one looks whether it is still that one

    bool trace = false;   // the byte trace into txttest10 is on
    std::string letzteip; // the chunk last received over TCP

    // Waits that the receive path serves.
    bool warteok = false;
    bool wartelf = false;
    bool warteantwort = false;
    std::int16_t antwortcode = 0; // 1 "ERR", 2 "OKK", 10 "NEUV2.0"
    bool wartefortsetzung = false;
    std::int32_t dateipos = 0; // position in the file of a running transfer
    bool smsprompt = false;    // waits for the prompt "<"
    bool abbruch = false;      // a running transfer stops

    bool usernamegesehen = false;
    bool passwordgesehen = false;
    bool usergesendet = false;
    bool passgesendet = false;

    bool grafikoffen = false; // the evaluation window is shown
    bool grafikfern = false;  // the evaluation was opened by the controller's own request
    bool neuedispauf = false; // snapshots were taken that the phone book hasn't stored

    bool empfgrafick = false; // received text goes to the download window
    bool empfleeren = false;  // its text is emptied before the next chunk

    bool wiederverbinden = false; // a service panel opens its connection anew
    bool autoholen = false;       // automatic collection has a site in work
    bool dateiladen = false;      // the site's archive is not loaded yet
    bool autoverbindung = false;  // automatic collection is dialling
    bool autolog = false;         // its log is open

    std::string visdatei;         // the visualisation program of the site
    std::int16_t vislebt = 0;     // its life counter, seconds; 0: it is not running
    std::uint16_t viszaehler = 0; // number of the block last handed to it

    // What stands in boxes of the phone book's window and is needed while that is closed, too. Filled from
    // the settings at start.
    bool telnet = false;    // calls go over the gateway's modems
    std::string txtanrufer; // the name by which this PC reports to the controller
    std::string txtmodinit; // modem initialisation, without the leading "AT"
    std::string mdexport;   // standard TCP port
    bool txtprestrcheck = false;
    std::string txtprestrtext;   // dialling prefix
    bool loginan = false;        // the automatic login waits for its prompts
    std::int16_t logintakte = 0; // its ticks of 100 ms that are left
};

} // namespace velorn
