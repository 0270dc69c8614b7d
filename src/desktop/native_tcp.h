// What the toolkit's socket leaves out: it takes a connection that was reset for one that was ended in order.
#pragma once

#include <cstdint>

namespace velorn::native_tcp {

// A second hold on a connected socket, so that its state can be asked after the toolkit has let go of it.
class Watch {
  public:
    Watch() = default;
    ~Watch() { release(); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    // handle: the toolkit's socket descriptor.
    void hold(std::intptr_t handle);
    // The connection ends only when nobody holds it any more.
    void release();

    // Whether the partner has reset the connection; false where the system doesn't tell.
    bool was_reset() const;

  private:
    int held_ = -1;
};

} // namespace velorn::native_tcp
