#include "core/wait_counter.h"

namespace velorn {

WaitCounter::WaitCounter(EventLoop& loop, FrmTerminal& frmTerminal) : loop_(loop), frmTerminal_(frmTerminal) {
    frmTerminal_.Timer5.Tick = [this] { Timer5_Tick(); };
}

bool WaitCounter::warte(int n) {
    return warte(n, [] { return false; });
}

bool WaitCounter::warte(int n, const EventLoop::Condition& leave) {
    frmTerminal_.wartetakte = static_cast<std::int16_t>(n);
    frmTerminal_.Timer5.Enabled = true;
    return loop_.wait_until([&] { return frmTerminal_.wartetakte <= 0 || leave(); });
}

void WaitCounter::Timer5_Tick() {
    --frmTerminal_.wartetakte;
    if (frmTerminal_.wartetakte < 1) frmTerminal_.Timer5.Enabled = false;
}

} // namespace velorn
