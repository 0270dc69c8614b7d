// The far end of a serial line: the master of a pseudo terminal, fed and emptied without blocking. Its device
// is reached under a symbolic link, as an adapter is that comes back under the same name.
#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace velorn::test {

class PseudoTerminal {
  public:
    explicit PseudoTerminal(std::filesystem::path link = {}) : link_(std::move(link)) { plug_in(); }
    ~PseudoTerminal() { pull_out(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    void plug_in() {
        master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) std::abort();
        termios raw{};
        ::tcgetattr(master_, &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(master_, TCSANOW, &raw);
        name_ = ::ptsname(master_);
        if (link_.empty()) return;
        std::filesystem::remove(link_);
        std::filesystem::create_symlink(name_, link_);
    }
    void pull_out() {
        if (master_ >= 0) ::close(master_);
        master_ = -1;
        // The system gives the device's number to the next who asks, but the adapter's name has gone.
        std::error_code gone_already;
        if (!link_.empty()) std::filesystem::remove(link_, gone_already);
    }

    const std::string& name() const { return name_; }
    termios state() const {
        termios now{};
        ::tcgetattr(master_, &now);
        return now;
    }

    // As many of the bytes as the line takes now.
    std::size_t push(std::string_view bytes) {
        const ssize_t count = ::write(master_, bytes.data(), bytes.size());
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    // What has come, up to 64 KiB.
    std::string pull() {
        std::string bytes(65536, '\0');
        const ssize_t count = ::read(master_, bytes.data(), bytes.size());
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return bytes;
    }

  private:
    std::filesystem::path link_;
    int master_ = -1;
    std::string name_;
};

} // namespace velorn::test
