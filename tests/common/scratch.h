#pragma once
// Scratch folders and whole-file reads and writes, shared by the tests of every folder.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace tervale::testcli {

// The whole file, byte for byte; empty when it cannot be read.
inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream buf;
  buf << in.rdbuf();
  return buf.str();
}

// Replaces the file with exactly these bytes (no line-end translation).
inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// A fresh, empty folder under the temporary directory, "tervale_<tag>_<process>_<serial>", so
// that no two instances share one, even in test programs running side by side. The destructor
// removes it with everything inside, also after a test took away its own write permission.
class ScratchDir {
 public:
  explicit ScratchDir(const std::string& tag)
      : path_(std::filesystem::temp_directory_path() / Name(tag)) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(path_, ec);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The path of `name` inside the folder, as text (ready for a command line; it converts to a
  // path where one is wanted).
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  static std::string Name(std::string tag) {
    for (char& c : tag)
      if (c == '/') c = '_';  // a parameterised suite's "Prefix/Suite"
    static int serial = 0;
    return "tervale_" + tag + "_" + std::to_string(::getpid()) + "_" + std::to_string(++serial);
  }
  std::filesystem::path path_;
};

}  // namespace tervale::testcli
