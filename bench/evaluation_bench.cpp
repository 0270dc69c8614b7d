// The evaluation of a year: sums, means and points of many tracks beside a plain copy of the same block of
// the archive (M), and whole charts at 1000 x 600 beside plain strokes of the same data, the toolkit's own
// lines, and, where it is installed, rrdtool with a file of the same data.
//     evaluation_bench [ROUNDS] [FOLDER]      (QT_QPA_PLATFORM=offscreen serves)
#include "archive/archive_layout.h"
#include "desktop/image_canvas.h"
#include "desktop/text_rim.h"
#include "evaluation/evaluation.h"
#include "rounds.h"
#include "runtime/disk_files.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_printer.h"
#include "support/nobody_there.h"

#include <QGuiApplication>
#include <QPainter>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>

using namespace velorn;
using namespace velorn::bench;

namespace {

constexpr std::int16_t startjahr = 2024; // a leap year
constexpr int width = 1000, height = 600;
constexpr double scale_x = double{width} / chart_width;
constexpr double scale_y = double{height} / chart_height;

template <class Work>
double ms(Work work) {
    const double begin = seconds_now();
    work();
    return (seconds_now() - begin) * 1e3;
}

void must(bool fine, const char* what) {
    if (fine) return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

// Days and seasons, noise, and now and then a gap.
void fill_year(Archive& archive) {
    unsigned noise = 1;
    for (int month = 1; month <= 12; ++month) {
        for (int day = 1; day <= 31; ++day) {
            for (int quarter = 1; quarter <= 96; ++quarter) {
                const double season = (month * 31 + day) / 58.0;
                for (int track = 1; track <= archive.spuranz; ++track) {
                    noise = noise * 1664525U + 1013904223U;
                    const double value = 50 + 20 * std::sin(season + track) +
                                         15 * std::sin(quarter / 96.0 * 6.2832) + double(noise >> 24U) / 40;
                    archive.set_daten(0, month, day, quarter, track,
                                      noise >> 20U < 20 ? -999.0F : static_cast<float>(value));
                }
            }
        }
    }
}

class Bench {
  public:
    explicit Bench(const std::string& folder, std::int16_t tracks)
        : paths_(folder),
          path_(folder + "/bench" + std::to_string(tracks) + ".dat"),
          archive_(files_),
          evaluation_(loop_, dialogs_, printer_, ScreenSize{1920, 1080}, module1_, frmgrafick_, archive_),
          canvas_(chart_width, chart_height, scale_x, scale_y) {
        must(archive_.create(path_, startjahr, tracks, DateTime{startjahr, 1, 1}).operator bool(),
             "no archive");
        fill_year(archive_);
        frmgrafick_.geladen = true;
        frmgrafick_.opening = 1;
        frmgrafick_.tagsel = frmgrafick_.monsel = 1;
        frmgrafick_.jahrsel = startjahr;
        archive_.ylimin = 0.0;
        archive_.ylimax = 120.0;
        controls().Picture1.canvas = &canvas_;
        evaluation_.archive_opened();
    }

    ~Bench() {
        archive_.close();
        std::filesystem::remove(path_);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    EvaluationControls& controls() { return evaluation_.controls; }
    Archive& archive() { return archive_; }

    void show(int tracks) {
        for (int track = 0; track <= archive_.spuranz; ++track) {
            archive_.spursichtbar[std::size_t(track)] = track >= 1 && track <= tracks;
            archive_.spurfarben[std::size_t(track)] = std::int32_t(track * 4021 % 0xFFFFFF);
        }
    }

    double copy() {
        const std::span<const float> year = archive_.year(0);
        if (copied_.size() != year.size()) copied_.resize(year.size());
        return ms([&] { std::memcpy(copied_.data(), year.data(), year.size_bytes()); });
    }

    double figures(int tracks) {
        const std::vector<CalendarDay> days = days_of_view(View::year, {1, 1, startjahr}, startjahr);
        std::vector<int> all(static_cast<std::size_t>(tracks));
        std::iota(all.begin(), all.end(), 1);
        return ms([&] { sink_ += figures_of(archive_, Table::daten, startjahr, days, all, 96).back().sum; });
    }

    // The whole window: rows, figures and picture.
    double chart(int tracks, int ansicht, bool quarters) {
        show(tracks);
        archive_.ansicht = static_cast<std::int16_t>(ansicht);
        controls().viertelmodus = quarters ? 1 : 0;
        return ms([&] {
            evaluation_.neuzeichnen();
            sink_ += canvas_.image().width();
        });
    }

    // Holding down "+ Tag": every step drawn.
    double film(int steps) {
        show(10);
        archive_.ansicht = std::int16_t{1};
        const double all = ms([&] {
            for (int i = 0; i < steps; ++i) {
                controls().plustag.Click();
                sink_ += canvas_.image().width();
            }
        });
        return all / steps;
    }

    // The same year as one stroke for each column of pixels, from its smallest to its largest value: drawn by
    // the toolkit, or straight into the image.
    enum class Strokes { toolkit, pixels };
    double columns(int tracks, Strokes strokes) {
        const std::vector<CalendarDay> days = days_of_view(View::year, {1, 1, startjahr}, startjahr);
        const int stride = archive_.spuranz + 1;
        return ms([&] {
            image_.fill(Qt::white);
            auto* const pixels = reinterpret_cast<QRgb*>(image_.bits());
            const auto line = image_.bytesPerLine() / qsizetype{4};
            const float* const year = archive_.year(0).data();
            for (int track = 1; track <= tracks; ++track) {
                const QRgb pixel = QRgb(0xFF000000U | unsigned(track * 4021 % 0xFFFFFF));
                int column = 0;
                float low = HUGE_VALF;
                float high = -HUGE_VALF;
                std::vector<QLine> lines;
                const auto end_column = [&](int next) {
                    const int from =
                        std::clamp(int(std::round(510 - double(high) * 500 / 120) * scale_y), 0, height);
                    const int to =
                        std::clamp(int(std::round(510 - double(low) * 500 / 120) * scale_y) + 1, 0, height);
                    if (strokes == Strokes::toolkit)
                        lines.emplace_back(column, from, column, to - 1);
                    else
                        for (int y = from; y < to; ++y) pixels[y * line + column] = pixel;
                    column = next;
                    low = HUGE_VALF;
                    high = -HUGE_VALF;
                };
                for (std::size_t day = 0; day < days.size(); ++day) {
                    const float* value =
                        year + archive_layout::row_of(days[day].mon, days[day].tag, 1) * stride + track;
                    for (int quarter = 0; quarter < 96; ++quarter, value += stride) {
                        const int at = int((80 + double(day) + quarter / 96.0) * scale_x);
                        if (at != column) end_column(at);
                        if (!present(*value)) continue;
                        low = std::min(low, *value);
                        high = std::max(high, *value);
                    }
                }
                end_column(0);
                if (strokes == Strokes::pixels) continue;
                QPainter painter(&image_);
                painter.setPen(QColor(pixel));
                painter.drawLines(lines.data(), int(lines.size()));
            }
            sink_ += image_.pixel(1, 1);
        });
    }

    // The day means of a year with the toolkit's lines, which get their points for nothing.
    double lines(int tracks) {
        const std::vector<CalendarDay> days = days_of_view(View::year, {1, 1, startjahr}, startjahr);
        std::vector<int> all(static_cast<std::size_t>(tracks));
        std::iota(all.begin(), all.end(), 1);
        const std::vector<TrackFigures> figures =
            figures_of(archive_, Table::daten, startjahr, days, all, 96);
        return ms([&] {
            image_.fill(Qt::white);
            QPainter painter(&image_);
            for (std::size_t t = 0; t < figures.size(); ++t) {
                painter.setPen(QPen(QColor(QRgb(t * 4021)), 1));
                for (std::size_t day = 1; day < figures[t].slots.size(); ++day) {
                    const auto y = [&](std::size_t at) {
                        return int((510 - figures[t].slots[at] * 500 / 120) * scale_y);
                    };
                    painter.drawLine(int(double(80 + day) * scale_x), y(day - 1),
                                     int(double(81 + day) * scale_x), y(day));
                }
            }
        });
    }

    void write_rrd(const std::string& path);

    double sink() const { return sink_; }

  private:
    Paths paths_;
    std::string path_;
    VirtualEventLoop loop_;
    DiskFiles files_{paths_};
    test::NobodyThere dialogs_;
    test::FakePrinter printer_;
    Module1 module1_;
    FrmGrafick frmgrafick_{loop_};
    Archive archive_;
    Evaluation evaluation_;
    ImageCanvas canvas_;
    QImage image_{width, height, QImage::Format_RGB32};
    std::vector<float> copied_;
    double sink_ = 0;
};

constexpr long long rrd_start = 1700000100; // a multiple of 900

void Bench::write_rrd(const std::string& path) {
    std::string create = "rrdtool create " + path + " --start " + std::to_string(rrd_start) + " --step 900";
    for (int track = 1; track <= 10; ++track) create += " DS:s" + std::to_string(track) + ":GAUGE:1800:U:U";
    must(std::system((create + " RRA:AVERAGE:0.5:1:35136").c_str()) == 0, "rrdtool create");
    const std::vector<CalendarDay> days = days_of_view(View::year, {1, 1, startjahr}, startjahr);
    long long moment = rrd_start;
    for (std::size_t first = 0; first < days.size(); first += 6) {
        std::string update = "rrdtool update " + path;
        for (std::size_t day = first; day < std::min(days.size(), first + 6); ++day) {
            for (int quarter = 1; quarter <= 96; ++quarter) {
                update += ' ' + std::to_string(moment += 900);
                for (int track = 1; track <= 10; ++track) {
                    const float value = archive_.daten(0, days[day].mon, days[day].tag, quarter, track);
                    update += present(value) ? ':' + std::to_string(value) : ":U";
                }
            }
        }
        must(std::system(update.c_str()) == 0, "rrdtool update");
    }
}

std::string graph_command(const std::string& path) {
    std::string graph = "rrdtool graph " + path + ".png -s " + std::to_string(rrd_start) + " -e " +
                        std::to_string(rrd_start + 35136 * 900) + " -w 1000 -h 600 --full-size-mode";
    for (int track = 1; track <= 10; ++track) {
        const std::string name = 'v' + std::to_string(track);
        char colour[8];
        std::snprintf(colour, sizeof colour, "%06x", unsigned(track * 4021 % 0xFFFFFF));
        graph += " DEF:" + name + '=' + path + ":s" + std::to_string(track) + ":AVERAGE LINE1:" + name + '#' +
                 colour;
    }
    return graph + " >/dev/null";
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    const std::string folder = argc > 2 ? argv[2] : std::filesystem::temp_directory_path().string();
    Bench bench(folder, 150);
    std::vector<Case> cases{
        {"M_copy_of_the_years_block", "ms", [&] { return bench.copy(); }},
        {"figures_150_tracks", "ms", [&] { return bench.figures(150); }, "M_copy_of_the_years_block", 1.6},
        {"figures_10_tracks", "ms", [&] { return bench.figures(10); }, "M_copy_of_the_years_block", 0.7},
        {"columns_10_tracks", "ms", [&] { return bench.columns(10, Bench::Strokes::toolkit); }},
        {"columns_10_tracks_into_the_image", "ms", [&] { return bench.columns(10, Bench::Strokes::pixels); },
         "columns_10_tracks"},
        {"chart_10_tracks_quarters", "ms", [&] { return bench.chart(10, 4, true); }, "columns_10_tracks",
         1.3},
        {"lines_60_tracks", "ms", [&] { return bench.lines(60); }},
        {"chart_60_tracks_year", "ms", [&] { return bench.chart(60, 4, false); }, "lines_60_tracks", 2},
        {"chart_10_tracks_year", "ms", [&] { return bench.chart(10, 4, false); }},
        {"chart_10_tracks_month", "ms", [&] { return bench.chart(10, 3, false); }},
        {"chart_10_tracks_week", "ms", [&] { return bench.chart(10, 2, false); }},
        {"chart_10_tracks_day", "ms", [&] { return bench.chart(10, 1, false); }},
        {"a_step_of_plus_tag", "ms", [&] { return bench.film(60); }},
    };
    const std::string rrd = folder + "/velorn_bench.rrd";
    if (std::system("rrdtool --version >/dev/null 2>&1") == 0) {
        bench.write_rrd(rrd);
        const std::string graph = graph_command(rrd);
        cases.push_back({"rrdtool_graph_10_tracks", "ms",
                         [&, graph] { return ms([&] { must(std::system(graph.c_str()) == 0, "rrdtool"); }); },
                         "chart_10_tracks_quarters", 15});
    }
    run(std::move(cases), rounds);
    std::filesystem::remove(rrd);
    std::filesystem::remove(rrd + ".png");
    return bench.sink() == 0;
}
