#include "support/faulty_files.h"

#include <unistd.h>

namespace velorn::test {

class FaultyFiles::File final : public BinaryFile {
  public:
    File(FaultyFiles& files, std::unique_ptr<BinaryFile> inner) : files_(files), inner_(std::move(inner)) {}

    Result<std::int64_t> length() override {
        if (const auto failure = files_.next("length")) return *failure;
        return inner_->length();
    }
    Result<std::string> read(std::int64_t position, std::int64_t count) override {
        if (const auto failure = files_.next("read")) return *failure;
        return inner_->read(position, count);
    }
    Outcome write(std::int64_t position, std::string_view bytes) override {
        return files_.write(*inner_, position, bytes);
    }
    Outcome sync() override {
        if (const auto failure = files_.next("sync")) return *failure;
        return inner_->sync();
    }

  private:
    FaultyFiles& files_;
    std::unique_ptr<BinaryFile> inner_;
};

void FaultyFiles::fail_from(int n, RunTimeError error) {
    fault_ = Fault::failure_from;
    turn_ = n;
    error_ = error;
}

void FaultyFiles::fail_at(int n, RunTimeError error) {
    fail_from(n, error);
    fault_ = Fault::failure_at;
}

void FaultyFiles::fill_the_disk() { fault_ = Fault::full_disk; }

void FaultyFiles::mend() { fault_ = Fault::none; }

void FaultyFiles::kill_at(int n, bool in_the_middle_of_a_write) {
    fault_ = in_the_middle_of_a_write ? Fault::kill_in_write : Fault::kill;
    turn_ = n;
}

void FaultyFiles::stop_at(int n, bool in_the_middle_of_a_write) {
    fail_from(n);
    if (in_the_middle_of_a_write) fault_ = Fault::stop_in_write;
}

std::optional<Failure> FaultyFiles::next(const char* operation) {
    operations_.emplace_back(operation);
    const auto count = static_cast<int>(operations_.size());
    const bool killed_now = (fault_ == Fault::kill || fault_ == Fault::kill_in_write) && count == turn_;
    if (killed_now) _exit(killed);
    const bool fails =
        ((fault_ == Fault::failure_from || fault_ == Fault::stop_in_write) && count >= turn_) ||
        (fault_ == Fault::failure_at && count == turn_);
    if (!fails) return std::nullopt;
    broke_ = true;
    return failure(error_);
}

Outcome FaultyFiles::write(BinaryFile& file, std::int64_t position, std::string_view bytes) {
    const std::string_view half = bytes.substr(0, bytes.size() / 2);
    if ((fault_ == Fault::kill_in_write || fault_ == Fault::stop_in_write) &&
        static_cast<int>(operations_.size()) + 1 == turn_)
        (void)file.write(position, half);
    if (const auto failure = next("write")) return *failure;
    if (fault_ != Fault::full_disk) return file.write(position, bytes);
    broke_ = true;
    if (const Outcome written = file.write(position, half); !written) return written;
    return failure(RunTimeError::disk_full);
}

Result<std::unique_ptr<BinaryFile>> FaultyFiles::open(std::string_view path, OpenMode mode) {
    if (const auto failure = next("open")) return *failure;
    Result<std::unique_ptr<BinaryFile>> inner = inner_.open(path, mode);
    if (!inner) return inner;
    return std::unique_ptr<BinaryFile>(std::make_unique<File>(*this, std::move(inner).value()));
}

bool FaultyFiles::exists(std::string_view path) { return !next("exists") && inner_.exists(path); }

Outcome FaultyFiles::remove(std::string_view path) {
    if (const auto failure = next("remove")) return *failure;
    return inner_.remove(path);
}

Outcome FaultyFiles::replace(std::string_view from, std::string_view to) {
    if (const auto failure = next("replace")) return *failure;
    return inner_.replace(from, to);
}

Outcome FaultyFiles::make_folder(std::string_view path) {
    if (const auto failure = next("make_folder")) return *failure;
    return inner_.make_folder(path);
}

Result<std::unique_ptr<FileLock>> FaultyFiles::lock(std::string_view path) {
    if (const auto failure = next("lock")) return *failure;
    return inner_.lock(path);
}

} // namespace velorn::test
