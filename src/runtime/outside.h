// The outside world in small pieces: what the machine and the person can do for the program. Real makes live
// with the toolkit, scripted ones with the tests. Everything here is called from the one thread; what arrives
// is announced through the callbacks, from within the event loop and never from within a call of ours.
#pragma once

#include "runtime/controls.h"
#include "runtime/failure.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn {

class Canvas;

// ---- serial port ----

struct SerialSettings {
    int baud = 9600;
    char parity = 'n'; // e m n o s
    int data_bits = 8; // 4 to 8
    enum class Stop { one, one_and_a_half, two } stop = Stop::one;
    bool operator==(const SerialSettings&) const = default;
};

enum class Handshake { none = 0, xon_xoff = 1, rts = 2, rts_xon_xoff = 3 };

class SerialPort {
  public:
    virtual ~SerialPort() = default;

    // Opens the device of a port number 1 to 255. Errors, with the reason in the text: 8002 not there, 8005
    // in use, 70 no permission, 57 otherwise.
    virtual Outcome open(int com_port, const SerialSettings& settings, Handshake handshake) = 0;
    virtual void close() = 0;
    virtual bool is_open() const = 0;

    // Whether the device of a port number is there at this moment.
    virtual bool is_there(int com_port) const = 0;

    // The ports that are there at this moment, by rising number, each with the name that the system has for
    // its adapter (cp1252, may be empty).
    struct There {
        int com_port = 0;
        std::string adapter;
    };
    virtual std::vector<There> ports_there() const = 0;

    // What this system can do at all; asked before settings are accepted, open or not.
    virtual bool can(const SerialSettings& settings) const = 0;

    // On an open port. Error 380 for what the device refuses.
    virtual Outcome apply(const SerialSettings& settings) = 0;
    virtual Outcome apply(Handshake handshake) = 0;

    // The character that takes the place of one with a parity error; nothing switches replacing off.
    virtual Outcome replace_parity_errors(std::optional<char> with) = 0;

    virtual void set_dtr(bool on) = 0;
    struct Lines {
        bool carrier = false;        // CD
        bool clear_to_send = false;  // CTS
        bool data_set_ready = false; // DSR
    };
    virtual Lines lines() = 0;

    virtual void write(std::string_view bytes) = 0; // queued, never blocks; lost when closed
    // Bytes that have not yet left the machine, the driver's queue included where the system tells it.
    virtual std::size_t unsent() const = 0;
    virtual void drop_unsent() = 0;

    virtual std::size_t available() const = 0;      // received and not yet taken
    virtual std::string take(std::size_t most) = 0; // the oldest, up to `most`

    std::function<void()> arrived; // something came in
    std::function<void()> sent;    // unsent() has become smaller
    std::function<void()> lost;    // the open device has gone; the port is closed
};

// ---- TCP ----

// State numbers as the socket control shows them.
enum class TcpState {
    closed = 0,
    open = 1,
    listening = 2,
    pending = 3,
    resolving = 4,
    resolved = 5,
    connecting = 6,
    connected = 7,
    closing = 8, // the partner has ended
    error = 9,
};

class TcpClient {
  public:
    virtual ~TcpClient() = default;

    virtual void connect(std::string_view host, int port) = 0;
    virtual void close() = 0;
    virtual TcpState state() const = 0;
    virtual void write(std::string_view bytes) = 0;
    virtual std::string take(std::size_t most) = 0;

    std::function<void()> connected;
    std::function<void()> arrived;
    // The number of the platform (10061 connection refused, 10060 time-out, ...) and its text.
    std::function<void(int number, const std::string& description)> failed;
};

// ---- the person ----

enum class Answer { ok = 1, cancel = 2, abort = 3, retry = 4, ignore = 5, yes = 6, no = 7 };

struct FileQuestion {
    std::string title;
    std::string filter; // "LOG-Dateien (*.LOG)|*.log|Alle Dateien (*.*)|*.*"
    std::string folder;
    std::string name;
    bool saving = false;
};

struct FontChoice {
    std::string name;  // cp1252
    double points = 0; // above 0
    bool operator==(const FontChoice&) const = default;
};

// Boxes and dialogs. Each call opens one and turns the event loop until it is answered; reception goes on
// behind it. When the program ends meanwhile, the answer is that of cancelling.
class Dialogs {
  public:
    virtual ~Dialogs() = default;

    // `code` holds the platform's button number (0 OK, 1 OK/Cancel, 2 Abort/Retry/Ignore, 3 Yes/No/Cancel, 4
    // Yes/No, 5 Retry/Cancel) plus its icon number (16 stop, 32 question, 48 exclamation, 64 information).
    virtual Answer message_box(std::string_view text, int code, std::string_view title = "Velorn") = 0;

    // The same where perhaps nobody is there: after so many seconds it answers itself as if it were
    // cancelled, an OK box with OK.
    virtual Answer message_box_for(int seconds, std::string_view text, int code) {
        (void)seconds;
        return message_box(text, code);
    }

    // Nothing when cancelled.
    virtual std::optional<std::string> input_box(std::string_view prompt, std::string_view title,
                                                 std::string_view proposal) = 0;

    // A stored path; error 32755 when cancelled.
    virtual Result<std::string> choose_file(const FileQuestion& question) = 0;

    // The font that the person chose; error 32755 when cancelled. A fixed-pitch one is offered.
    virtual Result<FontChoice> choose_font(const FontChoice& proposal) = 0;

    // The colour that the person chose; error 32755 when cancelled.
    virtual Result<Colour> choose_colour(Colour proposal) = 0;
};

// ---- printer ----

class Printer {
  public:
    virtual ~Printer() = default;

    // Shows the printer dialog, which also prints to a PDF file, and prints the text in a fixed-pitch font
    // over as many pages as it takes. Error 32755 when cancelled; 57 when the device fails.
    virtual Outcome print_text(std::string_view text, std::string_view title) = 0;

    // The same dialog, then one page that `draw` paints: called once, within this call, and not at all when
    // nothing can be printed. The canvas counts in twips (1/1440 inch) from the paper's top left corner, not
    // from that of the part that can be printed on; portrait A4 (11906 x 16838) unless the person chooses
    // otherwise. Lines are thin ones, whatever the device; nothing is inverted on paper. Errors as above, and
    // 75 when the file to print into can't be written.
    virtual Outcome print_page(std::string_view title, const std::function<void(Canvas&)>& draw) = 0;
};

// ---- other programs ----

class Processes {
  public:
    virtual ~Processes() = default;

    // Starts a program by its stored path, in its own folder, and lets go of it. Errors 53 not there, 70 not
    // allowed, 75 when it can't be run.
    virtual Outcome start(std::string_view path) = 0;
};

// Two texts shared with a visualisation program of the same user, one each way. Each is one value, not a
// stream: a new text takes the place of the one before, and who comes later sees the present one.
class VisualisationChannel {
  public:
    virtual ~VisualisationChannel() = default;

    // Can be reached from now on; doing it again does nothing. Error 57 with the reason in the text.
    virtual Outcome open() = 0;

    // The text for the visualisation, cp1252. Before open() it is only kept.
    virtual void set_text(std::string_view text) = 0;

    // The visualisation has set its text, cp1252; told also when it is the same as before.
    std::function<void(const std::string& text)> arrived;
};

class Clipboard {
  public:
    virtual ~Clipboard() = default;
    virtual void set_text(std::string_view text) = 0;
    virtual std::string text() const = 0;
};

// The size of the screen that the main window opens on, logical pixels.
struct ScreenSize {
    int width = 0;
    int height = 0;
};

} // namespace velorn
