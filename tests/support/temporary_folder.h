// A folder of its own for a test, gone with everything in it when the test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace velorn::test {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "velorn-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // The path of a file in it, as the system stores paths.
    std::string stored(std::string_view name) const { return (path_ / name).string(); }

    // Empty for a file that isn't there.
    std::string content(std::string_view name) const {
        std::ifstream in(path_ / name, std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        return std::move(all).str();
    }
    void set_content(std::string_view name, std::string_view bytes) const {
        std::ofstream out(path_ / name, std::ios::binary);
        out << bytes;
    }

  private:
    std::filesystem::path path_;
};

} // namespace velorn::test
