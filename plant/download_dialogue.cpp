#include "plant/download_dialogue.h"

#include "plant/wording.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velorn::plant {

namespace {

constexpr char backspace = 8;
constexpr int most_pauses = 4; // of a slow frame
constexpr std::uint64_t longest_pause_ms = 2000;
constexpr int newest_sets = quarters_of_day;
constexpr std::int64_t waits_for_end_ms = 10'000;

long sets_between(const Quarter& first, const Quarter& last) {
    if (last < first) return 0;
    return (last.day - first.day) * quarters_of_day + last.number - first.number + 1;
}

} // namespace

std::optional<DownloadDialogue::Kind> DownloadDialogue::kind_of(std::string_view command) {
    static constexpr std::array<std::pair<std::string_view, Kind>, 3> commands = {
        {{"DUE3", Kind::quarters}, {"DUE4", Kind::four_hours}, {"DUE5", Kind::newest}}};
    const std::string wanted = upper_case(command);
    for (const auto& [name, kind] : commands) {
        if (wanted == name) return kind;
    }
    return std::nullopt;
}

void DownloadDialogue::set_faults(const DownloadFaults& faults) {
    faults_ = faults;
    chance_ = Random(faults.seed);
}

void DownloadDialogue::begin(Kind kind, const Recording& site) {
    kind_ = kind;
    site_ = site;
    site_.tracks = std::clamp(site.tracks, 1, most_tracks);
    refusals_ = 0;
    wrong_ranges_ = 0;
    last_ = newest_quarter(loop_.local_time());
    first_ = quarter_before(last_, newest_sets - 1);
    ordered_sets_ = kind == Kind::newest ? newest_sets : 0;
    acknowledged_sets_ = 0;
    go_on(kind == Kind::newest ? Step::packet : Step::initialisation, before_first_frame);
}

void DownloadDialogue::stop() {
    loop_.cancel(next_);
    if (std::exchange(state_, State::off) != State::off && over) over(ordered_sets_, acknowledged_sets_);
}

void DownloadDialogue::end(bool by_pc) {
    stop();
    if (ended) ended(by_pc);
}

void DownloadDialogue::receive(std::string_view bytes) {
    for (const char byte : bytes) {
        if (state_ == State::off) return;
        take(byte);
    }
}

void DownloadDialogue::take(char byte) {
    if (byte == backspace) {
        end(true);
        return;
    }
    if (static_cast<unsigned char>(byte) <= ' ') return;
    switch (state_) {
    case State::answer: take_answer(byte); break;
    case State::range: take_digit(byte); break;
    case State::off:
    case State::preparing:
    case State::silent:
    case State::complete: return;
    }
}

void DownloadDialogue::take_answer(char byte) {
    const char before = std::exchange(before_, byte);
    if (before == 'O' && byte == 'K') {
        confirmed();
    } else if (before == 'E' && byte == 'R') {
        refused();
    } else {
        // An answer that nobody can read is none that says the frame was good.
        await(State::answer, answer_is_broken_after, [this] { refused(); });
    }
}

void DownloadDialogue::take_digit(char byte) {
    const char before = std::exchange(before_, byte);
    if (before == 'E' && byte == 'R') {
        step_ = Step::initialisation;
        refused();
        return;
    }
    if (byte < '0' || byte > '9') return;
    // More than belong to a range are wrong, however many.
    if (digits_.size() <= 32) digits_ += byte;
    const auto wait = digits_.size() < 32 ? range_is_broken_after : range_is_complete_after;
    await(State::range, wait, [this] { take_range(); });
}

void DownloadDialogue::take_range() {
    const auto range = time_range_from(digits_);
    if (!range) {
        refuse_range();
        return;
    }
    const FrameTrouble drawn = trouble_of(faults_, chance_);
    if (drawn.vain_repeat && wrong_ranges_ == 0) {
        refuse_range();
        return;
    }
    const Quarter oldest{days_from_civil(2000, 1, 1), 1};
    first_ = std::max(range->first, oldest);
    last_ = std::min(range->last, newest_quarter(loop_.local_time()));
    ordered_sets_ = sets_between(first_, last_);
    go_on(Step::accepted);
}

void DownloadDialogue::refuse_range() {
    if (++wrong_ranges_ > most_wrong_ranges) {
        give_up();
        return;
    }
    go_on(Step::ask_again);
}

void DownloadDialogue::confirmed() {
    if (step_ == Step::initialisation) {
        refusals_ = 0;
        digits_.clear();
        before_ = 0;
        await(State::range, gives_up_after, [this] { give_up(); });
        return;
    }
    // A wrong length is refused by the PC; a wrong date it passes over.
    if (trouble_.wrong_date) {
        again();
        return;
    }
    if (!std::exchange(acknowledged_, true)) {
        acknowledged_sets_ += sets_between(first_, last_of_packet());
        if (acknowledged) acknowledged(first_, last_of_packet());
    }
    if (state_ != State::answer) return; // whoever was told has ended it
    if (trouble_.repeat) {
        again();
        return;
    }
    first_ = quarter_after(last_of_packet(), 1);
    go_on(first_ <= last_ ? Step::packet : Step::complete);
}

void DownloadDialogue::refused() {
    if (++refusals_ > most_refusals) {
        give_up();
        return;
    }
    again();
}

Quarter DownloadDialogue::last_of_packet() const {
    return kind_ == Kind::four_hours ? std::min(quarter_after(first_, sets_of_long_packet - 1), last_)
                                     : first_;
}

void DownloadDialogue::go_on(Step step, std::int64_t after_ms) {
    step_ = step;
    await(State::preparing, after_ms, [this] {
        trouble_ = trouble_of(faults_, chance_).within(step_ == Step::packet, step_ == Step::accepted);
        refusals_ = 0;
        acknowledged_ = false;
        present();
    });
}

void DownloadDialogue::again() {
    trouble_ = {};
    await(State::preparing, before_frame, [this] { present(); });
}

// The frame of the present step as it ought to be.
std::string DownloadDialogue::frame() {
    switch (step_) {
    case Step::initialisation: return initialisation_frame(site_);
    case Step::ask_again: return std::string(range_again);
    case Step::accepted: return std::string(range_accepted);
    case Step::packet:
        return packet(site_, first_, kind_ == Kind::four_hours ? sets_of_long_packet : 1, last_);
    case Step::complete: break;
    }
    return std::string(transfer_complete);
}

void DownloadDialogue::present() {
    std::string bytes = frame();
    if (trouble_.garbled_copy && step_ == Step::initialisation)
        bytes = with_garbled_copy(std::move(bytes), site_, trouble_.where);
    if (step_ == Step::packet) {
        if (trouble_.wrong_date) bytes = with_wrong_date(std::move(bytes), site_, trouble_.where);
        if (trouble_.wrong_length) bytes = with_wrong_length(std::move(bytes), trouble_.where);
        if (trouble_.two_at_once) {
            const Quarter here = std::exchange(first_, quarter_after(last_of_packet(), 1));
            if (first_ > last_) step_ = Step::complete;
            bytes += frame();
            first_ = here;
            step_ = Step::packet;
        }
    }
    if (trouble_.two_at_once && step_ == Step::accepted && first_ <= last_) {
        step_ = Step::packet;
        bytes += frame();
    }
    if (trouble_.silence || trouble_.hang_up) bytes.resize(trouble_.where % bytes.size());
    transmit(bytes, trouble_.slow ? most_pauses : 0);
}

void DownloadDialogue::transmit(std::string_view bytes, int pauses) {
    const std::uint64_t draw = spread(trouble_.where + static_cast<std::uint64_t>(pauses));
    const std::size_t cut = pauses > 0 ? draw % (bytes.size() + 1) : bytes.size();
    if (send && cut > 0) send(bytes.substr(0, cut));
    if (cut == bytes.size()) {
        presented();
        return;
    }
    const auto pause = 1 + static_cast<std::int64_t>(draw / 65'536 % longest_pause_ms);
    await(State::preparing, pause,
          [this, pauses, rest = std::string(bytes.substr(cut))] { transmit(rest, pauses - 1); });
}

void DownloadDialogue::presented() {
    if (trouble_.hang_up) {
        stop();
        if (hung_up) hung_up();
        return;
    }
    if (trouble_.silence) {
        await(State::silent, gives_up_after, [this] { give_up(); });
        return;
    }
    before_ = 0;
    digits_.clear();
    switch (step_) {
    case Step::initialisation:
    case Step::packet:
        if ((trouble_.wrong_date || trouble_.two_at_once) && faults_.right_one_after_ms > 0) {
            await_pc(State::answer, faults_.right_one_after_ms, [this] { again(); });
            return;
        }
        await_pc(State::answer, gives_up_after, [this] { give_up(); });
        return;
    case Step::ask_again: await_pc(State::range, gives_up_after, [this] { give_up(); }); return;
    case Step::accepted: go_on(first_ <= last_ ? Step::packet : Step::complete, before_first_packet); return;
    case Step::complete: await_pc(State::complete, waits_for_end_ms, [this] { give_up(); }); return;
    }
}

void DownloadDialogue::await(State state, std::int64_t ms, std::function<void()> then) {
    loop_.cancel(next_);
    state_ = state;
    next_ = loop_.post_at(loop_.now_ms() + ms, std::move(then));
}

// The PC can't answer what a slow line still has before it.
void DownloadDialogue::await_pc(State state, std::int64_t ms, std::function<void()> then) {
    await(state, ms, [this, state, ms, then = std::move(then)] {
        if (waiting && waiting() > 0) {
            await_pc(state, ms, then);
        } else {
            then();
        }
    });
}

} // namespace velorn::plant
