#include "support/memory_files.h"

#include <algorithm>

namespace velorn::test {

namespace {

class MemoryFile final : public BinaryFile {
  public:
    MemoryFile(std::shared_ptr<std::string> bytes, OpenMode mode) : bytes_(std::move(bytes)), mode_(mode) {}

    Result<std::int64_t> length() override { return static_cast<std::int64_t>(bytes_->size()); }

    Result<std::string> read(std::int64_t position, std::int64_t count) override {
        if (position < 1 || count < 0) return failure(RunTimeError::invalid_call);
        const auto begin = static_cast<std::size_t>(position - 1);
        if (begin >= bytes_->size()) return std::string();
        return bytes_->substr(begin, static_cast<std::size_t>(count));
    }

    Outcome write(std::int64_t position, std::string_view bytes) override {
        if (mode_ == OpenMode::read) return failure(RunTimeError::permission_denied);
        if (position < 1) return failure(RunTimeError::invalid_call);
        const std::size_t begin =
            mode_ == OpenMode::append ? bytes_->size() : static_cast<std::size_t>(position - 1);
        bytes_->resize(std::max(bytes_->size(), begin + bytes.size()));
        bytes_->replace(begin, bytes.size(), bytes);
        return {};
    }

    Outcome sync() override { return {}; }

  private:
    std::shared_ptr<std::string> bytes_;
    OpenMode mode_;
};

} // namespace

Result<std::unique_ptr<BinaryFile>> MemoryFiles::open(std::string_view path, OpenMode mode) {
    const std::string name = to_lower(path);
    const auto found = contents_.find(name);
    if (mode == OpenMode::read && found == contents_.end()) return failure(RunTimeError::file_not_found);
    if (mode != OpenMode::read && read_only_.contains(name)) return failure(RunTimeError::permission_denied);
    auto bytes = found == contents_.end() ? std::make_shared<std::string>() : found->second;
    if (mode == OpenMode::create) bytes->clear();
    contents_[name] = bytes;
    return std::unique_ptr<BinaryFile>(std::make_unique<MemoryFile>(std::move(bytes), mode));
}

Outcome MemoryFiles::remove(std::string_view path) {
    return contents_.erase(to_lower(path)) > 0 ? Outcome{} : Outcome{failure(RunTimeError::file_not_found)};
}

Outcome MemoryFiles::replace(std::string_view from, std::string_view to) {
    const auto source = contents_.find(to_lower(from));
    if (source == contents_.end()) return failure(RunTimeError::file_not_found);
    if (read_only_.contains(to_lower(to))) return failure(RunTimeError::permission_denied);
    contents_[to_lower(to)] = source->second;
    contents_.erase(source);
    ++replacements_[to_lower(to)];
    return {};
}

std::string MemoryFiles::content(std::string_view path) const {
    const auto found = contents_.find(to_lower(path));
    return found == contents_.end() ? std::string() : *found->second;
}

void MemoryFiles::set_content(std::string_view path, std::string_view bytes) {
    contents_[to_lower(path)] = std::make_shared<std::string>(bytes);
}

int MemoryFiles::replacements(std::string_view path) const {
    const auto found = replacements_.find(to_lower(path));
    return found == replacements_.end() ? 0 : found->second;
}

} // namespace velorn::test
