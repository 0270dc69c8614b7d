// Files that the plant makes once for the service PC, and never touches again.
#pragma once

#include "runtime/failure.h"
#include "runtime/files.h"

#include <filesystem>
#include <functional>
#include <string>

namespace velorn::plant {

std::filesystem::path path_of(const std::string& utf8);

// Has `fill` write a new file and makes the folders for it. False: the file holds something already, and it
// stays as it is. A kill leaves no half of a file.
Result<bool> write_if_missing(const std::filesystem::path& path,
                              const std::function<Outcome(BinaryFile&)>& fill);

} // namespace velorn::plant
