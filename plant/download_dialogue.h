// The controller's side of a download of quarter-hour values: initialisation, time range, packets, each frame
// answered by the PC with "OK" or "ER". Bytes in, bytes out.
//
// It is liberal with what it hears: answers and digits may come split or joined, blanks and line ends don't
// count, what comes while it prepares a frame is passed over. It never waits for ever: after 30 s without a
// byte it gives up, which begin once a slow line has carried the frame, and so it does when a frame was
// refused 20 times or a time range 10 times in a row. Backspace (8) ends it at any time.
//
// Data sets go from the first day's beginning to the last day's end or to the newest that was complete when
// the range was accepted.
#pragma once

#include "plant/download_faults.h"
#include "plant/download_frames.h"
#include "runtime/event_loop.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velorn::plant {

class DownloadDialogue {
  public:
    enum class Kind {
        quarters,   // DUE3: one data set a packet
        four_hours, // DUE4: sixteen
        newest,     // DUE5: the last 96, one a packet, without initialisation and range
    };
    // In ms.
    static constexpr std::int64_t before_first_frame = 1500; // the PC makes ready for 0.8 s
    static constexpr std::int64_t before_frame = 10;
    static constexpr std::int64_t before_first_packet = 500; // so that D6 arrives alone
    static constexpr std::int64_t gives_up_after = 30'000;
    static constexpr std::int64_t range_is_complete_after = 200;
    static constexpr std::int64_t range_is_broken_after = 3000;
    static constexpr std::int64_t answer_is_broken_after = 2000;
    static constexpr int most_refusals = 20;
    static constexpr int most_wrong_ranges = 10;

    explicit DownloadDialogue(EventLoop& loop) : loop_(loop), chance_(DownloadFaults{}.seed) {}
    ~DownloadDialogue() { loop_.cancel(next_); }
    DownloadDialogue(const DownloadDialogue&) = delete;
    DownloadDialogue& operator=(const DownloadDialogue&) = delete;

    std::function<void(std::string_view)> send;
    std::function<std::size_t()> waiting;  // bytes that the line hasn't carried yet
    std::function<void(bool by_pc)> ended; // by backspace or by itself; not by stop()
    std::function<void()> hung_up;         // by a fault; it is over then
    // A download is over, whatever ended it: how many data sets the time range asked for, 0 if none came, and
    // how many of them the PC said "OK" to.
    std::function<void(long ordered, long acknowledged)> over;
    // The PC said "OK" to a packet that holds the data sets from `first` to `last`; once for each packet.
    std::function<void(const Quarter& first, const Quarter& last)> acknowledged;

    // The kind that a command orders, its case doesn't count.
    static std::optional<Kind> kind_of(std::string_view command);

    // From now on; the chance begins anew.
    void set_faults(const DownloadFaults& faults);

    void begin(Kind kind, const Recording& site);
    void stop(); // without a word
    bool is_on() const { return state_ != State::off; }

    void receive(std::string_view bytes);

  private:
    enum class State { off, preparing, answer, range, silent, complete };
    enum class Step { initialisation, ask_again, accepted, packet, complete };

    void take(char byte);
    void take_answer(char byte);
    void take_digit(char byte);
    void take_range();
    void refuse_range();
    void confirmed();
    void refused();
    void go_on(Step step, std::int64_t after_ms = before_frame);
    void again();
    std::string frame();
    void present();
    void transmit(std::string_view bytes, int pauses);
    void presented();
    void await(State state, std::int64_t ms, std::function<void()> then);
    void await_pc(State state, std::int64_t ms, std::function<void()> then);
    void end(bool by_pc);
    void give_up() { end(false); }
    Quarter last_of_packet() const;

    EventLoop& loop_;
    Kind kind_ = Kind::quarters;
    Recording site_;
    State state_ = State::off;
    Step step_ = Step::initialisation;
    Quarter first_;   // of the packet that is next or under way
    Quarter last_;    // of all
    char before_ = 0; // the byte before, for answers of two letters
    std::string digits_;
    int refusals_ = 0;
    int wrong_ranges_ = 0;
    bool acknowledged_ = false; // the packet under way
    long ordered_sets_ = 0;
    long acknowledged_sets_ = 0;
    DownloadFaults faults_;
    Random chance_;
    FrameTrouble trouble_; // of the frame under way; none once it is sent again
    EventLoop::TaskId next_;
};

} // namespace velorn::plant
