// Files below a program that dies: the change at which it happens reaches its file in part, and after it
// nothing changes any more. What was written before stays, as it does when a process is killed.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/files.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velorn::test {

class MortalFiles final : public Files {
  public:
    explicit MortalFiles(Files& below) : below_(below) {}

    std::function<void()> died; // at the change that was the last

    // The program dies at its n-th change of files from now on; of a write this share reaches the file.
    void die_at(std::int64_t change, double share) {
        changes_left_ = change;
        share_ = share;
    }
    void die() { dead_ = true; }
    bool dead() const { return dead_; }

    Result<std::unique_ptr<BinaryFile>> open(std::string_view path, OpenMode mode) override {
        if (mode != OpenMode::read && last_change()) return gone();
        if (dead_) return gone();
        auto file = below_.open(path, mode);
        if (!file) return file.failure();
        return std::unique_ptr<BinaryFile>(std::make_unique<File>(*this, std::move(file).value()));
    }
    bool exists(std::string_view path) override { return !dead_ && below_.exists(path); }
    Outcome remove(std::string_view path) override {
        return last_change() ? Outcome(gone()) : below_.remove(path);
    }
    Outcome replace(std::string_view from, std::string_view to) override {
        return last_change() ? Outcome(gone()) : below_.replace(from, to);
    }
    Outcome make_folder(std::string_view path) override { return below_.make_folder(path); }
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) override { return below_.lock(path); }

  private:
    class File final : public BinaryFile {
      public:
        File(MortalFiles& owner, std::unique_ptr<BinaryFile> below)
            : owner_(owner), below_(std::move(below)) {}

        Result<std::int64_t> length() override { return below_->length(); }
        Result<std::string> read(std::int64_t position, std::int64_t count) override {
            return below_->read(position, count);
        }
        Result<std::int64_t> read_into(std::int64_t position, std::span<char> bytes) override {
            return below_->read_into(position, bytes);
        }
        Outcome write(std::int64_t position, std::string_view bytes) override {
            if (owner_.dead_) return gone();
            if (owner_.last_change()) {
                const auto part = static_cast<std::size_t>(static_cast<double>(bytes.size()) * owner_.share_);
                (void)below_->write(position, bytes.substr(0, part));
                return gone();
            }
            return below_->write(position, bytes);
        }
        Outcome sync() override { return owner_.dead_ ? Outcome(gone()) : below_->sync(); }

      private:
        MortalFiles& owner_;
        std::unique_ptr<BinaryFile> below_;
    };

    static Failure gone() { return failure(RunTimeError::device_io); }

    // Counts a change, and says whether it comes to nothing.
    bool last_change() {
        if (dead_) return true;
        if (!changes_left_ || --*changes_left_ > 0) return false;
        dead_ = true;
        if (died) died();
        return true;
    }

    Files& below_;
    std::optional<std::int64_t> changes_left_;
    double share_ = 0;
    bool dead_ = false;
};

} // namespace velorn::test
