#include "desktop/qt_serial_port.h"

#include "desktop/native_serial.h"
#include "desktop/parity_marks.h"
#include "desktop/text_rim.h"
#include "runtime/text.h"

#include <QSerialPort>
#include <QSerialPortInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace velorn {

namespace {

constexpr std::size_t inbox_limit = 65536;
constexpr std::int64_t sending_look_ms = 10;

QSerialPort::Parity parity_of(char letter) {
    switch (letter) {
    case 'e': return QSerialPort::EvenParity;
    case 'o': return QSerialPort::OddParity;
    case 'm': return QSerialPort::MarkParity;
    case 's': return QSerialPort::SpaceParity;
    default: return QSerialPort::NoParity;
    }
}

QSerialPort::StopBits stop_of(SerialSettings::Stop stop) {
    switch (stop) {
    case SerialSettings::Stop::one_and_a_half: return QSerialPort::OneAndHalfStop;
    case SerialSettings::Stop::two: return QSerialPort::TwoStop;
    default: return QSerialPort::OneStop;
    }
}

QSerialPort::FlowControl flow_of(Handshake handshake) {
    switch (handshake) {
    case Handshake::xon_xoff: return QSerialPort::SoftwareControl;
    case Handshake::rts:
    case Handshake::rts_xon_xoff: return QSerialPort::HardwareControl;
    default: return QSerialPort::NoFlowControl;
    }
}

bool set(QSerialPort& port, const SerialSettings& settings) {
    return port.setBaudRate(settings.baud) &&
           port.setDataBits(static_cast<QSerialPort::DataBits>(settings.data_bits)) &&
           port.setParity(parity_of(settings.parity)) && port.setStopBits(stop_of(settings.stop));
}

std::string port_name(int com_port, const std::string& device) {
    std::string name = "COM" + std::to_string(com_port);
    if (!device.empty() && device != name) {
        name += " (" + to_cp1252_or(QString::fromStdString(device), '?') + ')';
    }
    return name;
}

Failure refusal(const QSerialPort& port, const std::string& device, const std::string& name) {
    switch (port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return failure(RunTimeError::invalid_port, name + " ist nicht vorhanden");
    case QSerialPort::PermissionError:
        // The toolkit says the same for a device that is locked and for one that isn't ours to use.
        if (!native_serial::is_permitted(device)) {
            return failure(RunTimeError::permission_denied, std::string("keine Berechtigung für "_w) + name);
        }
        [[fallthrough]];
    case QSerialPort::OpenError:
        return failure(RunTimeError::port_already_open, name + " ist durch ein anderes Programm belegt");
    default: return failure(RunTimeError::device_io, name + ": " + to_cp1252_or(port.errorString(), '?'));
    }
}

} // namespace

struct QtSerialPort::Line {
    QSerialPort port;
    std::string device;
    SerialSettings settings;
    Handshake handshake = Handshake::none;
    ParityMarks marks;
    std::string inbox;
    bool arrival_posted = false;
    bool sending_watched = false;
    bool loss_posted = false;
    std::size_t last_unsent = 0;
};

QtSerialPort::QtSerialPort(EventLoop& loop, std::function<std::string(int)> device)
    : loop_(loop), device_(std::move(device)) {}

QtSerialPort::~QtSerialPort() { close(); }

Outcome QtSerialPort::open(int com_port, const SerialSettings& settings, Handshake handshake) {
    if (line_) return failure(RunTimeError::port_already_open);
    const std::string device = device_(com_port);
    const std::string name = port_name(com_port, device);
    if (!native_serial::is_there(device)) {
        return failure(RunTimeError::invalid_port, name + " ist nicht vorhanden");
    }
    if (!can(settings)) return failure(RunTimeError::device_io, name);

    auto line = std::make_shared<Line>();
    line->device = device;
    line->settings = settings;
    line->handshake = handshake;
    QSerialPort& port = line->port;
    port.setPortName(QString::fromStdString(native_serial::resolved(device)));
    port.setReadBufferSize(static_cast<qint64>(inbox_limit));
    set(port, settings);
    port.setFlowControl(flow_of(handshake));
    if (!port.open(QIODevice::ReadWrite)) return refusal(port, device, name);

    line_ = std::move(line);
    if (!restore_native()) {
        close();
        return failure(RunTimeError::device_io, name);
    }
    port.setDataTerminalReady(true);
    QObject::connect(&port, &QSerialPort::readyRead, [this] { collect(); });
    QObject::connect(&port, &QSerialPort::errorOccurred, [this](QSerialPort::SerialPortError error) {
        if (error != QSerialPort::NoError) look_whether_gone();
    });
    return {};
}

void QtSerialPort::close() {
    if (!line_) return;
    QSerialPort& port = line_->port;
    port.disconnect();
    if (port.bytesToWrite() > 0 && !line_->loss_posted) port.flush();
    // The system would wait half a minute for a partner who doesn't take what is left.
    const bool held_back = flow_of(line_->handshake) == QSerialPort::HardwareControl &&
                           native_serial::driver_queue(port.handle()) > 0 &&
                           !port.pinoutSignals().testFlag(QSerialPort::ClearToSendSignal);
    if (held_back) port.clear(QSerialPort::Output);
    port.close();
    line_.reset();
}

bool QtSerialPort::is_there(int com_port) const { return native_serial::is_there(device_(com_port)); }

std::vector<SerialPort::There> QtSerialPort::ports_there() const {
    constexpr int highest = 255;
    std::vector<There> found;
    for (int com_port = 1; com_port <= highest; ++com_port) {
        const std::string device = device_(com_port);
        if (!native_serial::is_there(device)) continue;
        const QSerialPortInfo info(QString::fromStdString(native_serial::resolved(device)));
        QString name = info.description();
        if (name.isEmpty()) name = info.manufacturer();
        if (name.isEmpty()) name = QString::fromStdString(device);
        found.push_back({com_port, to_cp1252_or(name, '?')});
    }
    return found;
}

bool QtSerialPort::can(const SerialSettings& settings) const {
    if (settings.baud < 1 || settings.data_bits < 5 || settings.data_bits > 8) return false;
#ifdef Q_OS_WIN
    return true;
#else
    return settings.stop != SerialSettings::Stop::one_and_a_half;
#endif
}

Outcome QtSerialPort::apply(const SerialSettings& settings) {
    if (!can(settings)) return failure(RunTimeError::invalid_property);
    if (!line_ || settings == line_->settings) return {};
    if (!set(line_->port, settings)) {
        set(line_->port, line_->settings);
        restore_native();
        return failure(RunTimeError::invalid_property);
    }
    line_->settings = settings;
    if (!restore_native()) return failure(RunTimeError::invalid_property);
    return {};
}

Outcome QtSerialPort::apply(Handshake handshake) {
    if (!line_) return {};
    const Handshake before = line_->handshake;
    line_->handshake = handshake;
    if (line_->port.setFlowControl(flow_of(handshake)) && restore_native()) return {};
    line_->handshake = before;
    line_->port.setFlowControl(flow_of(before));
    restore_native();
    return failure(RunTimeError::invalid_property);
}

// The toolkit puts its own choice back with each of its settings.
bool QtSerialPort::restore_native() {
    const native_serial::Handle handle = line_->port.handle();
    if (line_->handshake == Handshake::rts_xon_xoff && !native_serial::add_xon_xoff(handle)) return false;
    return !line_->marks.replacement() ||
           native_serial::mark_parity_errors(handle, line_->marks.replacement());
}

Outcome QtSerialPort::replace_parity_errors(std::optional<char> with) {
    if (!line_) return {};
    if (!native_serial::mark_parity_errors(line_->port.handle(), with)) {
        return failure(RunTimeError::invalid_property);
    }
#ifndef Q_OS_WIN
    collect(); // by the marking under which it came
    line_->marks.set_replacement(with);
#endif
    return {};
}

void QtSerialPort::set_dtr(bool on) {
    if (line_) line_->port.setDataTerminalReady(on);
}

SerialPort::Lines QtSerialPort::lines() {
    if (!line_) return {};
    const QSerialPort::PinoutSignals pins = line_->port.pinoutSignals();
    return {pins.testFlag(QSerialPort::DataCarrierDetectSignal),
            pins.testFlag(QSerialPort::ClearToSendSignal), pins.testFlag(QSerialPort::DataSetReadySignal)};
}

void QtSerialPort::write(std::string_view bytes) {
    if (!line_ || bytes.empty()) return;
    line_->port.write(bytes.data(), static_cast<qint64>(bytes.size()));
    line_->last_unsent = unsent();
    watch_sending();
}

std::size_t QtSerialPort::unsent() const {
    if (!line_) return 0;
    return static_cast<std::size_t>(line_->port.bytesToWrite()) +
           native_serial::driver_queue(line_->port.handle());
}

void QtSerialPort::drop_unsent() {
    if (line_) line_->port.clear(QSerialPort::Output);
}

std::size_t QtSerialPort::available() const { return line_ ? line_->inbox.size() : 0; }

std::string QtSerialPort::take(std::size_t most) {
    if (!line_) return {};
    std::string oldest = line_->inbox.substr(0, most);
    line_->inbox.erase(0, oldest.size());
    collect();
    return oldest;
}

// Fills the inbox. Reading until nothing comes also tells the toolkit to listen again, which it stops when
// its own buffer is full.
void QtSerialPort::collect() {
    std::array<char, 16384> chunk;
    bool more = false;
    while (line_->inbox.size() < inbox_limit) {
        const std::size_t room = std::min(chunk.size(), inbox_limit - line_->inbox.size());
        const qint64 count = line_->port.read(chunk.data(), static_cast<qint64>(room));
        if (count <= 0) break;
        line_->marks.decode({chunk.data(), static_cast<std::size_t>(count)}, line_->inbox);
        more = true;
    }
    if (more) announce();
}

void QtSerialPort::announce() {
    if (line_->inbox.empty() || std::exchange(line_->arrival_posted, true)) return;
    post(&QtSerialPort::news_arrived);
}

void QtSerialPort::watch_sending() {
    if (std::exchange(line_->sending_watched, true)) return;
    loop_.post_at(loop_.now_ms() + sending_look_ms, [this, opening = std::weak_ptr(line_)] {
        if (!opening.expired()) news_sent();
    });
}

void QtSerialPort::look_whether_gone() {
    if (!line_ || line_->loss_posted) return;
    if (line_->port.error() != QSerialPort::ResourceError && !native_serial::is_gone(line_->port.handle()))
        return;
    line_->loss_posted = true;
    post(&QtSerialPort::news_lost);
}

void QtSerialPort::post(void (QtSerialPort::*news)()) {
    loop_.post([this, news, opening = std::weak_ptr(line_)] {
        if (!opening.expired()) (this->*news)();
    });
}

void QtSerialPort::news_arrived() {
    line_->arrival_posted = false;
    if (arrived) arrived();
}

void QtSerialPort::news_sent() {
    line_->sending_watched = false;
    const std::size_t now = unsent();
    const std::size_t before = std::exchange(line_->last_unsent, now);
    if (now > 0) watch_sending();
    if (now < before && sent) sent();
}

void QtSerialPort::news_lost() {
    close();
    if (lost) lost();
}

} // namespace velorn
