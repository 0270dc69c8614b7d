// Controls: what a window is made of, without a toolkit. A window is a plain struct of these, and its event
// procedures. Setting a property fires the control's event within the assignment and tells the view, if one
// is attached. Texts are cp1252; colours are the system's blue-green-red numbers (0xFF0000 is blue).
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velorn {

using Colour = unsigned; // 0xBBGGRR

namespace colour {
inline constexpr Colour black = 0x000000;
inline constexpr Colour red = 0x0000FF;   // 255
inline constexpr Colour green = 0x00FF00; // 65280
inline constexpr Colour blue = 0xFF0000;
inline constexpr Colour cyan = 0xFFFF00;
inline constexpr Colour white = 0xFFFFFF;
inline constexpr Colour yellow = 0x00FFFF;
// Colours of the system's look: what they are is the view's business.
inline constexpr Colour scroll_bar = 0x80000000;
inline constexpr Colour face = 0x8000000F;
inline constexpr Colour info = 0x80000018;
constexpr Colour rgb(unsigned r, unsigned g, unsigned b) { return r | (g << 8U) | (b << 16U); }
} // namespace colour

class Control;

// One property of a control: read like a value, assigned like a value. An assignment that changes nothing
// tells nobody.
template <class T>
class Property {
  public:
    explicit Property(Control& owner, T initial = T{}, std::function<void()>* event = nullptr)
        : owner_(owner), event_(event), value_(std::move(initial)) {}
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;
    ~Property() = default;

    template <class U>
    Property& operator=(U&& value);

    const T& get() const { return value_; }
    operator const T&() const { return value_; }

  private:
    Control& owner_;
    std::function<void()>* event_; // the control's own event, fired within the assignment
    T value_;
};

class Control {
  public:
    Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    Property<bool> Visible{*this, true};
    Property<bool> Enabled{*this, true};
    Property<std::string> ToolTipText{*this};

    // The view that shows the control, if any; called after a property took a new value.
    std::function<void()> on_change;

    void changed() const {
        if (on_change) on_change();
    }

  protected:
    ~Control() = default;
};

template <class T>
template <class U>
Property<T>& Property<T>::operator=(U&& value) {
    if (value_ == value) return *this;
    value_ = std::forward<U>(value);
    owner_.changed();
    if (event_ != nullptr && *event_) (*event_)();
    return *this;
}

struct Label : Control {
    Label() = default;
    explicit Label(std::string_view caption) : Caption(*this, std::string(caption)) {}
    Property<std::string> Caption{*this};
    Property<Colour> BackColor{*this, colour::face};
    std::function<void()> Click;
};

// A label that wanders over its window; offset from its place in twips.
struct MovingLabel : Label {
    Property<int> Left{*this, 0};
    Property<int> Top{*this, 0};
};

struct Button : Control {
    Button() = default;
    explicit Button(std::string_view caption) : Caption(*this, std::string(caption)) {}
    Property<std::string> Caption{*this};
    std::function<void()> Click;
};

struct CheckBox : Control {
    Property<std::string> Caption{*this};
    std::function<void()> Click; // also fired by an assignment that changes Value
    Property<bool> Value{*this, false, &Click};
};

// A single-line or small text box. Long texts live in RichTextBox.
struct TextBox : Control {
    std::function<void()> Change;
    std::function<void()> GotFocus;
    Property<std::string> Text{*this, {}, &Change};
    Property<Colour> BackColor{*this, colour::white};
};

// A value that is set by scrolling.
class ScrollBar : public Control {
  public:
    ScrollBar(int least, int most, int step, int page)
        : Min(least), Max(most), SmallChange(step), LargeChange(page), value_(least) {}

    const int Min, Max, SmallChange, LargeChange;

    int Value() const { return value_; }
    // Kept within Min and Max.
    void set_Value(int value) {
        value = value < Min ? Min : value > Max ? Max : value;
        if (value == value_) return;
        value_ = value;
        changed();
        if (Change) Change();
    }
    std::function<void()> Change;

  private:
    int value_;
};

// A list of which one item is chosen. An editable one also takes texts that are not in its list.
class ComboBox : public Control {
  public:
    struct Item {
        std::string text;
        std::string note; // shown beside the text, no part of it
    };

    explicit ComboBox(bool editable = false) : editable_(editable) {}

    void set_List(std::vector<Item> items) {
        items_ = std::move(items);
        list_index_ = -1;
        text_.clear();
        changed();
    }
    const std::vector<Item>& List() const { return items_; }

    int ListIndex() const { return list_index_; } // -1: none of the list
    // Outside -1 to the last index nothing changes.
    void set_ListIndex(int index) {
        if (index < -1 || index >= static_cast<int>(items_.size())) return;
        list_index_ = index;
        text_ = index < 0 ? std::string() : items_[static_cast<std::size_t>(index)].text;
        changed();
    }

    const std::string& Text() const { return text_; }
    // A text that isn't in the list leaves a list that can't be edited as it is.
    void set_Text(std::string_view text) {
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (items_[i].text == text) return set_ListIndex(static_cast<int>(i));
        }
        if (!editable_) return;
        list_index_ = -1;
        text_ = text;
        changed();
    }

    bool editable() const { return editable_; }

  private:
    bool editable_;
    std::vector<Item> items_;
    int list_index_ = -1;
    std::string text_;
};

// Buttons of which one is down; their captions in order.
class OptionGroup : public Control {
  public:
    explicit OptionGroup(std::vector<std::string> captions) : captions_(std::move(captions)) {}

    const std::vector<std::string>& captions() const { return captions_; }
    int selected() const { return selected_; } // -1: none
    // Fires Click, also when it was down already.
    void select(int index) {
        if (index < 0 || index >= static_cast<int>(captions_.size())) return;
        selected_ = index;
        changed();
        if (Click) Click(index);
    }
    std::function<void(int index)> Click;

  private:
    std::vector<std::string> captions_;
    int selected_ = -1;
};

// A small box of one colour, such as a lamp.
struct Lamp : Control {
    Property<Colour> BackColor{*this, colour::red};
    std::function<void()> Click;
};

// An area that stands for a whole row: it can be clicked and takes keys.
struct ClickArea : Control {
    std::function<void()> Click;
    std::function<void()> DblClick;
    std::function<void(int keycode)> KeyDown;
};

// A picture that is shown or not; bringing one of two to the front is Visible.
struct Image : Control {
    std::function<void()> Click;
};

struct MenuItem : Control {
    MenuItem() = default;
    explicit MenuItem(std::string_view caption) : Caption(*this, std::string(caption)) {}
    Property<std::string> Caption{*this}; // "&" marks the access key
    Property<bool> Checked{*this, false};
    std::function<void()> Click; // empty: nothing serves this command yet; views show it greyed
};

struct ToolButton : Control {
    Property<bool> Pressed{*this, false};
    std::function<void()> Click; // as in MenuItem
};

// A window as a control: its title, its place on the screen in logical pixels, and whether it is shown.
struct Form : Control {
    Form() { Visible = false; }
    Property<std::string> Caption{*this};
    Property<int> Left{*this, 0};
    Property<int> Top{*this, 0};
    Property<int> Width{*this, 0};
    Property<int> Height{*this, 0};
};

// A panel of a status bar.
struct StatusPanel : Control {
    Property<std::string> Text{*this};
};

} // namespace velorn
