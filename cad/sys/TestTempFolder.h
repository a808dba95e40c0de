// For tests: a uniquely named folder under the system's temporary folder, removed with all
// its content when the object goes, so tests never see each other's files.
#pragma once

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace cad::sys {

class TestTempFolder {
public:
    TestTempFolder() {
        static std::atomic<unsigned> counter{0};
        path_ = std::filesystem::temp_directory_path() /
                ("vantor-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TestTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TestTempFolder(const TestTempFolder&) = delete;
    TestTempFolder& operator=(const TestTempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string file(std::string_view name) const { return (path_ / name).string(); }

    // Raw bytes, no translation: what is really on disk.
    void writeBytes(std::string_view name, std::string_view bytes) const {
        std::ofstream(file(name), std::ios::binary).write(bytes.data(), bytes.size());
    }
    std::string readBytes(std::string_view name) const {
        std::ifstream in(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path path_;
};

}  // namespace cad::sys
