// Who holds which lock among files that are no real ones. A lock may outlive the files it came from.
#pragma once

#include "runtime/files.h"
#include "runtime/text.h"

#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace velorn::test {

class MemoryLocks {
  public:
    Result<std::unique_ptr<FileLock>> lock(std::string_view path) {
        const std::string name = to_lower(path);
        if (!held_->insert(name).second) return failure(RunTimeError::file_already_open);
        return std::unique_ptr<FileLock>(std::make_unique<Lock>(held_, name));
    }

  private:
    using Names = std::set<std::string>;

    struct Lock final : FileLock {
        Lock(std::shared_ptr<Names> all, std::string one) : names(std::move(all)), name(std::move(one)) {}
        ~Lock() override { names->erase(name); }

        std::shared_ptr<Names> names;
        std::string name;
    };

    std::shared_ptr<Names> held_ = std::make_shared<Names>();
};

} // namespace velorn::test
