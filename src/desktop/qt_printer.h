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
    Outcome print_page(std::string_view title, const std::function<void(Canvas&)>& draw) override;
    static Outcome print_page_on(QPrinter& device, std::string_view title,
                                 const std::function<void(Canvas&)>& draw);

  private:
    // Whether the person wants to print, and on what.
    bool chosen(QPrinter& device);

    EventLoop& loop_;
};

} // namespace velorn
