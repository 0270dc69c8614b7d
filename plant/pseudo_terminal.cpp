#include "plant/pseudo_terminal.h"

#include "runtime/text.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace velorn::plant {

namespace {

namespace fs = std::filesystem;

Failure system_failure(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS: return failure(RunTimeError::permission_denied);
    case ENOENT:
    case ENOTDIR: return failure(RunTimeError::path_not_found);
    case ENOSPC: return failure(RunTimeError::disk_full);
    default: return failure(RunTimeError::device_io);
    }
}

} // namespace

Result<std::unique_ptr<PseudoTerminal>> PseudoTerminal::open(PollEventLoop& loop, std::string link) {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (master < 0) return system_failure(errno);
    std::array<char, 128> name{};
    if (::grantpt(master) != 0 || ::unlockpt(master) != 0 ||
        ::ptsname_r(master, name.data(), name.size()) != 0) {
        const int error = errno;
        ::close(master);
        return system_failure(error);
    }
    const int slave = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw{};
    if (slave < 0 || ::tcgetattr(slave, &raw) != 0) {
        const int error = errno;
        if (slave >= 0) ::close(slave);
        ::close(master);
        return system_failure(error);
    }
    ::cfmakeraw(&raw);
    ::tcsetattr(slave, TCSANOW, &raw);

    std::unique_ptr<PseudoTerminal> terminal(new PseudoTerminal(loop, master, slave, name.data()));
    if (!link.empty()) {
        if (const Outcome linked = terminal->make_link(link); !linked) return linked.failure();
    }
    return terminal;
}

PseudoTerminal::PseudoTerminal(PollEventLoop& loop, int master, int slave, std::string device)
    : loop_(loop), master_(master), slave_(slave), device_(std::move(device)), unlock_(loop, 1000) {
    // A program that took the port for itself alone and crashed would lock out its successor, since we keep
    // it open.
    unlock_.Tick = [this] { ::ioctl(slave_, TIOCNXCL); };
    unlock_.Enabled = true;
    loop_.watch(master_, POLLIN, [this](short events) { ready(events); });
}

PseudoTerminal::~PseudoTerminal() {
    std::error_code error;
    if (!link_.empty() && fs::read_symlink(link_, error) == device_) fs::remove(link_, error);
    loop_.unwatch(master_);
    ::close(slave_);
    ::close(master_);
}

Outcome PseudoTerminal::make_link(const std::string& link) {
    std::error_code error;
    const fs::file_status there = fs::symlink_status(link, error);
    if (fs::exists(there)) {
        if (!fs::is_symlink(there)) {
            return failure(RunTimeError::path_file_access, "gibt es schon und ist keine Verknüpfung"_w);
        }
        fs::remove(link, error);
    }
    fs::create_symlink(device_, link, error);
    if (error) return system_failure(error.value());
    link_ = link;
    return {};
}

void PseudoTerminal::send(std::string_view bytes) {
    queue_ += bytes;
    write();
}

std::size_t PseudoTerminal::unread() const {
    int count = 0;
    return ::ioctl(slave_, FIONREAD, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

void PseudoTerminal::pause(bool on) {
    paused_ = on;
    look();
}

void PseudoTerminal::ready(short events) {
    if ((events & POLLOUT) != 0) write();
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) read();
}

void PseudoTerminal::read() {
    std::array<char, 4096> bytes;
    const ssize_t count = ::read(master_, bytes.data(), bytes.size());
    if (count > 0 && received) received({bytes.data(), static_cast<std::size_t>(count)});
}

void PseudoTerminal::write() {
    while (queued() > 0) {
        const ssize_t count = ::write(master_, queue_.data() + queue_start_, queued());
        if (count <= 0) break;
        queue_start_ += static_cast<std::size_t>(count);
    }
    if (queued() == 0 || queue_start_ >= full_queue) {
        queue_.erase(0, queue_start_);
        queue_start_ = 0;
    }
    look();
}

void PseudoTerminal::look() {
    const bool reads = !paused_ && queued() < full_queue;
    loop_.look_for(master_, static_cast<short>((reads ? POLLIN : 0) | (queued() > 0 ? POLLOUT : 0)));
}

} // namespace velorn::plant
