#include "app/night_run.h"

#include "app/mortal_files.h"
#include "app/program.h"
#include "archive/archive.h"
#include "plant/demo_book.h"
#include "plant/random.h"
#include "runtime/message_boxes.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_printer.h"
#include "support/fake_visualisation.h"
#include "support/nobody_there.h"
#include "support/plant_network.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

namespace velorn::test {

namespace {

constexpr std::int64_t longest_run_ms = 48LL * 3'600'000;
constexpr std::int64_t longest_continuation_ms = 5 * 60'000;
constexpr std::int64_t look_every_ms = 5000;

// Sleeps. A box that waits for an answer would stop the run for the whole night.
class Sleeper final : public NobodyThere {
  public:
    Sleeper(EventLoop& loop, std::vector<std::string>& complaints) : loop_(loop), complaints_(complaints) {}

    Answer message_box(std::string_view text, int code, std::string_view) override {
        if (!loop_.ended()) complain("a box waits for the person: ", text);
        return cancelling_answer(code);
    }
    Answer message_box_for(int seconds, std::string_view text, int code) override {
        if (!loop_.ended()) complain("a box that sound archives give no reason for: ", text);
        const std::int64_t until = loop_.now_ms() + std::int64_t{1000} * seconds;
        loop_.post_at(until, [] {});
        (void)loop_.wait_until([&] { return loop_.now_ms() >= until; });
        return cancelling_answer(code);
    }
    std::optional<std::string> input_box(std::string_view prompt, std::string_view,
                                         std::string_view) override {
        complain("a question waits for the person: ", prompt);
        return std::nullopt;
    }
    Result<std::string> choose_file(const FileQuestion& question) override {
        complain("a dialog waits for the person: ", question.title);
        return failure(RunTimeError::dialog_cancelled);
    }
    Result<FontChoice> choose_font(const FontChoice&) override {
        complain("a dialog waits for the person: ", "font");
        return failure(RunTimeError::dialog_cancelled);
    }

  private:
    void complain(std::string_view what, std::string_view text) {
        complaints_.push_back(std::string(what) += text);
    }

    EventLoop& loop_;
    std::vector<std::string>& complaints_;
};

plant::Directory directory_of(const NightPlan& plan, std::uint64_t other_trouble) {
    plant::Directory directory;
    for (const NightSite& one : plan.sites) {
        plant::Site site = one.site;
        if (other_trouble != 0) {
            site.faults.seed = plant::spread(site.faults.seed ^ other_trouble);
            site.download_faults.seed = plant::spread(site.download_faults.seed ^ other_trouble);
        }
        directory.add(std::move(site));
    }
    return directory;
}

// A program from its start to its end or its death, and the plant around it.
class Life {
  public:
    Life(const NightPlan& plan, BlockFiles& disk, DateTime start, std::uint64_t other_trouble)
        : plan_(plan), start_(start), loop_(start), disk_(disk), files_(disk), plant_(*this, other_trouble) {
        for (std::size_t i = 0; i < plan.gateway.size(); ++i)
            plant_.network.gateway.set_behaviour(i, plan.gateway[i]);
        files_.died = [this] { die(); };
        program.start.Form_Load();
        interrupted_ = program.settings.autoholnr.number() > 0;
        loop_.pass(10'000);
    }

    bool interrupted() const { return interrupted_; }
    std::int64_t now_ms() const { return loop_.now_ms(); }

    // What the person sets once, and the phone book.
    void set_up() {
        program.settings.telefonpfad = "c:\\telefon.par";
        program.settings.loginauto = true;
        program.settings.loginuser = "service";
        program.settings.loginpass = "bhkw";
        program.settings.lanaktiv = static_cast<std::int16_t>(plan_.telnet ? 1 : 0);
        program.settings_files.saveeinst();
        Telefonbuch& book = program.telefonbuch;
        (void)decode_telefonbuch(plant::phone_book(directory_of(plan_, 0), {}), book);
        for (std::size_t i = 0; i < plan_.sites.size(); ++i) {
            const NightSite& site = plan_.sites[i];
            PhoneEntry& entry = book[static_cast<int>(i) + 1];
            entry.autoflag = site.takes_part ? Telefonbuch::collected : std::int16_t{0};
            entry.viertdatei = site.has_archive() ? archive_path(i) : "";
        }
        program.phonebook_files.save_telefonbuch();
        program.phonebook_files.save_dispaufnahmen();
    }

    Watch run(const std::optional<Kill>& kill) {
        program.phonebook_window.Form_Load();
        program.frmtelefon.form.Visible = true;
        begin(Watch::Kind::run);
        if (!program.frmtelefon.comstart.Enabled) complaints_.push_back("a run can't be ordered");
        program.frmtelefon.comautohol.Click();
        program.frmtelefon.vortagcheck.Value = plan_.up_to_yesterday;
        program.frmtelefon.viertelcheck.Value = plan_.always_quarters;
        if (kill && kill->by == Kill::By::changes_of_files) files_.die_at(kill->count, kill->share_of_write);
        if (kill && kill->by == Kill::By::seconds)
            loop_.post_at(loop_.now_ms() + 1000 * kill->count, [this] { die(); });
        program.frmtelefon.comstart.Click();
        log_path_ = program.settings.autoholpfad.text();
        return finish(longest_run_ms);
    }

    // What a start does by itself that found a run interrupted.
    Watch continuation() {
        begin(Watch::Kind::continuation);
        log_path_ = program.settings.autoholpfad.text();
        return finish(longest_continuation_ms);
    }

    void close() {
        loop_.pass(60'000);
        program.start.Form_QueryUnload();
        loop_.pass(60'000);
    }

  private:
    // The plant wants a program that is there.
    struct Around {
        Around(Life& life, std::uint64_t other_trouble)
            : network(life.loop_, life.program, life.serial_, life.tcp_,
                      directory_of(life.plan_, other_trouble)) {}
        PlantNetwork network;
    };

    void die() {
        tap_.dead = true;
        files_.die();
        loop_.end();
    }

    void begin(Watch::Kind kind) {
        watch_ = {};
        watch_.kind = kind;
        watch_.clock_at_0 = start_;
        tap_.events.clear();
        if (kind == Watch::Kind::run) program.frmTerminal.txtterm.set_Text({});
    }

    Watch finish(std::int64_t within_ms) {
        const std::int64_t limit = loop_.now_ms() + within_ms;
        const auto is_over = [this] {
            return program.settings.autoholnr.number() == 0 && !program.frmtelefon.Timer2.Enabled &&
                   !program.module1.autoholen;
        };
        loop_.pass(look_every_ms);
        while (!loop_.ended() && !is_over() && loop_.now_ms() < limit) loop_.pass(look_every_ms);
        watch_.end = loop_.ended() ? Watch::End::killed
                     : is_over()   ? Watch::End::finished
                                   : Watch::End::endless;
        watch_.line = std::move(tap_.events);
        watch_.terminal = program.frmTerminal.txtterm.Text();
        const Result<std::string> log = read_whole(disk_, log_path_);
        if (log) watch_.log = *log;
        watch_.complaints = std::move(complaints_);
        tap_.events.clear();
        complaints_.clear();
        return std::move(watch_);
    }

    const NightPlan& plan_;
    DateTime start_;
    VirtualEventLoop loop_;
    Files& disk_;
    MortalFiles files_;
    std::vector<std::string> complaints_;
    Sleeper sleeper_{loop_, complaints_};
    LineTap tap_{loop_};
    TappedSerialPort serial_{loop_, tap_};
    TappedTcpClient tcp_{loop_, tap_};
    FakePrinter printer_;
    FakeProcesses processes_;
    FakeVisualisation visualisation_;
    Program program{World{loop_, files_, sleeper_, serial_, tcp_, printer_, processes_, visualisation_,
                          "c:\\velorn", ScreenSize{1366, 768}, Gateway{"gateway", 23, 24}}};
    Around plant_;
    Watch watch_;
    std::string log_path_;
    bool interrupted_ = false;
};

// ---- archives ----

std::int64_t cell(int tracks, int y, const DateTime& day, int q, int t) {
    return 4 *
           (((((std::int64_t{y} * 13 + day.month) * 32 + day.day) * 97 + q) * (std::int64_t{tracks} + 1)) +
            t);
}

void lay_archives(const NightPlan& plan, ArchiveTemplates& templates, Night& night) {
    for (std::size_t i = 0; i < plan.sites.size(); ++i) {
        const NightSite& site = plan.sites[i];
        night.before.emplace_back();
        if (!site.has_archive()) continue;
        const std::string path = archive_path(i);
        night.files.set_content(
            path, templates.archive(site.archive_tracks, site.startjahr, !site.fresh, site.four_hours));
        const auto put = [&](const DateTime& day, int q, float value) {
            night.files.set_bytes(path, cell(site.archive_tracks, day.year - site.startjahr, day, q, 1),
                                  {reinterpret_cast<const char*>(&value), sizeof value});
        };
        const DateTime newest = later(plan.start, -86'400'000LL * site.days_ago);
        put(newest, 1, 17.5F);
        if (site.newest_is_full) put(newest, 96, 17.25F);
        put(later(newest, -86'400'000LL * 3), 40, -999.0F);
        night.before.back() = night.files.content(path);
    }
}

// ---- digests ----

class Digest {
  public:
    void add(std::string_view bytes) {
        add(bytes.size());
        std::size_t at = 0;
        for (; at + 8 <= bytes.size(); at += 8) {
            std::uint64_t some = 0;
            std::copy_n(bytes.data() + at, 8, reinterpret_cast<char*>(&some));
            add(some);
        }
        for (; at < bytes.size(); ++at) add(static_cast<unsigned char>(bytes[at]));
    }
    void add(std::uint64_t number) { value_ = plant::spread(value_ ^ number); }
    std::uint64_t value() const { return value_; }

  private:
    std::uint64_t value_ = 0;
};

} // namespace

BlockFiles::Content ArchiveTemplates::archive(int tracks, int startjahr, bool used, bool four_hours) {
    BlockFiles::Content& made = made_[{tracks, startjahr, used, four_hours}];
    if (made.length > 0) return made;
    constexpr const char* path = "c:\\neu.dat";
    BlockFiles disk;
    Archive archive(disk);
    if (used || four_hours) {
        disk.set_content(path, this->archive(tracks, startjahr, false, false));
        (void)archive.open(path);
    } else {
        (void)archive.create(path, static_cast<std::int16_t>(startjahr), static_cast<std::int16_t>(tracks),
                             DateTime{startjahr, 1, 1, 0, 0, 0, 0});
    }
    if (used) {
        archive.upgrade();
        for (std::size_t t = 1; t <= static_cast<std::size_t>(tracks); ++t) {
            archive.spurnamen[t] = "Spur          ";
            archive.spureinheiten[t] = "kW   ";
        }
    }
    if (four_hours) archive.set_daten(1, 2, 31, 2, 0, -999.0F);
    (void)archive.save();
    archive.close();
    made = disk.content(path);
    return made;
}

DateTime later(const DateTime& clock, std::int64_t ms) {
    return date_time_of({serial_of(clock).days + static_cast<double>(ms) / 86'400'000.0}).value();
}

void run_night(const NightPlan& plan, ArchiveTemplates& templates, Night& night) {
    lay_archives(plan, templates, night);
    DateTime next = plan.start;
    {
        Life life(plan, night.files, plan.start, 0);
        life.set_up();
        night.watches.push_back(life.run(plan.kill));
        if (night.watches.back().end != Watch::End::killed) {
            life.close();
            return;
        }
        next = later(plan.start, life.now_ms() + plan.kill->away_ms);
    }
    Life life(plan, night.files, next, plan.kill->seed);
    if (life.interrupted()) night.watches.push_back(life.continuation());
    night.watches.push_back(life.run(std::nullopt));
    life.close();
}

std::uint64_t digest_of(const Night& night) {
    Digest digest;
    std::map<const BlockFiles::Block*, std::uint64_t> known;
    for (const std::string& name : night.files.names()) {
        digest.add(name);
        const BlockFiles::Content content = night.files.content(name);
        digest.add(static_cast<std::uint64_t>(content.length));
        for (const auto& block : content.blocks) {
            auto [at, fresh] = known.try_emplace(block.get(), 0);
            if (fresh) {
                Digest of_block;
                of_block.add({block->data(), block->size()});
                at->second = of_block.value();
            }
            digest.add(at->second);
        }
    }
    for (const Watch& watch : night.watches) {
        digest.add(watch.terminal);
        digest.add(watch.log);
        for (const LineEvent& event : watch.line) {
            digest.add(static_cast<std::uint64_t>(event.ms));
            digest.add(event.bytes);
        }
    }
    return digest.value();
}

} // namespace velorn::test
