#include "io/field_reader.h"

#include <iconv.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include "state/errors.h"

namespace tervale::io {
namespace {

bool IsValidUtf8(std::string_view s) {
  size_t i = 0;
  while (i < s.size()) {
    unsigned char c = s[i];
    size_t len = c < 0x80           ? 1
                 : (c >> 5) == 0x6  ? 2
                 : (c >> 4) == 0xE  ? 3
                 : (c >> 3) == 0x1E ? 4
                                    : 0;
    if (len == 0 || i + len > s.size()) return false;
    if (len == 2 && c < 0xC2) return false;  // overlong
    for (size_t k = 1; k < len; ++k)
      if ((static_cast<unsigned char>(s[i + k]) >> 6) != 0x2) return false;
    i += len;
  }
  return true;
}

std::string FromCp932(std::string_view bytes) {
  iconv_t cd = iconv_open("UTF-8", "CP932");
  if (cd == reinterpret_cast<iconv_t>(-1)) return std::string(bytes);
  std::string out;
  out.resize(bytes.size() * 3 + 16);
  char* in = const_cast<char*>(bytes.data());
  size_t inLeft = bytes.size();
  char* dst = out.data();
  size_t outLeft = out.size();
  while (inLeft > 0) {
    if (iconv(cd, &in, &inLeft, &dst, &outLeft) == static_cast<size_t>(-1)) {
      if (errno == EILSEQ || errno == EINVAL) {
        // An undecodable byte becomes U+FFFD; the rest of the file is still read.
        if (outLeft < 3) break;
        *dst++ = '\xEF';
        *dst++ = '\xBF';
        *dst++ = '\xBD';
        outLeft -= 3;
        ++in;
        --inLeft;
      } else {
        break;
      }
    }
  }
  iconv_close(cd);
  out.resize(out.size() - outLeft);
  return out;
}

std::string_view Trim(std::string_view t) {
  while (!t.empty() && (t.front() == ' ' || t.front() == '\t')) t.remove_prefix(1);
  while (!t.empty() && (t.back() == ' ' || t.back() == '\t')) t.remove_suffix(1);
  return t;
}

// A field as a message shows it: a field of a broken file can be megabytes long, and a message
// keeps only its start.
std::string Shown(std::string_view field) {
  constexpr size_t kShown = 40;
  if (field.size() <= kShown) return std::string(field);
  size_t cut = kShown;
  while (cut > 0 && (static_cast<unsigned char>(field[cut]) & 0xC0) == 0x80) --cut;
  return std::string(field.substr(0, cut)) + "... (" + std::to_string(field.size()) +
         " characters)";
}

}  // namespace

std::string DecodeCaseText(std::string_view bytes) {
  if (bytes.size() >= 3 && bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  if (IsValidUtf8(bytes)) return std::string(bytes);
  return FromCp932(bytes);
}

bool ParseNumber(std::string_view text, double& value) {
  text = Trim(text);
  if (text.empty()) {
    value = 0;
    return true;
  }
  if (text == "#TRUE#") {
    value = -1;
    return true;
  }
  if (text == "#FALSE#" || text == "#NULL#") {
    value = 0;
    return true;
  }
  std::string buf(text);
  if (buf[0] == '+') buf.erase(0, 1);
  // std::from_chars does not take "1E+20" with a '+' exponent sign on every library; drop it.
  for (size_t i = 1; i + 1 < buf.size(); ++i)
    if ((buf[i] == 'E' || buf[i] == 'e') && buf[i + 1] == '+') buf.erase(i + 1, 1);
  // Only decimal forms: no "inf", "nan" or hexadecimal.
  for (char c : buf)
    if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == 'E' ||
          c == 'e'))
      return false;
  double v = 0;
  auto res = std::from_chars(buf.data(), buf.data() + buf.size(), v);
  if (res.ec == std::errc::result_out_of_range) return false;
  if (res.ec != std::errc() || res.ptr != buf.data() + buf.size()) return false;
  value = v;
  return true;
}

FieldReader::FieldReader(std::string text, std::string fileName)
    : text_(std::move(text)), fileName_(std::move(fileName)) {}

FieldReader FieldReader::FromFile(const std::filesystem::path& path) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec))
    throw FileReadError(path.string(), 0, 0, "Cannot read " + path.string() + ": it is a folder");
  std::ifstream in(path, std::ios::binary);
  if (!in)
    throw FileReadError(path.string(), 0, 0,
                        "Cannot open " + path.string() + ": missing or not readable");
  std::ostringstream buf;
  buf << in.rdbuf();
  if (in.bad()) throw FileReadError(path.string(), 0, 0, "Cannot read " + path.string());
  return FieldReader(DecodeCaseText(buf.str()), path.string());
}

void FieldReader::Fail(std::string_view message) const {
  std::ostringstream m;
  m << fileName_ << ": line " << fieldLine_ << ", field " << fieldIndex_ << ": " << message;
  throw FileReadError(fileName_, fieldLine_, fieldIndex_, m.str());
}

bool FieldReader::AtEnd() {
  size_t p = pos_;
  while (p < text_.size() && (text_[p] == ' ' || text_[p] == '\t' || text_[p] == '\r' ||
                              text_[p] == '\n' || text_[p] == '\x1A'))
    ++p;
  return p >= text_.size();
}

std::string_view FieldReader::NextField(std::string_view what, bool& quoted) {
  quoted = false;
  // A comma just before a line end or the end of the text leaves an empty field there (the
  // writer puts an empty last field so).
  if (afterComma_) {
    afterComma_ = false;
    size_t p = pos_;
    while (p < text_.size() && (text_[p] == ' ' || text_[p] == '\t')) ++p;
    if (p >= text_.size() || text_[p] == '\r' || text_[p] == '\n' || text_[p] == '\x1A') {
      pos_ = p;
      fieldLine_ = line_;
      fieldIndex_ = ++fieldInLine_;
      return std::string_view();
    }
  }
  // Skip blanks and whole empty lines: a line break only ends a field.
  for (;;) {
    while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t')) ++pos_;
    if (pos_ < text_.size() && (text_[pos_] == '\r' || text_[pos_] == '\n')) {
      if (text_[pos_] == '\r' && pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n') ++pos_;
      ++pos_;
      ++line_;
      fieldInLine_ = 0;
      continue;
    }
    break;
  }
  fieldLine_ = line_;
  fieldIndex_ = ++fieldInLine_;
  if (pos_ >= text_.size() || text_[pos_] == '\x1A') {
    std::ostringstream m;
    m << "missing " << what << " (the file ends here)";
    Fail(m.str());
  }
  std::string_view field;
  if (text_[pos_] == '"') {
    quoted = true;
    size_t end = text_.find('"', pos_ + 1);
    if (end == std::string::npos) {
      std::ostringstream m;
      m << "unterminated string in " << what;
      Fail(m.str());
    }
    field = std::string_view(text_).substr(pos_ + 1, end - pos_ - 1);
    for (char c : field)
      if (c == '\n') ++line_;
    pos_ = end + 1;
    // Anything up to the separator after a closing quote is ignored.
    while (pos_ < text_.size() && text_[pos_] != ',' && text_[pos_] != '\r' && text_[pos_] != '\n')
      ++pos_;
  } else {
    size_t start = pos_;
    while (pos_ < text_.size() && text_[pos_] != ',' && text_[pos_] != '\r' && text_[pos_] != '\n')
      ++pos_;
    field = Trim(std::string_view(text_).substr(start, pos_ - start));
  }
  if (pos_ < text_.size() && text_[pos_] == ',') {
    ++pos_;
    afterComma_ = true;
  }
  return field;
}

std::string FieldReader::ReadString(std::string_view what) {
  bool quoted = false;
  return std::string(NextField(what, quoted));
}

double FieldReader::ReadDouble(std::string_view what) {
  bool quoted = false;
  std::string_view f = NextField(what, quoted);
  double v = 0;
  if (!ParseNumber(f, v) || !std::isfinite(v)) {
    std::ostringstream m;
    m << what << ": \"" << Shown(f) << "\" is not a number";
    Fail(m.str());
  }
  return v;
}

int FieldReader::ReadInt(std::string_view what) {
  double v = ReadDouble(what);
  if (v != std::floor(v) || v < std::numeric_limits<int>::min() ||
      v > std::numeric_limits<int>::max()) {
    std::ostringstream m;
    m << what << ": " << v << " is not a whole number";
    Fail(m.str());
  }
  return static_cast<int>(v);
}

int FieldReader::ReadCount(std::string_view what, int min, int max) {
  int v = ReadInt(what);
  if (v < min || v > max) {
    std::ostringstream m;
    m << what << " = " << v << " is outside " << min << ".." << max;
    Fail(m.str());
  }
  return v;
}

bool FieldReader::ReadBool(std::string_view what) {
  return ReadDouble(what) != 0;
}

}  // namespace tervale::io
