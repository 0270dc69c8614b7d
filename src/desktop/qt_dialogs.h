// Boxes and dialogs on the screen. Each is opened on the active window, which is blocked meanwhile, and
// waited for in the event loop; several may be open, one inside the other's wait. Escape and the window's
// close button cancel, and so does the end of the program.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"
#include "runtime/paths.h"

class QDialog;
class QString;

namespace velorn {

class QtDialogs final : public Dialogs {
  public:
    // `paths` leads from a stored folder to the one on this machine.
    QtDialogs(EventLoop& loop, const Paths& paths) : loop_(loop), paths_(paths) {}

    Answer message_box(std::string_view text, int code, std::string_view title = "Velorn") override;
    Answer message_box_for(int seconds, std::string_view text, int code) override;

    // A text that cp1252 can't hold is asked for again, with the reason.
    std::optional<std::string> input_box(std::string_view prompt, std::string_view title,
                                         std::string_view proposal) override;

    // Any name may be typed, that of a missing file too, and an existing file isn't asked about: that is the
    // caller's business. A path that cp1252 can't hold is asked for again, with the reason.
    Result<std::string> choose_file(const FileQuestion& question) override;

    Result<FontChoice> choose_font(const FontChoice& proposal) override;

    Result<Colour> choose_colour(Colour proposal) override;

  private:
    // Opens the dialog and waits for its end. False: the program ends, or the dialog went with its window.
    bool show(QDialog& dialog);
    Answer box(int seconds, std::string_view text, int code, std::string_view title);

    EventLoop& loop_;
    const Paths& paths_;
};

} // namespace velorn
