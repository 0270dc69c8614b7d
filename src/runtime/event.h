// News goes up: a lower floor raises a named event, an upper one listens. Listeners are called in the order
// in which they were connected, within the raise.
#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace velorn {

template <class... Args>
class Event {
  public:
    using Listener = std::function<void(Args...)>;

    void connect(Listener listener) { listeners_.push_back(std::move(listener)); }

    void operator()(Args... args) const {
        for (const Listener& listener : listeners_) listener(args...);
    }

  private:
    std::vector<Listener> listeners_;
};

} // namespace velorn
