// What goes out over the serial line from now on, and when: "2200 FERNBED\r", milliseconds since the start.
#pragma once

#include "support/test_program.h"

#include <string>
#include <vector>

namespace velorn::test {

struct SentAt {
    explicit SentAt(TestProgram& p) : program_(p), begin(p.loop.now_ms()) {
        p.serial.on_write = [this](std::string_view bytes) {
            all.push_back(std::to_string(program_.loop.now_ms() - begin) + ' ' + std::string(bytes));
            if (on_sent) on_sent(bytes);
        };
    }
    ~SentAt() { program_.serial.on_write = nullptr; }
    SentAt(const SentAt&) = delete;
    SentAt& operator=(const SentAt&) = delete;

    // The far end may answer here.
    std::function<void(std::string_view)> on_sent;

  private:
    TestProgram& program_;

  public:
    std::int64_t begin;
    std::vector<std::string> all;
};

} // namespace velorn::test
