// A disk in memory. Names are compared as Windows does, without regard to case.
#pragma once

#include "runtime/files.h"
#include "runtime/text.h"
#include "support/memory_locks.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace velorn::test {

class MemoryFiles : public Files {
  public:
    Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) override;
    bool exists(std::string_view path) override { return contents_.contains(to_lower(path)); }
    Outcome remove(std::string_view path) override;
    Outcome replace(std::string_view from, std::string_view to) override;
    Outcome make_folder(std::string_view) override { return {}; }
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) override { return locks_.lock(path); }

    // Empty for a file that isn't there.
    std::string content(std::string_view path) const;
    void set_content(std::string_view path, std::string_view bytes);

    // Files with this path can't be written any more.
    void make_read_only(std::string_view path) { read_only_.insert(to_lower(path)); }

    // How often a file was given new content by replacing it.
    int replacements(std::string_view path) const;

  private:
    std::map<std::string, std::shared_ptr<std::string>> contents_;
    std::map<std::string, int> replacements_;
    std::set<std::string> read_only_;
    MemoryLocks locks_;
};

} // namespace velorn::test
