// The printers of this machine, PDF files among them, behind the toolkit's dialog.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

class QPrinter;

namespace velorn {

class QtPrinter final : public Printer {
  public:
    explicit QtPrinter(EventLoop& loop) : loop_(loop) {}

    Outcome print_text(std::string_view text, std::string_view title) override;

    // Onto a device that is chosen already: fixed pitch, page by page, each with its number.
    static Outcome print_on(QPrinter& device, std::string_view text, std::string_view title);

  private:
    EventLoop& loop_;
};

} // namespace velorn
