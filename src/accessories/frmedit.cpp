#include "accessories/frmedit.h"

#include "runtime/paths.h"

#include <algorithm>
#include <utility>

namespace velorn {

namespace {

constexpr int window_width = 860;
constexpr int window_height = 600;

// Raised for the time of a procedure, lowered on each way out.
class Raised {
  public:
    explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
    ~Raised() { flag_ = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

  private:
    bool& flag_;
};

Result<std::string> read_if_small(Files& files, const std::string& path) {
    const auto file = files.open(path, OpenMode::read);
    if (!file) return file.failure();
    const Result<std::int64_t> length = (*file)->length();
    if (!length) return length.failure();
    if (*length > largest_edited_file) return failure(RunTimeError::path_file_access);
    return (*file)->read(1, *length);
}

} // namespace

Frmedit::Frmedit(EventLoop& loop, Files& files, Dialogs& dialogs, Printer& printer, const Module1& module1)
    : loop_(loop), files_(files), dialogs_(dialogs), printer_(printer), module1_(module1) {
    form.Caption = "Editor";
    form.Width = window_width;
    form.Height = window_height;
    Richtxtedit.FontName = "Courier New";
    Richtxtedit.FontSize = 10.0;
    Richtxtedit.on_edit = [this](const RichTextBox::Edit& edit) { edited(edit); };
    Command1.Click = [this] { Command1_Click(); };
    Command2.Click = [this] { Command2_Click(); };
    Command3.Click = [this] { Command3_Click(); };
}

bool Frmedit::Form_Load(ScreenSize screen) {
    if (loaded_ && form.Visible) return true;
    if (busy_) return false;
    loaded_ = false;
    form.Width = std::min(window_width, screen.width);
    form.Height = std::min(window_height, screen.height);
    form.Left = (screen.width - form.Width) / 4;
    form.Top = (screen.height - form.Height) / 4;
    if (!module1_.protokollan) return refuse(std::string("keine Datei ausgewählt"_w));
    path_ = module1_.protokollname;
    const Result<std::string> text = read_if_small(files_, path_);
    if (!text) return refuse(std::string("Datei kann nicht geöffnet werden: "_w) + path_);
    {
        const Raised loading(loading_);
        Richtxtedit.set_Text(*text);
    }
    on_disk_ = *text;
    show_unchanged();
    Richtxtedit.select(Richtxtedit.length());
    loaded_ = true;
    return true;
}

bool Frmedit::refuse(std::string text) {
    {
        const Raised busy(busy_);
        dialogs_.message_box(text, 48);
    }
    close();
    return false;
}

void Frmedit::edited(const RichTextBox::Edit& edit) {
    if (on_edit) on_edit(edit);
    if (loading_) return;
    geaendert = true;
    form.Caption = "Editor " + path_ + "*";
}

void Frmedit::show_unchanged() {
    form.Caption = "Editor " + path_;
    geaendert = false;
}

void Frmedit::close() {
    form.Visible = false;
    loaded_ = false;
    geaendert = false;
    on_disk_.clear();
    const Raised loading(loading_);
    Richtxtedit.set_Text({});
}

void Frmedit::Command1_Click() {
    if (busy_) return;
    const Raised busy(busy_);
    if (geaendert) {
        const Answer answer =
            dialogs_.message_box("Datei wurde verändert, soll sie gespeichert werden?"_w, 3 + 32, path_);
        if (loop_.ended() || answer == Answer::cancel) return;
        if (answer == Answer::yes) {
            save();
            if (geaendert) return;
        }
    }
    close();
}

void Frmedit::Command2_Click() {
    if (busy_ || !loaded_) return;
    const Raised busy(busy_);
    save();
}

void Frmedit::save() {
    if (const Outcome written = write(); !written) {
        geaendert = true;
        form.Caption = "Editor " + path_ + "*";
        dialogs_.message_box(written.failure().text, 48);
        return;
    }
    show_unchanged();
}

// Marks and snapshots that the program wrote while the window was open stand behind what was loaded, over its
// last byte. They follow the changed text in the same way.
std::string Frmedit::with_what_came_since(const std::string& text) {
    const Result<std::string> now = read_if_small(files_, path_);
    const std::string_view old =
        std::string_view(on_disk_).substr(0, std::max<std::size_t>(on_disk_.size(), 1) - 1);
    if (!now || now->size() <= on_disk_.size() || !now->starts_with(old)) return text;
    const bool ends_alike = !text.empty() && !on_disk_.empty() && text.back() == on_disk_.back();
    return text.substr(0, text.size() - (ends_alike ? 1 : 0)) + now->substr(old.size());
}

// Nothing of a longer old file may stay behind the text, and a failure leaves the old file.
Outcome Frmedit::write() {
    // A capture would go on writing to the file whose place was taken.
    if (module1_.protokollaktiv && equal_ignoring_case(module1_.protokollname, path_))
        return failure(RunTimeError::file_already_open);
    const std::string text = with_what_came_since(Richtxtedit.Text());
    const std::string neighbour = path_ + ".neu";
    const auto give_up = [&](const Failure& why) -> Outcome {
        (void)files_.remove(neighbour); // what went wrong first is what counts
        return why;
    };
    {
        const auto file = files_.open(neighbour, OpenMode::create);
        if (!file) return file.failure();
        if (const Outcome written = (*file)->write(1, text); !written) return give_up(written.failure());
        if (const Outcome synced = (*file)->sync(); !synced) return give_up(synced.failure());
    }
    if (const Outcome replaced = files_.replace(neighbour, path_); !replaced)
        return give_up(replaced.failure());
    on_disk_ = text;
    if (text != Richtxtedit.Text()) {
        const Raised loading(loading_);
        Richtxtedit.set_Text(text);
    }
    return {};
}

void Frmedit::Command3_Click() {
    if (busy_ || !loaded_) return;
    const Raised busy(busy_);
    // A copy: what the text becomes while the dialog is open isn't what was asked for.
    const std::string text = Richtxtedit.SelLength() > 0
                                 ? Richtxtedit.Text().substr(Richtxtedit.SelStart(), Richtxtedit.SelLength())
                                 : Richtxtedit.Text();
    const Outcome printed = printer_.print_text(text, name_of(path_));
    if (!printed && !printed.failure().is(RunTimeError::dialog_cancelled))
        dialogs_.message_box(printed.failure().text, 48);
}

} // namespace velorn
