#include "phonebook/dialling.h"

#include "core/dial_boxes.h"
#include "phonebook/address.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

namespace velorn {

namespace {

constexpr std::int16_t soon_closed = 295; // of the window's countdown
constexpr int login_port = 23;
constexpr std::int32_t seconds_of_a_start = 10;
constexpr std::string_view modem1 = "tarnwerk Modem1";
constexpr std::string_view modem2 = "tarnwerk Modem2";
constexpr std::string_view attempt = "Verbindungsversuch mit: ";

// Anywhere in the remark, ignoring case; each that is found overrides those before it.
constexpr std::string_view speeds[] = {"57600", "19200", "9600", "4800", "2400", "1200"};

struct PortKeyword {
    std::string_view keyword;
    int port;
};
constexpr PortKeyword port_keywords[] = {
    {"port23", 23},     {"port 23", 23},     {"port1100", 1100},    {"port 1100", 1100},
    {"port2001", 2001}, {"port 2001", 2001}, {"port 10100", 10100}, {"port10100", 10100},
};

} // namespace

Result<int> port_of(std::string_view bemerkung, std::string_view standard) {
    constexpr double largest = 65535;
    std::optional<int> port;
    for (const PortKeyword& row : port_keywords) {
        if (contains_ignoring_case(bemerkung, row.keyword)) port = row.port;
    }
    if (port) return *port;
    const std::optional<double> number = number_of(standard);
    if (!number || round_to_even(*number) < 1 || round_to_even(*number) > largest)
        return failure(RunTimeError::invalid_property, "Standard-Port-NR. IP-Verbindungen");
    return static_cast<int>(round_to_even(*number));
}

Dialling::Dialling(const EventLoop& loop, Dialogs& dialogs, Events& events, const Gateway& gateway,
                   Module1& module1, Settings& settings, const Telefonbuch& book, FrmTerminal& frmTerminal,
                   FrmTelefon& frmtelefon, MSComm& MSComm1, Winsock& Winsock1, Output& output,
                   TcpLink& tcp_link, ProtocolFile& protocol_file, PhonebookWindow& window)
    : loop_(loop),
      dialogs_(dialogs),
      gateway_(gateway),
      module1_(module1),
      settings_(settings),
      book_(book),
      frmTerminal_(frmTerminal),
      frmtelefon_(frmtelefon),
      MSComm1_(MSComm1),
      Winsock1_(Winsock1),
      output_(output),
      tcp_link_(tcp_link),
      protocol_file_(protocol_file),
      window_(window) {
    frmtelefon_.Command1.Click = [this] { Command1_Click(); };
    frmtelefon_.Timer4.Tick = [this] { Timer4_Tick(); };
    frmtelefon_.Timer14.Tick = [this] {
        frmtelefon_.Timer14.Enabled = false;
        DIALTELNET();
    };
    frmtelefon_.Timer15.Tick = [this] {
        frmtelefon_.Timer15.Enabled = false;
        ZWEITESMODEM();
    };
    frmtelefon_.Timer20.Tick = [this] { Timer20_Tick(); };
    events.gateway_ready.connect([this] { frmtelefon_.Timer14.Enabled = true; });
    events.second_gateway_modem.connect([this] { frmtelefon_.Timer15.Enabled = true; });
    events.attempt_given_up.connect([this] { end_former_attempt(); });
    events.direct_attempt_over.connect([this] { frmtelefon_.Timer4.Enabled = false; });
}

// What is selected while an attempt goes on is another matter: its line leads to the one that was called.
const PhoneEntry& Dialling::entry() const { return book_[called_ < 0 ? module1_.telindex : called_]; }

void Dialling::work_out_istip() { module1_.istip = is_address(entry().nummer.text()); }

void Dialling::Command1_Click() {
    frmtelefon_.countdown = soon_closed;
    module1_.gatewayoffen = false;
    module1_.tcpoffen = false;
    end_former_attempt();
    if (module1_.telindex < 0) {
        dialogs_.message_box(error_text(RunTimeError::subscript_out_of_range), 48);
        return;
    }
    called_ = module1_.telindex;
    work_out_istip();
    if (over_gateway(module1_)) {
        module1_.modem2versucht = false;
        reach_gateway({gateway_.port1, modem1});
        return;
    }
    set_speed(entry().bemerkung.text());
    work_out_istip();
    login_wanted_ = false;
    if (!module1_.istip)
        dial_with_modem();
    else if (!connect_directly())
        return;
    name_site();
    if (login_wanted_) {
        module1_.loginan = true;
        module1_.logintakte = login_ticks;
        frmtelefon_.Timer20.Enabled = true;
    } else {
        module1_.usernamegesehen = true;
        module1_.passwordgesehen = true;
    }
    close_window();
}

// What the attempt before has left to do would be done to this one.
void Dialling::end_former_attempt() {
    for (Timer* timer :
         {&frmtelefon_.Timer4, &frmtelefon_.Timer14, &frmtelefon_.Timer15, &frmtelefon_.Timer20,
          &frmTerminal_.Timer3, &frmTerminal_.Timer4, &frmTerminal_.Timer20, &frmTerminal_.Timer23,
          &frmTerminal_.Timer24, &frmTerminal_.Timer31})
        timer->Enabled = false;
    module1_.loginan = false;
}

// Nobody is there to answer a box while a collection runs.
void Dialling::tell(std::string_view text) {
    if (module1_.autoholen)
        write_terminal(frmTerminal_, "\r\n" + std::string(text));
    else
        dialogs_.message_box(text, 48);
}

// Kept: the speed stays changed after the call, and it is set on the TCP route as well.
void Dialling::set_speed(std::string_view bemerkung) {
    for (const std::string_view speed : speeds) {
        if (!contains_ignoring_case(bemerkung, speed)) continue;
        const std::string settings = MSComm1_.Settings();
        if (const std::size_t comma = settings.find(','); comma != std::string::npos) {
            // A device that can't do it keeps what it has, and the panel shows that.
            (void)MSComm1_.set_Settings(std::string(speed) + settings.substr(comma));
        }
        frmTerminal_.sbrStatus.Settings.Text =
            "Einstellungen: Com" + std::to_string(MSComm1_.CommPort()) + "  " + MSComm1_.Settings();
    }
}

// ---- the direct route ----

// False: there is no port to connect to, and it was told.
bool Dialling::connect_directly() {
    const std::string nummer = entry().nummer.text();
    const Result<int> port = port_of(entry().bemerkung.text(), module1_.mdexport);
    if (!port) {
        Winsock1_.Close(); // nobody would hear what is still connected
        tell(port.failure().text);
        return false;
    }
    enter_protocol(std::string(attempt) + nummer + ' ');
    write_terminal(frmTerminal_, "\r\n" + std::string(attempt) + nummer);
    login_wanted_ = settings_.loginauto.number() != 0 && *port == login_port;
    if (login_wanted_) {
        module1_.loginalter = 0;
        module1_.usernamegesehen = false;
        module1_.passwordgesehen = false;
        module1_.usergesendet = false;
        module1_.passgesendet = false;
    }
    tcp_link_.begin_attempt(nummer, *port);
    frmtelefon_.Timer4.Enabled = true;
    return true;
}

void Dialling::Timer4_Tick() {
    ++module1_.verbindungticks;
    write_terminal(frmTerminal_, ".");
    if (module1_.verbindungticks < seconds_to_connect) return;
    Winsock1_.Close();
    write_terminal(frmTerminal_, "\r\nVersuch fehlgeschlagen");
    frmtelefon_.Timer4.Enabled = false;
}

void Dialling::Timer20_Tick() {
    --module1_.logintakte;
    // Prompts come over either line, and the answers are for this one alone.
    if (module1_.loginan && module1_.tcpoffen) {
        if (module1_.usernamegesehen && !module1_.usergesendet) {
            output_.sendetext(settings_.loginuser.text() + '\r');
            module1_.usergesendet = true;
        } else if (module1_.passwordgesehen && !module1_.passgesendet) {
            output_.send_secret(settings_.loginpass.text() + '\r');
            module1_.passgesendet = true;
        } else if (module1_.usergesendet && module1_.passgesendet) {
            // A collection reads its data over the same line.
            if (!module1_.autoholen) frmTerminal_.Timer4.Enabled = true;
            module1_.loginan = false;
            frmtelefon_.Timer20.Enabled = false;
        }
    }
    if (module1_.logintakte >= 1) return;
    module1_.logintakte = 0;
    module1_.loginan = false;
    if (module1_.globalsek > seconds_of_a_start) {
        write_terminal(frmTerminal_, "keine User/Password Abfrage\r\n");
    }
    frmtelefon_.Timer20.Enabled = false;
}

// ---- the modem's route ----

void Dialling::dial_with_modem() {
    Winsock1_.Close(); // nobody would hear what is still connected, nor end it
    ++module1_.anrufnr;
    const std::string number =
        (module1_.txtprestrcheck ? module1_.txtprestrtext : "") + entry().nummer.text();
    output_.sendetext("atd" + number + '\r');
    enter_protocol("Anwahl: atd" + number + ' ');
}

// ---- the gateway's route ----

void Dialling::reach_gateway(const Endpoint& modem) {
    Winsock1_.Close();
    module1_.tcpoffen = false;
    module1_.gatewayoffen = false;
    if (module1_.telindex < 0) return;
    if (gateway_.address.empty()) {
        tell("In velorn.ini steht keine Adresse des Gateways ([Gateway] adresse=)");
        return;
    }
    enter_protocol(std::string(attempt) + std::string(modem.label) + ' ');
    write_terminal(frmTerminal_, "\r\n" + std::string(attempt) + std::string(modem.label) + ' ');
    tcp_link_.begin_attempt(gateway_.address, modem.port);
    frmTerminal_.Timer23.Enabled = true;
    close_window();
}

void Dialling::ZWEITESMODEM() { reach_gateway({gateway_.port2, modem2}); }

void Dialling::DIALTELNET() {
    // The gateway may have gone meanwhile; the number would be dialled on the serial line.
    if (module1_.telindex < 0 || !module1_.tcpoffen) return;
    // Kept: the prefix is never used through the gateway, and the setting stays off afterwards.
    frmtelefon_.txtprestrcheck.Value = false;
    module1_.txtprestrcheck = false;
    settings_.vorwahlan = std::int16_t{0};
    write_terminal(frmTerminal_,
                   "\r\nModemanwahl: (Bitte auf CONNECT warten, ca. 30s)\r\n"
                   "Um die Fernbedienung später zu beenden, bitte blauen Button --durchgestrichenes FB-- "
                   "betätigen!\r\n"_w);
    const std::string nummer = entry().nummer.text();
    output_.sendetext("atd" + nummer + '\r');
    enter_protocol("Anwahl: atd" + nummer + ' ');
    name_site();
    module1_.verbindungticks = 0;
    frmTerminal_.Timer24.Enabled = true;
    close_window();
}

// ---- what all routes share ----

void Dialling::enter_protocol(std::string_view what) {
    if (!module1_.protokollan) return;
    protocol_file_.append("\r\n\r\n" + date_and_time_text(loop_.local_time()) + "  " + std::string(what));
}

void Dialling::name_site() {
    module1_.projektname = entry().name.text();
    frmTerminal_.sbrStatus.projekt.Text = std::string("angewählt: "_w) + module1_.projektname;
    frmTerminal_.txtsnapshot.set_Text(entry().aufnahme.text());
    module1_.dialalter = 0;
}

void Dialling::close_window() {
    if (!module1_.autoholen) window_.close(PhonebookWindow::Closing::plain);
}

} // namespace velorn
