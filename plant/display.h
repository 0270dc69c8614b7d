// The operator display of a controller, as it is mirrored on a PC: several pages linked by a menu, worked by
// the display's own keys. Bytes in, bytes out.
//
// It begins with the question for the caller's name, a line of dots that the PC answers by itself, and ends
// by "E" in the menu, or by itself after ten minutes without a key. Whatever else is typed is ignored.
//
// "v" on any page: instead of the page it sends the plant's values in blocks (visual_values.h), one at once,
// one with each further "v", and one every 2 s. It takes setpoints then, as lines ending in CR. Backspace (8)
// brings the page back; any other key does too, and works there as ever.
#pragma once

#include "plant/pages.h"
#include "runtime/timer.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

class Display {
  public:
    // Times in ms.
    static constexpr int before_first_page = 300;
    static constexpr int name_is_complete_after = 600;
    static constexpr int longest_wait_for_name = 30'000;
    static constexpr int live_every = 2000; // page and visualisation
    static constexpr int idle_for = 10 * 60'000;

    Display(EventLoop& loop, Machine& machine);

    std::function<void(std::string_view)> send;
    // It is over and the shell goes on.
    std::function<void()> ended;

    void begin(std::string site, bool ask_for_name = true);
    void stop(); // without a word: the controller restarts
    bool is_on() const { return state_ != State::off; }

    // Keeps quiet until go_on(): something else has the line. If that has written on the PC's screen, the
    // page comes anew.
    void hold();
    void go_on(bool anew);

    void receive(std::string_view bytes);

    PageId page() const { return page_; }
    bool is_visualising() const { return state_ == State::visualising; }

  private:
    enum class State { off, beginning, asking, showing, visualising };

    void ask_for_name();
    void show(PageId page);
    void key(char code);
    void visualise();
    void send_values();
    void visual_key(char code);
    bool takes_order(char code);
    void menu_key(char code);
    void setpoint_key(char code);
    void move(int by);
    void show_selection();
    void edit(char digit);
    void take_edited();
    void message(std::string_view utf8);
    void send_report();
    void send_day_graph();
    void one_level_up();
    void refresh();
    void end(std::string_view words);
    void flush();

    EventLoop& loop_;
    Machine& machine_;
    ScreenWriter screen_;
    State state_ = State::off;
    bool asks_for_name_ = true;
    std::string site_;
    PageId page_ = PageId::menu;
    bool inverse_head_ = false;
    std::vector<Setpoint> setpoints_ = default_setpoints();
    // Where the selection stands on each of the two pages that have one.
    int menu_line_ = 0;
    int setpoint_line_ = 0;
    std::string edited_; // digits of a new value
    std::string order_;  // of a visualisation, not yet complete
    bool after_escape_ = false;
    std::vector<std::string> shown_fields_;
    Timer step_; // what comes next by itself: first page, end of the name, the chart's lines
    std::function<void()> next_;
    Timer live_;
    Timer idle_;
    bool held_step_ = false; // whether they ran before hold()
    bool held_live_ = false;
};

} // namespace velorn::plant
