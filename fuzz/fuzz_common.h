#pragma once
// Helpers of the fuzz targets: the input as a file (the readers take paths), kept in memory
// when /dev/shm exists.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace tervale::fuzz {

inline std::filesystem::path InputFile(const char* extension) {
  static const std::filesystem::path path = [&] {
    std::filesystem::path dir = std::filesystem::exists("/dev/shm")
                                    ? std::filesystem::path("/dev/shm")
                                    : std::filesystem::temp_directory_path();
    return dir / ("tervale_fuzz_" + std::to_string(::getpid()) + extension);
  }();
  return path;
}

// Writes the input to the file and returns its path.
inline std::filesystem::path WriteInput(const uint8_t* data, size_t size, const char* extension) {
  const auto path = InputFile(extension);
  FILE* f = std::fopen(path.c_str(), "wb");
  if (f) {
    if (size) std::fwrite(data, 1, size, f);
    std::fclose(f);
  }
  return path;
}

}  // namespace tervale::fuzz
