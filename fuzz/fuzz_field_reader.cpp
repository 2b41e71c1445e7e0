// The record codec's field reader on its own: any bytes, read as any sequence of fields.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>

#include "io/field_reader.h"
#include "state/errors.h"

using namespace tervale;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  // The first bytes choose the reads; the rest is the file.
  const std::string ops = in.ConsumeBytesAsString(in.ConsumeIntegralInRange<size_t>(0, 64));
  const std::string bytes = in.ConsumeRemainingBytesAsString();
  double v = 0;
  if (io::ParseNumber(bytes.substr(0, 64), v) && std::isnan(v)) __builtin_trap();
  io::FieldReader r(io::DecodeCaseText(bytes), "fuzz.dat");
  try {
    for (size_t k = 0; k < 4096; ++k) {
      switch (ops.empty() ? 0 : ops[k % ops.size()] % 6) {
        case 0:
          r.ReadString("s");
          break;
        case 1:
          if (!std::isfinite(r.ReadDouble("d"))) __builtin_trap();
          break;
        case 2:
          r.ReadInt("i");
          break;
        case 3: {
          const int n = r.ReadCount("n", 0, 20);
          if (n < 0 || n > 20) __builtin_trap();
          break;
        }
        case 4:
          r.ReadBool("b");
          break;
        case 5:
          if (r.AtEnd()) return 0;
          break;
      }
    }
  } catch (const FileReadError& e) {
    if (e.file != "fuzz.dat") __builtin_trap();
  }
  return 0;
}
