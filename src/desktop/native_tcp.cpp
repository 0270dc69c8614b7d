#include "desktop/native_tcp.h"

#ifdef __linux__

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velorn::native_tcp {

void Watch::hold(std::intptr_t handle) {
    release();
    held_ = fcntl(static_cast<int>(handle), F_DUPFD_CLOEXEC, 0);
}

void Watch::release() {
    if (held_ >= 0) ::close(held_);
    held_ = -1;
}

bool Watch::was_reset() const {
    tcp_info info{};
    socklen_t size = sizeof info;
    if (held_ < 0 || getsockopt(held_, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) return false;
    return info.tcpi_state == TCP_CLOSE; // a partner who has ended in order leaves it waiting for our own end
}

} // namespace velorn::native_tcp

#else

namespace velorn::native_tcp {

void Watch::hold(std::intptr_t) {}
void Watch::release() {}
bool Watch::was_reset() const { return false; }

} // namespace velorn::native_tcp

#endif
