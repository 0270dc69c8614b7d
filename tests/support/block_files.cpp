#include "support/block_files.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <set>

namespace velorn::test {

namespace {

constexpr std::int64_t block_size = BlockFiles::block_size;

std::size_t blocks_for(std::int64_t length) {
    return static_cast<std::size_t>((length + block_size - 1) / block_size);
}

} // namespace

class BlockFiles::File final : public BinaryFile {
  public:
    File(BlockFiles& files, std::shared_ptr<Entry> entry, OpenMode mode)
        : files_(files), entry_(std::move(entry)), mode_(mode) {}

    Result<std::int64_t> length() override { return entry_->now.length; }

    Result<std::string> read(std::int64_t position, std::int64_t count) override {
        if (position < 1 || count < 0) return failure(RunTimeError::invalid_call);
        return BlockFiles::read(entry_->now, position - 1, count);
    }

    Result<std::int64_t> read_into(std::int64_t position, std::span<char> bytes) override {
        if (position < 1) return failure(RunTimeError::invalid_call);
        return BlockFiles::read(entry_->now, position - 1, bytes);
    }

    Outcome write(std::int64_t position, std::string_view bytes) override {
        if (mode_ == OpenMode::read) return failure(RunTimeError::permission_denied);
        if (position < 1) return failure(RunTimeError::invalid_call);
        files_.write(entry_->now, mode_ == OpenMode::append ? entry_->now.length : position - 1, bytes);
        return entry_->gone ? Outcome{failure(RunTimeError::file_not_found)} : Outcome{};
    }

    Outcome sync() override {
        entry_->synced = entry_->now;
        return {};
    }

  private:
    BlockFiles& files_;
    std::shared_ptr<Entry> entry_;
    OpenMode mode_;
};

Result<std::unique_ptr<BinaryFile>> BlockFiles::open(std::string_view path, OpenMode mode) {
    const std::string name = to_lower(path);
    if (mode == OpenMode::read && !files_.contains(name)) return failure(RunTimeError::file_not_found);
    std::shared_ptr<Entry>& entry = files_[name];
    if (!entry) entry = std::make_shared<Entry>();
    if (mode == OpenMode::create) entry->now = {};
    return std::unique_ptr<BinaryFile>(std::make_unique<File>(*this, entry, mode));
}

Outcome BlockFiles::remove(std::string_view path) {
    const auto found = files_.find(to_lower(path));
    if (found == files_.end()) return failure(RunTimeError::file_not_found);
    found->second->gone = true;
    files_.erase(found);
    return {};
}

Outcome BlockFiles::replace(std::string_view from, std::string_view to) {
    const auto source = files_.find(to_lower(from));
    if (source == files_.end()) return failure(RunTimeError::file_not_found);
    if (const auto old = files_.find(to_lower(to)); old != files_.end()) old->second->gone = true;
    files_[to_lower(to)] = source->second;
    files_.erase(source);
    promised_ = files_; // the folder has reached the disk
    return {};
}

void BlockFiles::copy(std::string_view from, std::string_view to) { set_content(to, content(from)); }

BlockFiles::Content BlockFiles::content(std::string_view path) const {
    const auto found = files_.find(to_lower(path));
    return found == files_.end() ? Content{} : found->second->now;
}

void BlockFiles::set_content(std::string_view path, Content content) {
    std::shared_ptr<Entry>& entry = files_[to_lower(path)];
    if (!entry) entry = std::make_shared<Entry>();
    entry->now = content;
    entry->synced = std::move(content);
    promised_[to_lower(path)] = entry;
}

std::int64_t BlockFiles::length(std::string_view path) const { return content(path).length; }

std::string BlockFiles::bytes(std::string_view path, std::int64_t offset, std::int64_t count) const {
    const auto found = files_.find(to_lower(path));
    return found == files_.end() ? std::string() : read(found->second->now, offset, count);
}

void BlockFiles::set_bytes(std::string_view path, std::int64_t offset, std::string_view bytes) {
    Content all = content(path);
    write(all, offset, bytes);
    set_content(path, std::move(all));
}

void BlockFiles::set_length(std::string_view path, std::int64_t length) {
    Content all = content(path);
    if (length > all.length) {
        write(all, length - 1, std::string_view("\0", 1));
    } else {
        all.length = length;
        all.blocks.resize(blocks_for(length));
        const std::int64_t used = length % block_size;
        if (used != 0) {
            all.blocks.back() = std::make_shared<Block>(*all.blocks.back());
            std::fill(all.blocks.back()->begin() + used, all.blocks.back()->end(), '\0');
        }
    }
    set_content(path, std::move(all));
}

void BlockFiles::power_cut(std::uint32_t seed) {
    std::mt19937 random(seed);
    const auto coin = [&] { return random() % 2 == 0; };
    std::map<std::string, std::shared_ptr<Entry>> left;
    std::set<std::string> all;
    for (const auto& [name, entry] : files_) all.insert(name);
    for (const auto& [name, entry] : promised_) all.insert(name);
    for (const std::string& name : all) {
        const auto now = files_.find(name);
        const auto before = promised_.find(name);
        const bool same = now != files_.end() && before != promised_.end() && now->second == before->second;
        const bool take_now = same || coin();
        if (take_now && now != files_.end()) left[name] = now->second;
        if (!take_now && before != promised_.end()) left[name] = before->second;
    }
    for (auto& [name, entry] : left) {
        const Content synced = entry->synced;
        Content mixed = coin() ? entry->now : synced;
        for (std::size_t i = 0; i < std::min(mixed.blocks.size(), synced.blocks.size()); ++i) {
            if (i >= entry->now.blocks.size() || entry->now.blocks[i] == synced.blocks[i]) continue;
            // Disks write sectors whole and in any order.
            mixed.blocks[i] = std::make_shared<Block>(*entry->now.blocks[i]);
            for (std::int64_t sector = 0; sector < block_size; sector += 512) {
                if (coin())
                    std::copy_n(synced.blocks[i]->begin() + sector, 512, mixed.blocks[i]->begin() + sector);
            }
        }
        for (std::size_t i = synced.blocks.size(); i < mixed.blocks.size(); ++i) {
            if (coin()) mixed.blocks[i] = plain_block(std::string_view("\0\0\0\0", 4));
        }
        const std::int64_t tail = mixed.length % block_size;
        if (tail != 0) {
            mixed.blocks.back() = std::make_shared<Block>(*mixed.blocks.back());
            std::fill(mixed.blocks.back()->begin() + tail, mixed.blocks.back()->end(), '\0');
        }
        entry->now = mixed;
        entry->synced = mixed;
    }
    files_ = left;
    promised_ = left;
}

std::vector<std::string> BlockFiles::names() const {
    std::vector<std::string> all;
    for (const auto& [name, entry] : files_) all.push_back(name);
    return all;
}

std::int64_t BlockFiles::memory() const {
    std::set<const Block*> all;
    for (const auto& [name, entry] : files_) {
        for (const auto& block : entry->now.blocks) all.insert(block.get());
    }
    return static_cast<std::int64_t>(all.size()) * block_size;
}

std::shared_ptr<BlockFiles::Block> BlockFiles::plain_block(std::string_view value) {
    for (const auto& block : plain_) {
        if (std::memcmp(block->data(), value.data(), 4) == 0) return block;
    }
    auto block = std::make_shared<Block>();
    for (std::int64_t i = 0; i < block_size; i += 4) std::memcpy(block->data() + i, value.data(), 4);
    plain_.push_back(block);
    return block;
}

void BlockFiles::write(Content& content, std::int64_t offset, std::string_view bytes) {
    if (bytes.empty()) return;
    content.length = std::max(content.length, offset + static_cast<std::int64_t>(bytes.size()));
    while (content.blocks.size() < blocks_for(content.length))
        content.blocks.push_back(plain_block(std::string_view("\0\0\0\0", 4)));
    while (!bytes.empty()) {
        std::shared_ptr<Block>& block = content.blocks[static_cast<std::size_t>(offset / block_size)];
        const std::int64_t begin = offset % block_size;
        const std::int64_t count = std::min(block_size - begin, static_cast<std::int64_t>(bytes.size()));
        const std::string_view part = bytes.substr(0, static_cast<std::size_t>(count));
        const bool one_value =
            count == block_size && std::memcmp(part.data(), part.data() + 4, block_size - 4) == 0;
        if (one_value) {
            block = plain_block(part);
        } else if (std::memcmp(block->data() + begin, part.data(), part.size()) != 0) {
            if (block.use_count() > 1) block = std::make_shared<Block>(*block);
            std::memcpy(block->data() + begin, part.data(), part.size());
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += count;
    }
}

std::string BlockFiles::read(const Content& content, std::int64_t offset, std::int64_t count) {
    std::string bytes(static_cast<std::size_t>(std::clamp<std::int64_t>(content.length - offset, 0, count)),
                      '\0');
    (void)read(content, offset, bytes);
    return bytes;
}

std::int64_t BlockFiles::read(const Content& content, std::int64_t offset, std::span<char> bytes) {
    const auto there =
        std::clamp<std::int64_t>(content.length - offset, 0, static_cast<std::int64_t>(bytes.size()));
    char* to = bytes.data();
    for (const std::int64_t end = offset + there; offset < end;) {
        const std::int64_t begin = offset % block_size;
        const std::int64_t part = std::min(block_size - begin, end - offset);
        std::memcpy(to, content.blocks[static_cast<std::size_t>(offset / block_size)]->data() + begin,
                    static_cast<std::size_t>(part));
        to += part;
        offset += part;
    }
    return there;
}

bool same_bytes(const BlockFiles::Content& content, std::int64_t offset, std::string_view bytes) {
    if (offset + static_cast<std::int64_t>(bytes.size()) > content.length) return false;
    while (!bytes.empty()) {
        const std::int64_t begin = offset % block_size;
        const auto count = std::min(static_cast<std::size_t>(block_size - begin), bytes.size());
        const char* there = content.blocks[static_cast<std::size_t>(offset / block_size)]->data() + begin;
        if (std::memcmp(there, bytes.data(), count) != 0) return false;
        bytes.remove_prefix(count);
        offset += static_cast<std::int64_t>(count);
    }
    return true;
}

bool operator==(const BlockFiles::Content& a, const BlockFiles::Content& b) {
    if (a.length != b.length) return false;
    for (std::size_t i = 0; i < a.blocks.size(); ++i) {
        if (a.blocks[i] != b.blocks[i] && *a.blocks[i] != *b.blocks[i]) return false;
    }
    return true;
}

} // namespace velorn::test
