#include "plant/source.h"

#include "plant/random.h"
#include "plant/wording.h"

namespace velorn::plant {

std::string Source::next(std::size_t wanted) {
    std::string out;
    do {
        const std::uint64_t place = line_ * 2;
        out += cp437_from_utf8(filled("Zeile %08llu  Leistung ", static_cast<unsigned long long>(++line_)) +
                               decimal(400.0 * chance_at(seed_, place), 1, 6) + " kW  Rücklauf " +
                               decimal(55.0 + 10.0 * chance_at(seed_, place + 1), 1, 5) + " °C\r\n");
    } while (out.size() < wanted && out.size() < left_);
    if (out.size() > left_) out.resize(static_cast<std::size_t>(left_));
    left_ -= out.size();
    return out;
}

} // namespace velorn::plant
