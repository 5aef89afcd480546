// The system report's JSON and HTML forms, given any text where the machine's words go (titles,
// lines, list rows, captions, message boxes, the reasons a part is missing): the JSON is always
// one valid JSON value in plain ASCII, and the HTML page has exactly the elements it has when
// every such text is a plain word: machine text never opens or closes an element.
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

#include "companion/SystemReport.h"

namespace {

using namespace tamrix::companion;

struct Input {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;
  std::uint8_t Byte() { return at < size ? data[at++] : 0; }
  // A text up to the next NUL byte.
  std::string Text() {
    std::string s;
    while (at < size && data[at] != 0) s += static_cast<char>(data[at++]);
    if (at < size) ++at;
    return s;
  }
};

Shown MakeShown(Input& in) {
  Shown s;
  std::uint8_t kind = in.Byte();
  s.control = "Label" + std::to_string(kind % 7);
  s.caption = kind & 8 ? in.Text() : "";
  for (int n = in.Byte() % 4; n > 0; --n) s.lines.push_back(in.Text());
  s.list = kind & 16;
  if (kind & 32) {
    s.bar = (in.Byte() * 257 + in.Byte()) / 500.0;
    s.barColor = in.Byte() * 65793u;
  }
  if (kind & 64) s.lit = kind & 128;
  return s;
}

Block MakeBlock(Input& in, int depth) {
  Block b;
  b.title = in.Text();
  b.control = "Drive1";
  std::uint8_t kind = in.Byte();
  for (int n = kind % 5; n > 0; --n) b.shown.push_back(MakeShown(in));
  if (kind & 8) b.boxes.push_back(in.Text());
  if (kind & 16) b.missing = in.Text();
  if (depth < 2)
    for (int n = (kind >> 5) % 3; n > 0; --n) b.blocks.push_back(MakeBlock(in, depth + 1));
  return b;
}

// Every text the machine gave, made one plain word, empty ones left empty, so the page's shape
// stays.
void Plain(std::string& s) {
  if (!s.empty()) s = "x";
}
void Plain(Block& b) {
  Plain(b.title);
  Plain(b.missing);
  for (std::string& box : b.boxes) Plain(box);
  for (Shown& s : b.shown) {
    Plain(s.caption);
    for (std::string& line : s.lines) Plain(line);
  }
  for (Block& part : b.blocks) Plain(part);
}

// --- a strict reader of JSON (RFC 8259) ---------------------------------------------------------
struct Json {
  const std::string& s;
  std::size_t i = 0;
  int depth = 0;
  void Blank() {
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t' || s[i] == '\r' || s[i] == '\n')) ++i;
  }
  bool Literal(const char* word) {
    std::string w(word);
    if (s.compare(i, w.size(), w) != 0) return false;
    i += w.size();
    return true;
  }
  bool Digits() {
    std::size_t start = i;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') ++i;
    return i > start;
  }
  bool Number() {
    if (i < s.size() && s[i] == '-') ++i;
    if (i < s.size() && s[i] == '0')
      ++i;
    else if (!Digits())
      return false;
    if (i < s.size() && s[i] == '.' && (++i, !Digits())) return false;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
      ++i;
      if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
      if (!Digits()) return false;
    }
    return true;
  }
  bool String() {
    if (i >= s.size() || s[i] != '"') return false;
    for (++i; i < s.size(); ++i) {
      unsigned char c = s[i];
      if (c == '"') {
        ++i;
        return true;
      }
      if (c < 0x20) return false;
      if (c != '\\') continue;
      if (++i >= s.size()) return false;
      if (s[i] == 'u') {
        for (int k = 0; k < 4; ++k)
          if (++i >= s.size() || !std::isxdigit(static_cast<unsigned char>(s[i]))) return false;
      } else if (std::string("\"\\/bfnrt").find(s[i]) == std::string::npos) {
        return false;
      }
    }
    return false;
  }
  bool Value() {
    if (++depth > 64) return false;
    Blank();
    bool ok = false;
    if (i >= s.size()) return false;
    if (s[i] == '{') {
      ++i;
      Blank();
      ok = i < s.size() && s[i] == '}' && (++i, true);
      while (!ok) {
        Blank();
        if (!String()) return false;
        Blank();
        if (i >= s.size() || s[i++] != ':' || !Value()) return false;
        Blank();
        if (i < s.size() && s[i] == '}') ok = (++i, true);
        else if (i >= s.size() || s[i++] != ',') return false;
      }
    } else if (s[i] == '[') {
      ++i;
      Blank();
      ok = i < s.size() && s[i] == ']' && (++i, true);
      while (!ok) {
        if (!Value()) return false;
        Blank();
        if (i < s.size() && s[i] == ']') ok = (++i, true);
        else if (i >= s.size() || s[i++] != ',') return false;
      }
    } else if (s[i] == '"') {
      ok = String();
    } else {
      ok = Literal("true") || Literal("false") || Literal("null") || Number();
    }
    --depth;
    return ok;
  }
  bool Whole() {
    if (!Value()) return false;
    Blank();
    return i == s.size();
  }
};

std::size_t Tags(const std::string& html) {
  std::size_t n = 0;
  for (char c : html) n += c == '<';
  return n;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  SystemReport report;
  report.taken = {2026, 11, 25, 1, 2, 3};
  report.decimalSign = in.Byte() & 1 ? ',' : '.';
  report.cpuTested = in.Byte() & 1;
  // The sections' keys are the program's own words, never the machine's.
  for (const char* key : {"pc", "windows", "lecteurs"}) {
    if (in.at >= in.size) break;
    Block b = MakeBlock(in, 0);
    b.key = key;
    report.sections.push_back(b);
  }
  std::string json = SystemReportJson(report);
  for (unsigned char c : json)
    if (c >= 0x80) __builtin_trap();
  if (!Json{json}.Whole()) __builtin_trap();

  SystemReport plain = report;
  for (Block& b : plain.sections) Plain(b);
  if (Tags(SystemReportHtml(report)) != Tags(SystemReportHtml(plain))) __builtin_trap();
  return 0;
}
