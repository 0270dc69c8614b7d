// Drawing a chart's curves at 1000 x 600 beside the least that has to be done (one plain stroke for each
// column of pixels, from the smallest to the largest of all its samples) and beside the toolkit's own lines.
//     chart_bench [ROUNDS]      (QT_QPA_PLATFORM=offscreen serves)
#include "desktop/image_canvas.h"
#include "desktop/text_rim.h"
#include "rounds.h"

#include <QGuiApplication>
#include <QPainter>

#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

using namespace velorn;
using namespace velorn::bench;

namespace {

constexpr int width = 1000, height = 600; // device pixels
constexpr int days = 366;
constexpr int quarters = 96;
constexpr int units = 300; // logical ones in the height
constexpr double scale_x = double{width} / days;
constexpr double scale_y = double{height} / units;
constexpr int thick = 2;
constexpr int times = 5;

constexpr std::array<Colour, 6> colours{colour::blue,
                                        colour::red,
                                        colour::rgb(0, 128, 0),
                                        colour::black,
                                        colour::rgb(128, 0, 128),
                                        colour::rgb(128, 128, 0)};
Colour colour_of(std::size_t curve) { return colours[curve % colours.size()]; }

using Curve = std::vector<int>; // logical units from the top

// Days and seasons, and noise from sample to sample.
std::vector<Curve> curves(std::size_t count, int samples_a_day) {
    std::vector<Curve> all(count);
    unsigned noise = 1;
    for (std::size_t c = 0; c < count; ++c) {
        for (int i = 0; i < days * samples_a_day; ++i) {
            noise = noise * 1664525U + 1013904223U;
            const double day = double(i) / samples_a_day;
            const double value = 150 + 70 * std::sin(day / 58 + double(c)) + 40 * std::sin(day * 6.2832) +
                                 double(noise >> 24U) / 16;
            all[c].push_back(static_cast<int>(value));
        }
    }
    return all;
}

// ---- a year in quarter-hours ----

void draw_year(Canvas& canvas, const std::vector<Curve>& year) {
    canvas.clear(colour::white);
    for (std::size_t c = 0; c < year.size(); ++c) {
        const Colour colour = colour_of(c);
        const Curve& curve = year[c];
        std::size_t i = 0;
        int before_x = 0;
        int before_y = curve[0];
        for (int day = 0; day < days; ++day) {
            for (int quarter = 0; quarter < quarters; ++quarter, ++i) {
                canvas.line(before_x, before_y, day, curve[i], colour);
                before_x = day;
                before_y = curve[i];
            }
        }
    }
}

void draw_columns(QImage& image, const std::vector<Curve>& year) {
    image.fill(Qt::white);
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    const auto stride = image.bytesPerLine() / qsizetype{4};
    for (std::size_t c = 0; c < year.size(); ++c) {
        const QRgb pixel = to_qcolor(colour_of(c)).rgb();
        const Curve& curve = year[c];
        std::size_t i = 0;
        for (int x = 0; x < width; ++x) {
            const std::size_t end = curve.size() * static_cast<std::size_t>(x + 1) / width;
            int low = curve[i == 0 ? 0 : i - 1]; // joined to the column before
            int high = low;
            for (; i < end; ++i) {
                low = std::min(low, curve[i]);
                high = std::max(high, curve[i]);
            }
            const int from = std::clamp(static_cast<int>(std::lround(low * scale_y)), 0, height);
            const int to = std::clamp(static_cast<int>(std::lround(high * scale_y)) + 1, 0, height);
            for (int y = from; y < to; ++y) pixels[y * stride + x] = pixel;
        }
    }
}

void draw_year_plainly(QImage& image, const std::vector<Curve>& year) {
    image.fill(Qt::white);
    QPainter painter(&image);
    for (std::size_t c = 0; c < year.size(); ++c) {
        painter.setPen(QPen(to_qcolor(colour_of(c)), 1));
        const Curve& curve = year[c];
        for (std::size_t i = 1; i < curve.size(); ++i) {
            painter.drawLine(static_cast<int>(double((i - 1) / quarters) * scale_x),
                             static_cast<int>(curve[i - 1] * scale_y),
                             static_cast<int>(double(i / quarters) * scale_x),
                             static_cast<int>(curve[i] * scale_y));
        }
    }
}

// ---- many curves of a sample a day ----

void draw_days(Canvas& canvas, const std::vector<Curve>& many) {
    canvas.clear(colour::white);
    for (std::size_t c = 0; c < many.size(); ++c) {
        for (int day = 1; day < days; ++day)
            canvas.line(day - 1, many[c][std::size_t(day) - 1], day, many[c][std::size_t(day)], colour_of(c));
    }
}

void draw_days_plainly(QImage& image, const std::vector<Curve>& many, int pen) {
    image.fill(Qt::white);
    QPainter painter(&image);
    for (std::size_t c = 0; c < many.size(); ++c) {
        painter.setPen(QPen(to_qcolor(colour_of(c)), pen, Qt::SolidLine, Qt::SquareCap));
        for (int day = 1; day < days; ++day) {
            painter.drawLine(static_cast<int>((day - 1) * scale_x),
                             static_cast<int>(many[c][std::size_t(day) - 1] * scale_y),
                             static_cast<int>(day * scale_x),
                             static_cast<int>(many[c][std::size_t(day)] * scale_y));
        }
    }
}

template <class Draw>
double ms(Draw draw) {
    const double begin = seconds_now();
    for (int i = 0; i < times; ++i) draw();
    return (seconds_now() - begin) / times * 1e3;
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 15;
    const std::vector<Curve> year = curves(10, quarters);
    const std::vector<Curve> many = curves(60, 1);
    QImage image(width, height, QImage::Format_RGB32);
    ImageCanvas canvas(days, units, scale_x, scale_y);
    ImageCanvas thin(days, units, scale_x, 1.49); // lines of one pixel
    const auto looked_at = [](ImageCanvas& on, const std::vector<Curve>& drawn, auto draw) {
        return ms([&] {
            draw(on, drawn);
            (void)on.image();
        });
    };
    run(
        {
            {"columns_10_years", "ms", [&] { return ms([&] { draw_columns(image, year); }); }},
            {"drawLine_10_years", "ms", [&] { return ms([&] { draw_year_plainly(image, year); }); },
             "columns_10_years"},
            {"canvas_10_years", "ms", [&] { return looked_at(canvas, year, draw_year); }, "columns_10_years",
             1.3},
            {"canvas_10_years_1_pixel", "ms", [&] { return looked_at(thin, year, draw_year); },
             "columns_10_years", 1.3},
            {"drawLine_60_x_366", "ms", [&] { return ms([&] { draw_days_plainly(image, many, thick); }); }},
            {"canvas_60_x_366", "ms", [&] { return looked_at(canvas, many, draw_days); }, "drawLine_60_x_366",
             2},
            {"drawLine_60_x_366_1_pixel", "ms",
             [&] { return ms([&] { draw_days_plainly(image, many, 1); }); }},
            {"canvas_60_x_366_1_pixel", "ms", [&] { return looked_at(thin, many, draw_days); },
             "drawLine_60_x_366_1_pixel", 2},
        },
        rounds);
    return 0;
}
