// Undoes the marking by which the system tells bytes with a parity or framing error from good ones: the bytes
// FF 00 c stand for a c that came damaged, FF FF for a good FF. A mark may be spread over several reads.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class ParityMarks {
  public:
    // The character that takes a damaged one's place. Nothing: the bytes aren't marked and pass as they are.
    void set_replacement(std::optional<char> with);
    std::optional<char> replacement() const { return replacement_; }

    // Appends what `bytes` mean to `out`. At most as many bytes as went in.
    void decode(std::string_view bytes, std::string& out);

  private:
    enum class At { text, after_ff, after_ff_00 };

    std::optional<char> replacement_;
    At at_ = At::text;
};

} // namespace velorn
