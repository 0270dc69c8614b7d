// A disk for large files on which single files or folders give trouble, as long as a test wants it.
#pragma once

#include "support/block_files.h"

#include <memory>
#include <string>
#include <string_view>

namespace velorn::test {

class BreakableDisk : public Files {
  public:
    BlockFiles disk;
    std::string missing_folder; // nothing can be opened below it
    std::string full_for;       // no byte goes to files whose names hold this: the disk is full

    Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) override {
        if (!missing_folder.empty() && path.starts_with(missing_folder))
            return failure(RunTimeError::path_not_found);
        Result<std::unique_ptr<BinaryFile>> file = disk.open(path, mode);
        if (!file) return file;
        return std::unique_ptr<BinaryFile>(
            std::make_unique<File>(*this, std::string(path), std::move(file).value()));
    }
    bool exists(std::string_view path) override { return disk.exists(path); }
    Outcome remove(std::string_view path) override { return disk.remove(path); }
    Outcome replace(std::string_view from, std::string_view to) override { return disk.replace(from, to); }
    Outcome make_folder(std::string_view path) override { return disk.make_folder(path); }
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) override { return disk.lock(path); }

  private:
    class File final : public BinaryFile {
      public:
        File(BreakableDisk& disk, std::string path, std::unique_ptr<BinaryFile> inner)
            : disk_(disk), path_(std::move(path)), inner_(std::move(inner)) {}

        Result<std::int64_t> length() override { return inner_->length(); }
        Result<std::string> read(std::int64_t position, std::int64_t count) override {
            return inner_->read(position, count);
        }
        Outcome write(std::int64_t position, std::string_view bytes) override {
            const bool full = !disk_.full_for.empty() && path_.find(disk_.full_for) != std::string::npos;
            return full ? Outcome{failure(RunTimeError::disk_full)} : inner_->write(position, bytes);
        }
        Outcome sync() override { return inner_->sync(); }

      private:
        BreakableDisk& disk_;
        std::string path_;
        std::unique_ptr<BinaryFile> inner_;
    };
};

} // namespace velorn::test
