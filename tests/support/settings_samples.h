// Settings files of every age, built as their own versions of the program wrote them.
#pragma once

#include "core/settings.h"
#include "runtime/variant.h"

#include <string>

namespace velorn::test {

// The values of a file of the present, all set by a user.
Settings user_settings();

// einst.par as far as it went at a version: 0 to 4 by einstversion, 10 to 20 by einstversion2.
std::string einst_of_version(Settings settings, int version);

// A whole file.
std::string file_of(std::span<const SettingsField> fields, Settings settings);

} // namespace velorn::test
