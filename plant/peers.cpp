#include "plant/peers.h"

#include "plant/source.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>

namespace velorn::plant {

namespace {

constexpr std::size_t most_ahead = 64 * 1024; // bytes that nobody has taken yet
constexpr std::uint64_t text_seed = 1;
constexpr std::uint64_t endless = std::numeric_limits<std::uint64_t>::max();

class ResettingPeer final : public Device {
  public:
    explicit ResettingPeer(std::uint64_t after) : left_(after) {}

    void connected() override {
        if (left_ == 0) leave(Ending::reset);
    }
    void receive(std::string_view bytes) override {
        if (left_ == 0) return;
        left_ -= std::min<std::uint64_t>(left_, bytes.size());
        if (left_ == 0) leave(Ending::reset);
    }

  private:
    std::uint64_t left_;
};

class HalfClosingPeer final : public Device {
  public:
    void connected() override {
        say(last_words);
        leave(Ending::half_close);
    }
    void receive(std::string_view) override {}
};

class FloodingPeer final : public Device {
  public:
    FloodingPeer(EventLoop& loop, std::uint64_t total)
        : loop_(loop), left_(total), block_(Source(text_seed, endless).next(16 * 1024)) {}
    ~FloodingPeer() override { loop_.cancel(next_); }

    void connected() override { pump(); }
    void disconnected() override { loop_.cancel(next_); }
    void receive(std::string_view) override {}

  private:
    void pump() {
        const bool room = unheard() < most_ahead;
        if (room) {
            const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left_, block_.size()));
            left_ -= size;
            say(std::string_view(block_).substr(0, size));
        }
        if (left_ > 0) next_ = loop_.post_at(loop_.now_ms() + (room ? 0 : 1), [this] { pump(); });
    }

    EventLoop& loop_;
    std::uint64_t left_;
    std::string block_;
    EventLoop::TaskId next_;
};

class DribblingPeer final : public Device {
  public:
    DribblingPeer(EventLoop& loop, std::uint64_t interval_ms)
        : loop_(loop),
          interval_ms_(static_cast<std::int64_t>(std::max<std::uint64_t>(interval_ms, 1))),
          source_(text_seed, endless) {}
    ~DribblingPeer() override { loop_.cancel(next_); }

    void connected() override { wait(); }
    void disconnected() override { loop_.cancel(next_); }
    void receive(std::string_view) override {}

  private:
    void wait() {
        next_ = loop_.post_at(loop_.now_ms() + interval_ms_, [this] {
            if (text_.empty()) text_ = source_.next(1);
            if (unheard() < most_ahead) {
                say({text_.data(), 1});
                text_.erase(0, 1);
            }
            wait();
        });
    }

    EventLoop& loop_;
    std::int64_t interval_ms_;
    Source source_;
    std::string text_;
    EventLoop::TaskId next_;
};

class SilentPeer final : public Device {
  public:
    void receive(std::string_view) override {}
};

} // namespace

std::unique_ptr<Device> make_device(EventLoop& loop, const Peer& peer) {
    switch (peer.kind) {
    case Peer::Kind::resets: return std::make_unique<ResettingPeer>(peer.amount);
    case Peer::Kind::half_closes: return std::make_unique<HalfClosingPeer>();
    case Peer::Kind::floods: return std::make_unique<FloodingPeer>(loop, peer.amount);
    case Peer::Kind::dribbles: return std::make_unique<DribblingPeer>(loop, peer.amount);
    case Peer::Kind::silent: return std::make_unique<SilentPeer>();
    case Peer::Kind::refuses:
    case Peer::Kind::never_answers: break;
    }
    return nullptr;
}

Listening listening_of(const Peer& peer) {
    switch (peer.kind) {
    case Peer::Kind::refuses: return Listening::refuses;
    case Peer::Kind::never_answers: return Listening::never_answers;
    default: return Listening::yes;
    }
}

} // namespace velorn::plant
