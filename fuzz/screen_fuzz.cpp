// Any bytes in any chunks: the screen parser and its plain make must agree, and what is painted must lie
// where cells and lines can lie.
//
// The input is read as chunks: a byte for its length and what comes with it, then its bytes.
#include "support/screen_pair.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace velorn::test {

namespace {

// Numbers of every stroke: none of them may lie far outside the picture.
void check(const std::vector<std::string>& strokes) {
    for (const std::string& stroke : strokes) {
        if (stroke.starts_with("clear")) continue;
        const char* text = stroke.c_str() + stroke.find(' ');
        for (int i = 0; i < (stroke.starts_with("text") ? 2 : 4); ++i) {
            char* end = nullptr;
            const long number = std::strtol(text, &end, 10);
            if (end == text || number < -20 || number > 2000) {
                std::fprintf(stderr, "%s\n", stroke.c_str());
                std::abort();
            }
            text = end;
        }
    }
}

} // namespace

} // namespace velorn::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velorn::test;
    const auto pair = std::make_unique<ScreenPair>();
    std::string_view input(reinterpret_cast<const char*>(data), size);
    while (!input.empty()) {
        const auto what = static_cast<unsigned char>(input.front());
        input.remove_prefix(1);
        const std::string_view chunk = input.substr(0, what % 32);
        input.remove_prefix(chunk.size());
        const std::string differences = pair->chunk(chunk, (what & 32U) != 0, (what & 64U) != 0, false);
        if (!differences.empty()) {
            std::fputs(differences.c_str(), stderr);
            std::abort();
        }
        if ((what & 128U) == 0) continue;
        pair->real.painter.paint();
        check(pair->real.strokes());
        pair->plain.painted();
    }
    return 0;
}
