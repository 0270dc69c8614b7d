#include "terminal/log_file.h"

#include "runtime/number_picture.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>
#include <utility>

namespace velorn {

namespace {

constexpr std::size_t remembered = 4; // of letztepfade
constexpr std::int64_t block = 1 << 20;

// "26-11-15-11'28.log"
std::string proposed_name(const DateTime& now) {
    const auto two = [](int number) { return format(static_cast<double>(number), "00"); };
    return two(now.year - 2000) + '-' + two(now.month) + '-' + two(now.day) + '-' + two(now.hour) + '\'' +
           two(now.minute) + ".log";
}

// The remembered path is that of a file, or a folder at first.
std::string folder_to_begin_with(const std::string& remembered_path) {
    if (remembered_path.ends_with('\\') || remembered_path.ends_with('/')) return remembered_path;
    return std::string(folder_of(remembered_path));
}

} // namespace

LogFile::LogFile(EventLoop& loop, Files& files, Dialogs& dialogs, Events& events, Settings& settings,
                 SettingsFiles& settings_files, FrmTerminal& frmTerminal)
    : loop_(loop),
      files_(files),
      dialogs_(dialogs),
      settings_(settings),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal) {
    events.log_text.connect([this](std::string_view text) { write(text); });
    frmTerminal_.mnuOpenLog.Click = [this] { mnuOpenLog_Click(); };
    frmTerminal_.mnuCloseLog.Click = [this] { mnuCloseLog_Click(); };
    frmTerminal_.tbrToolBar("OpenLogFile").Click = [this] { mnuOpenLog_Click(); };
    frmTerminal_.tbrToolBar("CloseLogFile").Click = [this] { mnuCloseLog_Click(); };
}

std::optional<std::string> LogFile::chosen_name() {
    FileQuestion question;
    question.title = "LOG-Datei öffnen"_w;
    question.filter = "LOG-Dateien (*.LOG)|*.log|Alle Dateien (*.*)|*.*";
    question.folder = folder_to_begin_with(settings_.letztepfade[remembered].text());
    question.name = proposed_name(loop_.local_time());
    for (;;) {
        const Result<std::string> chosen = dialogs_.choose_file(question);
        if (!chosen || loop_.ended()) return std::nullopt;
        if (!files_.exists(*chosen)) return *chosen;
        const Answer answer = dialogs_.message_box("Bestehende Datei ersetzen - " + *chosen + "?", 35);
        if (loop_.ended()) return std::nullopt;
        if (answer == Answer::no) return *chosen;
        if (answer != Answer::yes) continue;
        if (const Outcome removed = files_.remove(*chosen); !removed) {
            dialogs_.message_box(removed.failure().text, 48);
            return std::nullopt;
        }
        return *chosen;
    }
}

void LogFile::mnuOpenLog_Click() {
    const std::optional<std::string> name = chosen_name();
    if (!name) return;
    frmTerminal_.logdatei = frmTerminal_.protdatei == 1 ? 2 : 1;
    settings_.letztepfade[remembered] = *name;
    settings_files_.saveeinst();
    if (loop_.ended()) return;
    auto opened = files_.open(*name, OpenMode::read_write);
    if (!opened) {
        // The one that was open before, as the controller may ask for a second one, ends too.
        if (file_) mnuCloseLog_Click();
        frmTerminal_.logdatei = 0;
        dialogs_.message_box(opened.failure().text, 48);
        return;
    }
    write_what_waits_for_the_last_time();
    file_ = std::move(opened).value();
    path_ = *name;
    position_ = 1; // kept: a file that stays is written over from its first byte on
    ++opened_;
    show_open(true);
    if (frmTerminal_.fernbedaktiv) {
        frmTerminal_.fernbedaktiv = false;
        frmTerminal_.txtterm.Visible = true;
        frmTerminal_.Picture1.Visible = false;
        frmTerminal_.cursorinv = false;
        fblogmerk_ = true;
    }
}

void LogFile::mnuCloseLog_Click() {
    write_what_waits_for_the_last_time();
    file_.reset();
    ++opened_;
    frmTerminal_.logdatei = 0;
    show_open(false);
    if (std::exchange(fblogmerk_, false)) show_mirrored_display(frmTerminal_, false);
}

void LogFile::show_open(bool open) {
    frmTerminal_.mnuOpenLog.Enabled = !open;
    frmTerminal_.tbrToolBar("OpenLogFile").Enabled = !open;
    frmTerminal_.mnuCloseLog.Enabled = open;
    frmTerminal_.tbrToolBar("CloseLogFile").Enabled = open;
}

void LogFile::write(std::string_view text) {
    if (!file_) return;
    waiting_ += text.substr(0, most_waiting - std::min(most_waiting, waiting_.size()));
    if (asking_) return; // the box that is open speaks for this text too
    const int this_log = opened_;
    Outcome written = write_waiting();
    while (!written) {
        asking_ = true;
        const Answer answer = dialogs_.message_box(written.failure().text, 21);
        asking_ = false;
        if (loop_.ended()) return;
        if (opened_ != this_log) {
            if (!waiting_.empty()) write({}); // another LOG's by now
            return;
        }
        if (answer != Answer::retry) {
            waiting_.clear();
            press(frmTerminal_.mnuCloseLog);
            return;
        }
        written = write_waiting();
        if (written) continue;
        const Outcome anew = open_anew(written.failure());
        written = anew ? write_waiting() : anew;
    }
}

void LogFile::write_what_waits_for_the_last_time() {
    if (file_ && !waiting_.empty()) (void)write_waiting();
    waiting_.clear();
}

Outcome LogFile::write_waiting() {
    if (const Outcome written = file_->write(position_, waiting_); !written) return written;
    position_ += static_cast<std::int64_t>(waiting_.size());
    waiting_.clear();
    return {};
}

Outcome LogFile::open_anew(const Failure& why) {
    auto opened = files_.open(path_, OpenMode::read_write);
    if (!opened) return opened.failure();
    BinaryFile& anew = **opened;
    const Result<std::int64_t> length = anew.length();
    if (!length) return length.failure();
    // Of a file that is gone the old handle still holds everything; what bears its name now is another one.
    const bool is_gone = why.is(RunTimeError::file_not_found) || why.is(RunTimeError::path_not_found);
    for (std::int64_t from = is_gone ? 1 : *length + 1;;) {
        const Result<std::string> kept = file_->read(from, block);
        if (!kept) return kept.failure();
        if (kept->empty()) break;
        if (const Outcome copied = anew.write(from, *kept); !copied) return copied;
        from += static_cast<std::int64_t>(kept->size());
    }
    file_ = std::move(opened).value();
    return {};
}

} // namespace velorn
