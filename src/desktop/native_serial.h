// What the toolkit's serial port leaves out, done on the system's own handle.
#pragma once

#include <QSerialPort>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace velorn::native_serial {

using Handle = decltype(std::declval<const QSerialPort&>().handle());

// Whether a device of this name (UTF-8, a path or COMn) is there.
bool is_there(const std::string& device);

// Whether the person may read and write the device; true where the system has no such rights.
bool is_permitted(const std::string& device);

// The name that the toolkit opens: symbolic links lead to their device, so that its lock bears one name.
std::string resolved(const std::string& device);

// XON/XOFF both ways in addition to what is set. False: refused.
bool add_xon_xoff(Handle handle);

// Parity errors come marked (POSIX; ParityMarks reads them) or replaced (Windows); nothing switches that off.
bool mark_parity_errors(Handle handle, std::optional<char> replacement);

// Bytes that the driver has not sent yet, 0 where the system doesn't tell.
std::size_t driver_queue(Handle handle);

// Whether the far side of the handle has gone: adapter pulled out, pseudo terminal closed.
bool is_gone(Handle handle);

} // namespace velorn::native_serial
