// Painting the mirrored display at double scale, beside a plain loop that draws the same characters with the
// toolkit's own text, each at its place.
//     display_bench [ROUNDS]      (QT_QPA_PLATFORM=offscreen serves)
#include "core/frm_terminal.h"
#include "core/settings.h"
#include "desktop/image_canvas.h"
#include "rounds.h"
#include "runtime/virtual_event_loop.h"
#include "terminal/screen_painter.h"

#include <QApplication>
#include <QPainter>

#include <cstdlib>
#include <memory>

using namespace velorn;
using namespace velorn::bench;

namespace {

constexpr double scale = 2;
constexpr int cell_width = 12;
constexpr int cell_height = 19;
constexpr int times = 20;

struct MirroredDisplay {
    VirtualEventLoop loop;
    Settings settings;
    FrmTerminal frmTerminal{loop};
    ScreenParser parser{loop, frmTerminal};
    ScreenPainter painter{frmTerminal, settings, parser};
    ImageCanvas canvas{cell_width * 82, cell_height * 31, scale};

    MirroredDisplay() {
        settings.korrinv = std::int16_t{0};
        frmTerminal.zeichenbreite = cell_width;
        frmTerminal.zeilenhoehe = cell_height;
        frmTerminal.Picture1.canvas = &canvas;
        for (int row = 1; row <= Schirm::rows; ++row) {
            for (int column = 1; column <= Schirm::columns; ++column)
                frmTerminal.schirm.set_character(column, row,
                                                 static_cast<char>('!' + (row * 7 + column) % 90));
        }
        painter.paint_anew();
    }

    double whole_ms() {
        const double begin = seconds_now();
        for (int i = 0; i < times; ++i) {
            parser.state.aenderungen = Schirm::columns * Schirm::rows;
            painter.paint();
        }
        return (seconds_now() - begin) / times * 1e3;
    }

    double cells_ms(int cells) {
        const double begin = seconds_now();
        for (int i = 0; i < times; ++i) {
            for (int k = 0; k < cells; ++k) frmTerminal.schirm.set_mark(k * 13 % 80 + 1, k * 7 % 29 + 1);
            parser.state.aenderungen = cells;
            painter.paint();
        }
        return (seconds_now() - begin) / times * 1e3;
    }
};

// The toolkit's text, one character after the other.
class Plain {
  public:
    Plain()
        : image_(static_cast<int>(cell_width * 82 * scale), static_cast<int>(cell_height * 31 * scale),
                 QImage::Format_RGB32) {
        image_.setDevicePixelRatio(scale);
        font_.setPixelSize(17);
        for (int i = 0; i < 90; ++i) letters_.push_back(QString(QChar(u'!' + i)));
    }
    double ms() {
        const double begin = seconds_now();
        for (int i = 0; i < times; ++i) {
            image_.fill(Qt::blue);
            QPainter painter(&image_);
            painter.setFont(font_);
            painter.setPen(Qt::yellow);
            for (int row = 1; row <= Schirm::rows; ++row) {
                for (int column = 1; column <= Schirm::columns; ++column)
                    painter.drawText(cell_width * column, cell_height * row + 14,
                                     letters_[(row * 7 + column) % 90]);
            }
        }
        return (seconds_now() - begin) / times * 1e3;
    }

  private:
    QImage image_;
    QFont font_ = fixed_pitch_font(QStringLiteral("Courier New"));
    QStringList letters_;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    const auto display = std::make_unique<MirroredDisplay>();
    Plain plain;
    run(
        {
            {"drawText_2320", "ms", [&] { return plain.ms(); }},
            {"whole_2320", "ms", [&] { return display->whole_ms(); }, "drawText_2320", 1.2},
            {"cells_150", "ms", [&] { return display->cells_ms(150); }, "whole_2320", 0.2},
        },
        rounds);
    return 0;
}
