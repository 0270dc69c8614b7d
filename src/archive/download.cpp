#include "archive/download.h"

#include "runtime/calendar.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace velorn {

namespace {

constexpr std::string_view attention = "\x01";
constexpr std::string_view over = "\x08";
constexpr std::string_view good = "OK";
constexpr std::string_view bad = "ER";
constexpr std::string_view repeat_range = "\x1b\x1b"
                                          "D7";
constexpr std::string_view range_accepted = "\x1b\x1b"
                                            "D6";
constexpr std::string_view frame_end = "\x1b\x1b"
                                       "D5";
constexpr std::string_view transfer_end = "\x1b\x1b"
                                          "D4";
constexpr int sets_of_a_4h_packet = 16;

constexpr std::int16_t initialising = 2, sending_range = 1, receiving = 0;
constexpr std::int16_t quarter_packets = 1;

constexpr std::int16_t steps_of_attention = 15; // of 100 ms
constexpr std::int16_t steps_behind_command = 8;
constexpr std::int16_t steps_before_newest = 3;

// The cell in which the archive keeps the mode.
struct ModeCell {
    static constexpr int y = 1, m = 2, d = 31, q = 2, t = 0;
};
constexpr float mode_4h = -999.0F;

std::string two_digits(int number) { return format(static_cast<double>(number), "00"); }
std::string four_digits(int number) { return format(static_cast<double>(number), "0000"); }

int number_in(const ComboBox& box) {
    return static_cast<int>(round_to_even(number_of(box.Text()).value_or(0)));
}

void fill(ComboBox& box, int first, int last) {
    std::vector<ComboBox::Item> items;
    for (int i = first; i <= last; ++i) items.push_back({std::to_string(i), {}});
    box.set_List(std::move(items));
}

} // namespace

Download::Download(EventLoop& loop, Module1& module1, const FrmTelefon& frmtelefon, FrmGrafick& frmgrafick,
                   Archive& archive, DownloadDiary& diary, Output& output, ReceiveEvents& receive_events)
    : loop_(loop),
      module1_(module1),
      frmtelefon_(frmtelefon),
      frmgrafick_(frmgrafick),
      archive_(archive),
      diary_(diary),
      output_(output) {
    frmgrafick_.opendathol.Click = [this] { opendathol_Click(); };
    frmgrafick_.closedathol.Click = [this] { closedathol_Click(); };
    frmgrafick_.download.Click = [this] { download_Click(); };
    frmgrafick_.optuebertrag.Click = [this](int index) { optuebertrag_Click(index); };
    frmgrafick_.Timer4.Tick = [this] { Timer4_Tick(); };
    frmgrafick_.Timer5.Tick = [this] { Timer5_Tick(); };
    receive_events.download_input.connect([this](std::string_view text, bool emptied) {
        if (!frmgrafick_.geladen) return;
        if (emptied) frmgrafick_.txtempf.set_Text({});
        const std::size_t before = frmgrafick_.txtempf.length();
        frmgrafick_.txtempf.append(text);
        txtempf_Change(before);
        if (const std::size_t length = frmgrafick_.txtempf.length(); length > longest_text)
            frmgrafick_.txtempf.remove_front(length - longest_text / 2);
    });
}

// ---- the panel ----

void Download::opendathol_Click() {
    frmgrafick_.picdownload.Visible = true;
    frmgrafick_.txtempf.set_Text({});
    module1_.empfleeren = true;
    showing_mode_ = true;
    frmgrafick_.optuebertrag.select(frmgrafick_.dlmodus >= quarter_packets ? 1 : 0);
    showing_mode_ = false;
    for (ComboBox* days : {&frmgrafick_.cbodatstart, &frmgrafick_.cbodatstop}) fill(*days, 1, 31);
    for (ComboBox* months : {&frmgrafick_.cbomonstart, &frmgrafick_.cbomonstop}) fill(*months, 1, 12);
    for (ComboBox* years : {&frmgrafick_.cbojahrstart, &frmgrafick_.cbojahrstop})
        fill(*years, first_year(), first_year() + 9);
    const DateTime today = loop_.local_time();
    set_start({today.day, today.month, today.year});
    set_stop({today.day, today.month, today.year});
    frmgrafick_.fortschritt.Value = 0;
    frmgrafick_.fortschritt.Text = "";
}

void Download::closedathol_Click() {
    frmgrafick_.picdownload.Visible = false;
    frmgrafick_.txtempf.Visible = false;
    frmgrafick_.txtausw.Visible = false;
    module1_.empfgrafick = false;
    frmgrafick_.txtempf.set_Text({});
    panel_closed();
}

void Download::set_start(Day day) {
    frmgrafick_.cbodatstart.set_Text(std::to_string(day.day));
    frmgrafick_.cbomonstart.set_Text(std::to_string(day.month));
    frmgrafick_.cbojahrstart.set_Text(std::to_string(day.year));
}

void Download::set_stop(Day day) {
    frmgrafick_.cbodatstop.set_Text(std::to_string(day.day));
    frmgrafick_.cbomonstop.set_Text(std::to_string(day.month));
    frmgrafick_.cbojahrstop.set_Text(std::to_string(day.year));
}

void Download::mode_from_archive() {
    using Cell = ModeCell;
    const bool packets_of_4h = archive_.daten(Cell::y, Cell::m, Cell::d, Cell::q, Cell::t) == mode_4h;
    frmgrafick_.dlmodus = packets_of_4h ? std::int16_t{0} : quarter_packets;
}

void Download::optuebertrag_Click(int index) {
    using Cell = ModeCell;
    if (showing_mode_) return;
    frmgrafick_.dlmodus = index == 0 ? std::int16_t{0} : quarter_packets;
    if (!archive_.is_open()) return;
    archive_.set_daten(Cell::y, Cell::m, Cell::d, Cell::q, Cell::t, index == 0 ? mode_4h : 0.0F);
    (void)may_store();
}

// False: the archive's file is lost, which was told, and what comes goes nowhere.
bool Download::may_store() {
    if (!archive_.failed()) return true;
    archive_failed();
    return false;
}

// ---- beginning ----

// False: the window was closed or opened anew meanwhile, or the program ends: return now.
bool Download::wait_steps(std::int16_t steps) {
    const int opening = frmgrafick_.opening;
    frmgrafick_.dlzaehler = steps;
    frmgrafick_.Timer1.Enabled = true;
    const bool goes_on =
        loop_.wait_until([&] { return frmgrafick_.dlzaehler < 1 || !frmgrafick_.still_open(opening); });
    return goes_on && frmgrafick_.still_open(opening);
}

void Download::download_Click() {
    module1_.empfgrafick = true;
    module1_.empfleeren = true;
    frmgrafick_.txtempf.Visible = true;
    frmgrafick_.dlphase = initialising;
    frmgrafick_.neuwerte = 0;
    vain_seconds_ = 0;
    // Without it a crash loses what comes now, no more.
    (void)diary_.begin(archive_, frmgrafick_.archivgeladen);
    output_.sendetext(attention);
    if (!wait_steps(steps_of_attention)) return;
    if (frmtelefon_.viertelcheck.Value) frmgrafick_.dlmodus = quarter_packets;
    output_.sendetext(frmgrafick_.dlmodus >= quarter_packets ? "DUE3\r" : "DUE4\r");
    frmgrafick_.labstatus.Caption = "warte auf Rückmeldung"_w;
    if (!wait_steps(steps_behind_command)) return;
    module1_.empfleeren = true;
    frmgrafick_.stillsek = 0;
    frmgrafick_.dlsek = 0;
    frmgrafick_.Timer4.Enabled = true;
}

void Download::fetch_newest() {
    frmgrafick_.dlmodus = quarter_packets;
    frmgrafick_.picdownload.Visible = true;
    module1_.empfgrafick = true;
    module1_.empfleeren = true;
    frmgrafick_.txtempf.Visible = true;
    frmgrafick_.dlphase = receiving;
    frmgrafick_.neuwerte = 0;
    vain_seconds_ = 0;
    (void)diary_.begin(archive_, frmgrafick_.archivgeladen);
    output_.sendetext(attention);
    if (!wait_steps(steps_before_newest)) return;
    output_.sendetext("DUE5\r");
    frmgrafick_.labstatus.Caption = "warte auf Rückmeldung"_w;
    frmgrafick_.stillsek = 0;
    frmgrafick_.dlsek = 0;
    frmgrafick_.Timer4.Enabled = true;
}

void Download::end() {
    module1_.empfgrafick = false;
    frmgrafick_.Timer1.Enabled = false;
    frmgrafick_.Timer4.Enabled = false;
    frmgrafick_.Timer5.Enabled = false;
    frmgrafick_.txtempf.set_Text({});
    frmgrafick_.txtausw.set_Text({});
}

// ---- frames ----

// Only one case acts per change; what else the box holds is lost with its emptying.
void Download::txtempf_Change(std::size_t before) {
    frmgrafick_.stillsek = 0;
    const std::string& text = frmgrafick_.txtempf.Text();
    // An end that stood there before was acted on before.
    const std::size_t from = before < 3 ? 0 : before - 3;
    const auto holds = [&](std::string_view end) { return text.find(end, from) != std::string::npos; };
    const int opening = frmgrafick_.opening;
    if (holds(repeat_range)) {
        module1_.empfleeren = true;
        read_frame();
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return;
        frmgrafick_.dlphase = sending_range;
        frmgrafick_.Timer5.Enabled = true;
    } else if (holds(range_accepted)) {
        module1_.empfleeren = true;
        frmgrafick_.dlphase = receiving;
    } else if (holds(frame_end)) {
        frmgrafick_.txtausw.set_Text(text);
        module1_.empfleeren = true;
        read_frame();
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return;
        if (frmgrafick_.dlphase == sending_range) {
            frmgrafick_.Timer5.Enabled = false;
            frmgrafick_.dlphase = initialising; // the controller has started over
        }
    } else if (holds(transfer_end)) {
        complete();
    }
}

void Download::read_frame() {
    // Between two archives there is nowhere to put it.
    if (!archive_.is_open()) return;
    bool understood = true;
    if (frmgrafick_.dlphase == initialising) {
        understood = read_initialisation();
    } else if (frmgrafick_.dlphase == receiving) {
        understood = read_data(frmgrafick_.dlmodus >= quarter_packets ? 1 : sets_of_a_4h_packet);
    }
    if (!understood) transfer_error();
}

bool Download::read_initialisation() {
    frmgrafick_.labstatus.Caption = "Initialisierungsdaten";
    const auto all = take_initialisation(frmgrafick_.txtausw.Text(), archive_.spuranz);
    if (!all) return false;
    archive_.exportspuren = static_cast<std::int16_t>(all->tracks);
    for (std::size_t i = 0; i < all->units.size(); ++i) {
        archive_.spureinheiten[i + 1] = all->units[i];
        archive_.spurnamen[i + 1] = all->names[i];
    }
    frmgrafick_.labstatus.Caption = "Sende OK";
    output_.sendetext(good);
    frmgrafick_.dlzaehler = 4;
    frmgrafick_.Timer5.Enabled = true;
    return true;
}

int Download::first_year() const {
    const Result<std::int16_t> year = archive_.startjahr.as_i16();
    return year ? *year : 0;
}

int Download::year_index(int two_digits) const { return two_digits - first_year() + 2000; }

bool Download::read_data(int sets) {
    const Result<std::int16_t> wanted = archive_.exportspuren.as_i16();
    const int tracks = std::clamp(wanted ? int{*wanted} : 0, 0, int{archive_.spuranz});
    std::string_view frame = frmgrafick_.txtausw.Text();
    const auto length =
        static_cast<std::size_t>(sets) * (moment_width + value_width * static_cast<std::size_t>(tracks)) +
        frame_end.size();
    if (frame.size() != length) return false;
    std::vector<DataSet> all;
    for (int i = 0; i < sets; ++i) {
        auto set = take_data_set(frame, tracks);
        if (!set) return false;
        all.push_back(std::move(*set));
    }
    int stored = 0;
    for (const DataSet& set : all) stored += store(set) ? 1 : 0;
    frmgrafick_.txtausw.set_Text({});
    if (!may_store()) return true;
    // Kept: a single data set out of range gets no answer at all, and the silence ends the download.
    if (stored > 0 || sets > 1) output_.sendetext(good);
    return true;
}

// False: its date is none that the archive has a place for.
bool Download::store(const DataSet& set) {
    const DataSetHead& head = set.head;
    const int year = year_index(head.year);
    frmgrafick_.labstatus.Caption = "Daten " + std::to_string(head.day) + '.' + std::to_string(head.month) +
                                    '.' + std::to_string(2000 + head.year) + "     " +
                                    std::to_string(head.quarter) + ".te 1/4h";
    const bool in_range = head.day >= 1 && head.day <= 31 && head.month >= 1 && head.month <= 12 &&
                          year >= 0 && year <= 9 && head.quarter >= 1 && head.quarter <= 96;
    if (!in_range) return false;
    for (std::size_t i = 0; i < set.values.size(); ++i)
        archive_.set_daten(year, head.month, head.day, head.quarter, static_cast<int>(i + 1), set.values[i]);
    (void)diary_.add(year, head.month, head.day, head.quarter, set.values);
    ++frmgrafick_.neuwerte;
    vain_seconds_ = 0;
    show_progress(head);
    return true;
}

void Download::transfer_error() {
    frmgrafick_.txtausw.set_Text({});
    frmgrafick_.labstatus.Caption = "ÜBERTRAGUNGSFEHLER"_w;
    if (!wait_steps(1)) return;
    output_.sendetext(bad);
}

// ---- the time range ----

void Download::Timer5_Tick() {
    --frmgrafick_.dlzaehler;
    if (frmgrafick_.dlzaehler == 3) {
        frmgrafick_.labstatus.Caption = "lösche Textfeld"_w;
        frmgrafick_.dlphase = sending_range;
        frmgrafick_.txtausw.set_Text({});
    } else if (frmgrafick_.dlzaehler < 3) {
        frmgrafick_.labstatus.Caption = "sende Zeitraum";
        send_range();
        tracks_told();
        frmgrafick_.Timer5.Enabled = false;
    }
}

void Download::send_range() {
    const ComboBox* const dates[][3] = {
        {&frmgrafick_.cbodatstart, &frmgrafick_.cbomonstart, &frmgrafick_.cbojahrstart},
        {&frmgrafick_.cbodatstop, &frmgrafick_.cbomonstop, &frmgrafick_.cbojahrstop}};
    for (const auto& [day, month, year] : dates) {
        for (const std::string& field :
             {two_digits(number_in(*day)), two_digits(number_in(*month)), four_digits(number_in(*year))}) {
            output_.sendetext(field);
            output_.sendetext(field);
        }
    }
}

// ---- ends ----

void Download::complete() {
    frmgrafick_.labstatus.Caption = "Übertragung fertig!"_w;
    frmgrafick_.txtempf.Visible = false;
    module1_.empfgrafick = false;
    frmgrafick_.Timer4.Enabled = false;
    output_.sendetext(over);
    frmgrafick_.fortschritt.Value = 100;
    frmgrafick_.fortschritt.Text = std::to_string(frmgrafick_.neuwerte) + " neue 1/4h-Daten";
    finished();
}

void Download::Timer4_Tick() {
    ++frmgrafick_.stillsek;
    if (frmgrafick_.dlsek < std::numeric_limits<std::int16_t>::max()) ++frmgrafick_.dlsek;
    if (module1_.autoholen) {
        frmgrafick_.Label33.Caption =
            std::to_string(frmgrafick_.dlsek) + "  Timeout " + std::to_string(frmgrafick_.stillsek) + 's';
        frmgrafick_.Label58.Caption = "Dateinr. " + std::to_string(module1_.telindex);
    }
    ++vain_seconds_;
    // One that talks nonsense without a pause is never silent.
    const bool in_vain = module1_.autoholen && vain_seconds_ > longest_vain;
    if (frmgrafick_.stillsek <= longest_silence && !in_vain) return;
    frmgrafick_.labstatus.Caption = "Timeout (keine Reaktion)";
    frmgrafick_.Timer4.Enabled = false;
    timed_out();
}

// By the days of the wanted range.
void Download::show_progress(const DataSetHead& head) {
    const auto day_number = [](int day, int month, int year) {
        return static_cast<double>(days_from_civil(year, std::clamp(month, 1, 12), 1) + day - 1);
    };
    const double first = day_number(number_in(frmgrafick_.cbodatstart), number_in(frmgrafick_.cbomonstart),
                                    number_in(frmgrafick_.cbojahrstart));
    const double last = 1 + day_number(number_in(frmgrafick_.cbodatstop), number_in(frmgrafick_.cbomonstop),
                                       number_in(frmgrafick_.cbojahrstop));
    const double here = day_number(head.day, head.month, 2000 + head.year) + head.quarter / 96.0;
    if (last <= first) return;
    const double share = std::clamp((here - first) / (last - first), 0.0, 1.0);
    frmgrafick_.fortschritt.Value = static_cast<int>(100 * share);
    if (frmgrafick_.dlsek < 1 || share <= 0) return;
    const double rate = static_cast<double>(frmgrafick_.neuwerte) / frmgrafick_.dlsek;
    constexpr double longest = 100 * 3600.0; // a first value may come after hours
    const int left = static_cast<int>(std::min(frmgrafick_.dlsek * (1 - share) / share, longest));
    frmgrafick_.fortschritt.Text = format(100 * share, "0") + " %   " + format(rate, "0.0") +
                                   " 1/4h-Daten/s   noch " + std::to_string(left / 60) + ':' +
                                   two_digits(left % 60) + " min";
}

} // namespace velorn
