#include "archive/collection_log.h"

#include "runtime/calendar.h"

#include <string>

namespace velorn {

void CollectionLog::tell(std::string_view what, std::string_view log_only) {
    const std::string line = "\r\n" + time_text(loop_.local_time()) + std::string(what);
    to_terminal(line + "\r\n");
    to_log(line + std::string(log_only) + "\r\n");
}

void CollectionLog::to_terminal(std::string_view text) { write_terminal(frmTerminal_, text); }

void CollectionLog::to_log(std::string_view text) {
    if (module1_.autolog) (void)append_to(files_, settings_.autoholpfad.text(), text);
}

} // namespace velorn
