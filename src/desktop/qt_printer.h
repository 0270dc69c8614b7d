// The printers of this machine, PDF files among them, behind the toolkit's dialog.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

namespace velorn {

class QtPrinter final : public Printer {
  public:
    explicit QtPrinter(EventLoop& loop) : loop_(loop) {}

    Outcome print_text(std::string_view text, std::string_view title) override;

  private:
    EventLoop& loop_;
};

} // namespace velorn
