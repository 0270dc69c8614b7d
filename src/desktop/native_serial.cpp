#include "desktop/native_serial.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <QSerialPortInfo>

#include <windows.h>
#else
#include <cstdlib>
#include <memory>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#endif

namespace velorn::native_serial {

#ifdef Q_OS_WIN

bool is_there(const std::string& device) { return !QSerialPortInfo(QString::fromStdString(device)).isNull(); }

bool is_permitted(const std::string&) { return true; }

std::string resolved(const std::string& device) { return device; }

bool add_xon_xoff(Handle handle) {
    DCB state{};
    state.DCBlength = sizeof state;
    if (!GetCommState(handle, &state)) return false;
    state.fOutX = TRUE;
    state.fInX = TRUE;
    return SetCommState(handle, &state) != FALSE;
}

bool mark_parity_errors(Handle handle, std::optional<char> replacement) {
    DCB state{};
    state.DCBlength = sizeof state;
    if (!GetCommState(handle, &state)) return false;
    state.fParity = replacement ? TRUE : FALSE;
    state.fErrorChar = replacement ? TRUE : FALSE;
    state.ErrorChar = replacement.value_or('\0');
    return SetCommState(handle, &state) != FALSE;
}

std::size_t driver_queue(Handle handle) {
    COMSTAT status{};
    DWORD errors = 0;
    return ClearCommError(handle, &errors, &status) ? status.cbOutQue : 0;
}

bool is_gone(Handle handle) {
    DCB state{};
    state.DCBlength = sizeof state;
    return !GetCommState(handle, &state);
}

#else

bool is_there(const std::string& device) { return !device.empty() && access(device.c_str(), F_OK) == 0; }

bool is_permitted(const std::string& device) { return access(device.c_str(), R_OK | W_OK) == 0; }

std::string resolved(const std::string& device) {
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(device.c_str(), nullptr), &std::free);
    return path ? std::string(path.get()) : device;
}

bool add_xon_xoff(Handle handle) {
    termios state{};
    if (tcgetattr(handle, &state) != 0) return false;
    state.c_iflag |= IXON | IXOFF;
    return tcsetattr(handle, TCSANOW, &state) == 0;
}

bool mark_parity_errors(Handle handle, std::optional<char> replacement) {
    termios state{};
    if (tcgetattr(handle, &state) != 0) return false;
    if (replacement) {
        state.c_iflag |= INPCK | PARMRK;
        state.c_iflag &= ~static_cast<tcflag_t>(IGNPAR | ISTRIP);
    } else {
        state.c_iflag &= ~static_cast<tcflag_t>(INPCK | PARMRK);
    }
    return tcsetattr(handle, TCSANOW, &state) == 0;
}

std::size_t driver_queue(Handle handle) {
    int count = 0;
    return ioctl(handle, TIOCOUTQ, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool is_gone(Handle handle) {
    termios state{};
    return tcgetattr(handle, &state) != 0;
}

#endif

} // namespace velorn::native_serial
