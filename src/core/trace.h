// The byte trace in txttest10: one line for each character, its code in decimal and, above 31, the character.
#pragma once

#include "core/frm_terminal.h"

#include <string_view>

namespace velorn {

// At the selection point of txttest10. The oldest lines go when the trace grows past the size of the
// terminal, so that a trace left on cannot fill the memory.
void trace_bytes(FrmTerminal& frmTerminal, std::string_view prefix, std::string_view bytes);

inline constexpr std::string_view sent_prefix = "        out: ";
inline constexpr std::string_view received_prefix = "";

} // namespace velorn
