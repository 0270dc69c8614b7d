#include "app/night_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace velorn::test {

namespace {

enum class Frame { none, again, accepted, data, end };

// Which of the frame ends the text holds; where there are several the lowest of this order counts.
Frame frame_in(std::string_view text) {
    const auto holds = [&](char digit) {
        const char end[] = {27, 27, 'D', digit};
        return text.find(std::string_view(end, sizeof end)) != std::string_view::npos;
    };
    if (holds('7')) return Frame::again;
    if (holds('6')) return Frame::accepted;
    if (holds('5')) return Frame::data;
    if (holds('4')) return Frame::end;
    return Frame::none;
}

// Those that the system knows of; others stay as they are.
std::string windows_letters(std::string text) {
    constexpr std::pair<unsigned char, unsigned char> letters[] = {{0x84, 0xE4}, {0x94, 0xF6}, {0x81, 0xFC},
                                                                   {0x8E, 0xC4}, {0x99, 0xD6}, {0x9A, 0xDC}};
    for (char& c : text) {
        for (const auto& [dos, windows] : letters) {
            if (static_cast<unsigned char>(c) != dos) continue;
            c = static_cast<char>(windows);
            break;
        }
    }
    return text;
}

class Reader {
  public:
    Reader(const NightPlan& plan, HeardNight& night) : plan_(plan), night_(night) {
        night_.sites.resize(plan.sites.size());
    }

    void take(const LineEvent& event) {
        switch (event.what) {
        case LineEvent::What::connects: connects(event.bytes); break;
        case LineEvent::What::accepted:
            if (site_) here().reached = true;
            break;
        case LineEvent::What::lost: lost_ = true; break;
        case LineEvent::What::arrives: arrives(event); break;
        case LineEvent::What::leaves: leaves(event); break;
        }
    }
    void line_ends() {
        if (!on_ || answered_ || phase_ != Phase::data || frame_in(box_) != Frame::data) return;
        if (auto sets = data_in(box_)) here().unanswered = std::move(*sets);
    }

  private:
    enum class Phase { tracks, range, data };
    static constexpr std::int64_t settles_after_ms = 800; // behind the order

    HeardSite& here() { return night_.sites[*site_]; }
    const NightSite& planned() const { return plan_.sites[*site_]; }

    void connects(const std::string& address) {
        leave();
        lost_ = false;
        for (std::size_t i = 0; i < plan_.sites.size(); ++i) {
            if (plan_.sites[i].site.address == address) meet(i);
        }
    }
    void leave() {
        site_.reset();
        on_ = false;
    }
    void meet(std::size_t site) {
        site_ = site;
        ++here().called;
    }

    void arrives(const LineEvent& event) {
        if (!on_) return;
        if (std::exchange(clear_, false) || (!settled_ && event.ms >= ordered_ms_ + settles_after_ms)) {
            settled_ = settled_ || event.ms >= ordered_ms_ + settles_after_ms;
            box_.clear();
        }
        box_ += event.bytes;
        const Frame frame = frame_in(box_);
        if (frame == Frame::none) return;
        clear_ = true;
        answered_ = false;
        if (frame == Frame::again) phase_ = Phase::range;
        if (frame == Frame::accepted) phase_ = Phase::data;
        // The controller has started over.
        if (frame == Frame::data && phase_ == Phase::range) phase_ = Phase::tracks;
        if (frame == Frame::data && lost_) answered_in_vain();
        if (frame == Frame::end) {
            here().complete = true;
            on_ = false;
        }
    }

    void leaves(const LineEvent& event) {
        const std::string& bytes = event.bytes;
        if (bytes.starts_with("atd")) {
            leave();
            lost_ = false;
            for (std::size_t i = 0; i < plan_.sites.size(); ++i) {
                if (bytes == "atd" + plan_.sites[i].site.number + '\r') meet(i);
            }
            if (!site_) complain("nobody has the number " + bytes);
        } else if (bytes == "DUE3\r" || bytes == "DUE4\r") {
            begin(bytes == "DUE4\r", event.ms);
        } else if (bytes == "OK") {
            acknowledged();
        } else if (bytes == "ER") {
            answered_ = true;
        }
    }

    void begin(bool four_hours, std::int64_t ms) {
        if (!site_) {
            complain("a download without a site");
            return;
        }
        HeardSite& site = here();
        site.reached = true;
        ++site.downloads;
        site.begun_ms = ms;
        site.four_hours = four_hours;
        site.complete = false;
        on_ = true;
        settled_ = false;
        clear_ = true;
        answered_ = true;
        ordered_ms_ = ms;
        phase_ = Phase::tracks;
        box_.clear();
    }

    void acknowledged() {
        if (!on_) {
            complain("an acknowledgement of nothing");
            return;
        }
        answered_ = true;
        if (frame_in(box_) != Frame::data) {
            complain("an acknowledgement where no frame has come");
        } else if (phase_ == Phase::tracks) {
            here().tracks = tracks_in(box_);
            if (!here().tracks) complain("tracks were acknowledged that make no sense");
            phase_ = Phase::range;
        } else if (auto sets = data_in(box_)) {
            for (HeardSet& set : *sets) here().sets.push_back(std::move(set));
        } else {
            complain("a frame was acknowledged that makes no sense: " + box_);
        }
    }

    // What came just before the far end was gone is good all the same.
    void answered_in_vain() {
        answered_ = true;
        if (phase_ == Phase::tracks) {
            if (auto tracks = tracks_in(box_)) here().tracks = std::move(tracks);
        } else if (auto sets = data_in(box_); sets && phase_ == Phase::data) {
            for (HeardSet& set : *sets) here().sets.push_back(std::move(set));
        }
    }

    std::optional<HeardTracks> tracks_in(std::string_view frame) const {
        const std::size_t digits = frame.size() >= 6 && frame.substr(0, 3) == frame.substr(3, 3) ? 3 : 2;
        if (frame.substr(0, digits) != frame.substr(digits, digits)) return std::nullopt;
        const auto offered = heard_number(frame.substr(0, digits));
        if (!offered || *offered < 0) return std::nullopt;
        HeardTracks tracks;
        const int all = static_cast<int>(*offered);
        tracks.count = std::min(all, planned().archive_tracks);
        std::size_t at = 2 * digits;
        for (const auto& [width, texts] : {std::pair{5U, &tracks.units}, {14U, &tracks.names}}) {
            for (int i = 0; i < all; ++i, at += 2 * width) {
                if (frame.size() < at + 2 * width) return std::nullopt;
                if (frame.substr(at, width) != frame.substr(at + width, width)) return std::nullopt;
                if (i < tracks.count) texts->push_back(windows_letters(std::string(frame.substr(at, width))));
            }
        }
        return tracks;
    }

    // Nothing where any of it can't be read; those that the archive has no place for are left out.
    std::optional<std::vector<HeardSet>> data_in(std::string_view frame) const {
        const auto& known = night_.sites[*site_].tracks;
        const auto tracks = static_cast<std::size_t>(known ? known->count : 0);
        const std::size_t sets = night_.sites[*site_].four_hours ? 16 : 1;
        if (!known || frame.size() != sets * (8 + 8 * tracks) + 4) return std::nullopt;
        std::vector<HeardSet> all;
        for (std::size_t s = 0; s < sets; ++s) {
            const std::string_view set = frame.substr(s * (8 + 8 * tracks), 8 + 8 * tracks);
            int head[4];
            for (std::size_t i = 0; i < 4; ++i) {
                const auto number = heard_number(set.substr(2 * i, 2));
                if (!number) return std::nullopt;
                head[i] = static_cast<int>(std::nearbyint(*number));
            }
            HeardSet one{2000 + head[2], head[1], head[0], head[3], {}};
            for (std::size_t t = 0; t < tracks; ++t) {
                const auto value = heard_number(set.substr(8 + 8 * t, 8));
                if (!value) return std::nullopt;
                one.values.push_back(*value);
            }
            const int y = one.year - planned().startjahr;
            if (one.day >= 1 && one.day <= 31 && one.month >= 1 && one.month <= 12 && one.quarter >= 1 &&
                one.quarter <= 96 && y >= 0 && y <= 9)
                all.push_back(std::move(one));
        }
        return all;
    }

    void complain(const std::string& what) {
        night_.complaints.push_back(
            "on the line: " + what +
            (site_ ? " (site " + std::to_string(*site_ + 1) + ")" : std::string(" (no site)")));
    }

    const NightPlan& plan_;
    HeardNight& night_;
    std::optional<std::size_t> site_;
    bool on_ = false;   // a download
    bool lost_ = false; // the connection; what the program says doesn't leave it
    Phase phase_ = Phase::tracks;
    std::int64_t ordered_ms_ = 0;
    bool settled_ = false;
    bool clear_ = false;
    bool answered_ = true;
    std::string box_;
};

} // namespace

std::optional<float> heard_number(std::string_view field) {
    if (field.find("***") != std::string_view::npos) return -999.0F;
    std::string text(field);
    while (!text.empty() && text.front() == ' ') text.erase(0, 1);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    if (text.empty() || text.find_first_not_of("0123456789+-,.eE") != std::string::npos) return std::nullopt;
    if (std::ranges::count_if(text, [](char c) { return c == ',' || c == '.'; }) > 1) return std::nullopt;
    std::ranges::replace(text, ',', '.');
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (*end != 0 || std::abs(number) > 3.4e38) return std::nullopt;
    return static_cast<float>(number);
}

HeardNight read_line(const NightPlan& plan, const std::vector<LineEvent>& line) {
    HeardNight night;
    Reader reader(plan, night);
    for (const LineEvent& event : line) reader.take(event);
    reader.line_ends();
    return night;
}

} // namespace velorn::test
