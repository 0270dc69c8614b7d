// Files on the disk of this machine.
#pragma once

#include "runtime/files.h"
#include "runtime/paths.h"

namespace velorn {

// The same for a path of this machine, for what is read before stored paths lead anywhere.
Result<std::unique_ptr<BinaryFile>> open_native(const std::filesystem::path& path, OpenMode mode);
Outcome replace_native(const std::filesystem::path& from, const std::filesystem::path& to);

// A stored path that holds a zero byte names nothing here; it gives error 75.
class DiskFiles final : public Files {
  public:
    explicit DiskFiles(const Paths& paths) : paths_(paths) {}

    Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) override;
    bool exists(std::string_view path) override;
    Outcome remove(std::string_view path) override;
    Outcome replace(std::string_view from, std::string_view to) override;
    Outcome make_folder(std::string_view path) override;
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) override;

  private:
    const Paths& paths_;
};

} // namespace velorn
