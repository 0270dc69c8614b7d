#include "plant/display.h"

#include "plant/visual_values.h"
#include "plant/wording.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace velorn::plant {

namespace {

constexpr char cursor_left = 8; // also what the PC sends when a capture is complete
constexpr char cursor_down = 10;
constexpr char cursor_up = 11;
constexpr char enter = 13;
constexpr char escape = 27;

constexpr int lines_follow_after = 200; // ms; text that comes with them would wipe them out
constexpr int report_is_through_after = 1500;
constexpr std::size_t longest_value = 4;

} // namespace

Display::Display(EventLoop& loop, Machine& machine)
    : loop_(loop),
      machine_(machine),
      step_(loop, before_first_page),
      live_(loop, live_every),
      idle_(loop, idle_for) {
    step_.Tick = [this] {
        step_.Enabled = false;
        const auto next = std::exchange(next_, nullptr);
        if (next) next();
        flush();
    };
    live_.Tick = [this] {
        if (state_ == State::visualising) {
            send_values();
        } else {
            refresh();
        }
        flush();
    };
    idle_.Tick = [this] { end(" - OFFLINE - "); };
}

void Display::begin(std::string site, bool ask_for_name_first) {
    site_ = std::move(site);
    asks_for_name_ = ask_for_name_first;
    state_ = State::beginning;
    menu_line_ = 0;
    inverse_head_ = false;
    idle_.Enabled = true;
    next_ = [this] {
        if (asks_for_name_) {
            ask_for_name();
        } else {
            show(PageId::menu);
        }
    };
    step_.set_Interval(before_first_page);
    step_.Enabled = true;
}

void Display::stop() {
    state_ = State::off;
    for (Timer* timer : {&step_, &live_, &idle_}) timer->Enabled = false;
    next_ = nullptr;
    edited_.clear();
    after_escape_ = false;
    (void)screen_.take();
}

void Display::hold() {
    held_step_ = step_.Enabled;
    held_live_ = live_.Enabled;
    for (Timer* timer : {&step_, &live_, &idle_}) timer->Enabled = false;
}

void Display::go_on(bool anew) {
    step_.Enabled = held_step_;
    live_.Enabled = held_live_;
    idle_.Enabled = true;
    if (!anew) return;
    if (state_ == State::showing) show(page_);
    if (state_ == State::visualising) send_values();
    flush();
}

void Display::end(std::string_view words) {
    screen_.cursor(false);
    screen_.clear();
    screen_.raw(words);
    screen_.raw("\r\n");
    const std::string farewell = screen_.take();
    stop();
    if (send) send(farewell);
    if (ended) ended();
}

void Display::flush() {
    const std::string bytes = screen_.take();
    if (!bytes.empty() && send) send(bytes);
}

void Display::ask_for_name() {
    state_ = State::asking;
    screen_.clear();
    screen_.text_at(3, 3, "Bitte Namen eingeben:");
    screen_.text_at(5, 3, std::string(34, '.') + "      ");
    next_ = [this] { show(PageId::menu); };
    step_.set_Interval(longest_wait_for_name);
    step_.Enabled = true;
}

void Display::receive(std::string_view bytes) {
    if (state_ == State::off) return;
    idle_.Enabled = false;
    idle_.Enabled = true;
    if (state_ == State::asking) {
        // The name's end shows by silence; the PC sends it without one.
        step_.set_Interval(name_is_complete_after);
        return;
    }
    if (state_ == State::beginning) return;
    for (const char code : bytes) {
        if (state_ == State::visualising) {
            visual_key(code);
        } else {
            key(code);
        }
        if (state_ == State::off) return;
    }
    flush();
}

void Display::show(PageId page) {
    state_ = State::showing;
    edited_.clear();
    step_.Enabled = false;
    next_ = nullptr;
    if (page != page_) setpoint_line_ = 0;
    page_ = page;
    screen_.cursor(false);
    screen_.clear();
    if (page != PageId::calendar) write_head(screen_, site_, inverse_head_);
    write_page(screen_, page, machine_, setpoints_);
    live_.Enabled = page == PageId::operation;
    if (page == PageId::operation) {
        shown_fields_.clear();
        for (const LiveField& field : live_fields(machine_)) shown_fields_.push_back(field.text);
    }
    if (page == PageId::chart) {
        next_ = [this] { write_chart_lines(screen_, machine_); };
        step_.set_Interval(lines_follow_after);
        step_.Enabled = true;
    }
    show_selection();
}

void Display::show_selection() {
    if (page_ == PageId::menu) {
        const auto& entry = menu_entries()[static_cast<std::size_t>(menu_line_)];
        const auto length = static_cast<int>(cp437_from_utf8(entry.title).size());
        screen_.select(first_line + menu_line_, menu_column, menu_column + 2 + length);
    } else if (page_ == PageId::setpoints) {
        screen_.at(first_line + setpoint_line_, value_column);
        screen_.cursor(true);
    }
}

void Display::refresh() {
    const std::vector<LiveField> fields = live_fields(machine_);
    for (std::size_t i = 0; i < fields.size() && i < shown_fields_.size(); ++i) {
        if (fields[i].text == shown_fields_[i]) continue;
        screen_.text_at(fields[i].row, fields[i].column, fields[i].text);
        shown_fields_[i] = fields[i].text;
    }
}

void Display::key(char code) {
    if (std::exchange(after_escape_, false)) {
        // Page down and home: the last line and the first one.
        if (code == 'F') move(1000);
        if (code == 'H') move(-1000);
        return;
    }
    if (code == escape) {
        after_escape_ = true;
    } else if (code == 'E' || code == 'e') {
        one_level_up();
    } else if (code == 'I' || code == 'i') {
        if (page_ == PageId::calendar) return;
        // What ends the head's inverse takes bars and red away too, so the whole page comes anew.
        inverse_head_ = !inverse_head_;
        show(page_);
    } else if (code == 'v' || code == 'V') {
        visualise();
    } else if (page_ == PageId::menu) {
        menu_key(code);
    } else if (page_ == PageId::setpoints) {
        setpoint_key(code);
    } else if (page_ == PageId::report && code == enter) {
        send_report();
    } else if (page_ == PageId::chart && (code == 'G' || code == 'g')) {
        send_day_graph();
    }
}

void Display::visualise() {
    state_ = State::visualising;
    step_.Enabled = false;
    next_ = nullptr;
    order_.clear();
    live_.Enabled = false; // its period begins anew
    live_.Enabled = true;
    send_values();
}

void Display::send_values() { screen_.raw(values_block(site_, machine_, setpoints_)); }

void Display::visual_key(char code) {
    if (takes_order(code)) return;
    order_.clear();
    if (code == 'v' || code == 'V') {
        send_values();
        return;
    }
    show(page_);
    if (code != cursor_left) key(code);
}

// Whether the key begins an order or belongs to the one begun.
bool Display::takes_order(char code) {
    const bool is_word = order_.size() >= order_word.size();
    if (is_word && code == enter) {
        (void)follow_order(order_, setpoints_);
        order_.clear();
        send_values();
        return true;
    }
    const bool printable = static_cast<unsigned char>(code) >= ' ';
    if (is_word ? !printable || order_.size() == longest_order : code != order_word[order_.size()])
        return false;
    order_ += code;
    return true;
}

void Display::one_level_up() {
    if (page_ == PageId::menu) {
        end("   Fernbedienung beendet   ");
        return;
    }
    show(PageId::menu);
}

void Display::move(int by) {
    if (page_ == PageId::menu) {
        menu_line_ = std::clamp(menu_line_ + by, 0, static_cast<int>(menu_entries().size()) - 1);
    } else if (page_ == PageId::setpoints) {
        setpoint_line_ = std::clamp(setpoint_line_ + by, 0, static_cast<int>(setpoints_.size()) - 1);
    }
    show_selection();
}

void Display::menu_key(char code) {
    const auto entries = menu_entries();
    if (code == cursor_down) move(1);
    if (code == cursor_up) move(-1);
    const int digit = code - '1';
    const bool is_entry = digit >= 0 && digit < static_cast<int>(entries.size());
    if (is_entry) menu_line_ = digit;
    // The PC opens its evaluation and fetches what is new. The blank takes its screen back to plain text.
    if (code == 'A' || code == 'a') screen_.raw("\x1b\x1bq ");
    if (is_entry || code == enter) show(entries[static_cast<std::size_t>(menu_line_)].page);
}

void Display::setpoint_key(char code) {
    if (code == cursor_down || code == cursor_up) {
        if (!edited_.empty()) {
            edited_.clear();
            write_page(screen_, page_, machine_, setpoints_);
        }
        move(code == cursor_down ? 1 : -1);
    } else if (code >= '0' && code <= '9') {
        edit(code);
    } else if (code == cursor_left && !edited_.empty()) {
        edited_.pop_back();
        screen_.raw("\b \b");
    } else if (code == enter) {
        take_edited();
    }
}

void Display::edit(char digit) {
    if (edited_.size() >= longest_value) return;
    if (edited_.empty())
        screen_.text_at(first_line + setpoint_line_, value_column, std::string(value_width, ' '));
    edited_ += digit;
    screen_.text_at(first_line + setpoint_line_, value_column, edited_);
}

void Display::take_edited() {
    Setpoint& point = setpoints_[static_cast<std::size_t>(setpoint_line_)];
    int value = 0;
    const auto [end, error] = std::from_chars(edited_.data(), edited_.data() + edited_.size(), value);
    const bool given = !edited_.empty() && error == std::errc{} && end == edited_.data() + edited_.size();
    edited_.clear();
    if (given && value >= point.lowest && value <= point.highest) {
        point.value = value;
        message("übernommen");
    } else if (given) {
        message(filled("nur %d bis %d", point.lowest, point.highest));
    }
    screen_.text_at(first_line + setpoint_line_, value_column, filled("%*d", value_width, point.value));
    show_selection();
}

void Display::message(std::string_view utf8) { screen_.text_at(18, 6, padded(utf8, 40)); }

// The PC writes it into its file; on its screen it runs by, so the page comes back afterwards.
void Display::send_report() {
    screen_.raw("\x1b\x1bP");
    screen_.raw(report_text(site_, machine_));
    screen_.raw("\x1b\x1bO");
    next_ = [this] { show(PageId::report); };
    step_.set_Interval(report_is_through_after);
    step_.Enabled = true;
}

void Display::send_day_graph() {
    screen_.raw("\x1b\x1bG1");
    screen_.raw(day_graph_text(machine_));
    screen_.raw("\x1b\x1bG0");
    next_ = [this] { show(PageId::chart); };
    step_.set_Interval(report_is_through_after);
    step_.Enabled = true;
}

} // namespace velorn::plant
