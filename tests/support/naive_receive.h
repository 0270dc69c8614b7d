// The receive path once more, plain and slow: the window is a std::string that is searched from its first
// character for every keyword in every pass. Shares nothing with src/terminal, so that the two can be held
// against each other.
#pragma once

#include "runtime/controls.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velorn::test {

// What the receive path reads and writes, but for its long texts.
struct ReceiveState {
    bool warteok = false, wartelf = false, warteantwort = false, wartefortsetzung = false;
    bool smsprompt = false, usernamegesehen = false, passwordgesehen = false;
    bool protokollan = false, protokollaktiv = false, autoverbindung = false, autolog = false;
    bool empfgrafick = false, empfleeren = false, trace = false, tcpoffen = false, gatewayoffen = false;
    bool fernbedaktiv = false, fbpause = false, visaktiv = false, termecho = true, uhrzeitan = false;
    bool cursorinv = false, batempfang = false;
    bool terminal_shown = true, picture_shown = false, capture_shown = false, interruption_shown = false;
    bool timer3 = false, timer4 = false, timer7 = false, timer8 = false, timer24 = false;
    std::int16_t antwortcode = 0, loginalter = 0, dialalter = 0, logdatei = 0, fbzustand = 0, zeile = 1,
                 spalte = 1, protbytes = 0, tastenrest = 0;
    std::int32_t dateipos = 0;
    Colour picture3 = colour::green, picture4 = colour::green, picture7 = colour::green,
           picture8 = colour::green;
    std::string projektname, projekt_panel, letzteip, txttovis;
};

class NaiveReceive {
  public:
    ReceiveState state;
    std::string window;     // txtvergl
    std::string terminal;   // txtterm
    std::string trace;      // txttest10
    std::string collection; // the file at autoholpfad
    std::string tcp_sent;
    std::vector<std::string> news; // as the rig tells it

    std::string anrufer = "Benutzer";
    std::string clock = "00:00:00"; // hh:mm:ss
    bool port_open = true;
    int tcp_state = 0;

    void serial(std::string chunk);
    void tcp(std::string chunk);

  private:
    void both(std::string& empfangen, bool over_tcp);
    void empfangauswerten(std::string& empfangen);
    void terminalausgabe(std::string text);
    void sendetext(const std::string& text);
    void mark(const std::string& text) { news.push_back("mark:" + text); }
    void remote_control_ended();
    void mirrored(bool cursorinv);
    void head(const std::string& keyword, std::size_t name_at, std::size_t above);
    void dots(std::size_t blanks, std::size_t count, std::size_t above);
    std::size_t find(const std::string& keyword) const; // one-based, 0 for none
};

} // namespace velorn::test
