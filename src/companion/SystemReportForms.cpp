// The three forms of the system report: text, JSON and HTML.
#include <cmath>
#include <cstdio>

#include "companion/StateReport.h"
#include "companion/SystemReport.h"
#include "platform/Runtime.h"

namespace tamrix::companion {

namespace {

constexpr const char* kTitle = "Tamrix Utility 3.0 Pro : rapport système";

std::string Two(int n) {
  char b[8];
  std::snprintf(b, sizeof b, "%02d", n);
  return b;
}

std::string Taken(const LocalTime& t) {
  return Two(t.day) + "/" + Two(t.month) + "/" + std::to_string(t.year) + " à " + Two(t.hour) + ":" + Two(t.minute) + ":" +
         Two(t.second);
}

std::string NoCpuTest(const SystemReport& r) {
  return r.cpuTested ? std::string() : "Sans le test du processeur (--test-cpu le fait, en 15 secondes).";
}

// The words before a part's entry, by the list or button that chose it.
std::string PartWords(const Block& b) {
  struct Words {
    const char* control;
    const char* words;
  };
  static constexpr Words kWords[] = {
      {"Drive1", "Lecteur : "}, {"cbMixerList", "Carte Son : "}, {"cbDstLineList", "Ligne de destination : "},
      {"cbSrcLineList", "Ligne source : "},
  };
  for (const Words& w : kWords)
    if (b.control == w.control) return w.words;
  return {};
}

std::string Percent(double value, char sign) { return rt::FormatNumber(value, "#0.0", sign) + " %"; }

std::string Lit(const std::vector<Shown>& shown, int* total) {
  int lit = 0;
  *total = 0;
  for (const Shown& s : shown)
    if (s.lit) {
      ++*total;
      lit += *s.lit ? 1 : 0;
    }
  return std::to_string(lit);
}

constexpr const char* kBoxWords = "Message : ";
constexpr const char* kMissingWords = "Absent : ";

// A box's lines are broken by a carriage return alone.
std::string OneLine(std::string text) {
  for (char& c : text)
    if (c == '\r' || c == '\n') c = ' ';
  return text;
}

// --- text ---------------------------------------------------------------------------------

void TextBlock(std::string& out, const Block& b, const std::string& indent, char sign) {
  std::string in = indent + "  ";
  for (const std::string& box : b.boxes) out += in + kBoxWords + OneLine(box) + "\r\n";
  if (!b.missing.empty()) out += in + kMissingWords + b.missing + "\r\n";
  bool picturesSaid = false;
  for (const Shown& s : b.shown) {
    if (s.bar) {
      out += in + s.caption + " " + Percent(*s.bar, sign) + "\r\n";
    } else if (s.lit) {
      if (picturesSaid) continue;
      int total = 0;
      std::string lit = Lit(b.shown, &total);
      out += in + "Images allumées : " + lit + " sur " + std::to_string(total) + "\r\n";
      picturesSaid = true;
    } else if (s.list) {
      if (s.lines.empty()) out += in + "(liste vide)\r\n";
      for (const std::string& row : s.lines) out += in + row + "\r\n";
    } else if (!s.caption.empty()) {
      out += in + s.caption + " " + (s.lines.empty() ? std::string() : s.lines[0]) + "\r\n";
    } else {
      for (const std::string& line : s.lines) out += in + line + "\r\n";
    }
  }
  for (const Block& part : b.blocks) {
    out += in + PartWords(part) + part.title + "\r\n";
    TextBlock(out, part, in, sign);
  }
}

// --- JSON ---------------------------------------------------------------------------------

std::string Number(double x) {
  char b[32];
  std::snprintf(b, sizeof b, "%.15g", std::isfinite(x) ? x : 0.0);
  return b;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) text += (i ? "\r\n" : "") + lines[i];
  return text;
}

std::string JsonArray(const std::vector<std::string>& items) {
  std::string out = "[";
  for (std::size_t i = 0; i < items.size(); ++i) out += (i ? ", " : "") + JsonString(items[i]);
  return out + "]";
}

std::string JsonBlock(const Block& b) {
  std::string out = "{\"titre\": " + JsonString(b.title);
  if (!b.control.empty()) out += ", \"choisi_par\": " + JsonString(b.control);
  out += ", \"controles\": {";
  for (std::size_t i = 0; i < b.shown.size(); ++i) {
    const Shown& s = b.shown[i];
    out += (i ? ", " : "") + JsonString(s.control) + ": ";
    if (s.bar)
      out += Number(*s.bar);
    else if (s.lit)
      out += *s.lit ? "true" : "false";
    else if (s.list)
      out += JsonArray(s.lines);
    else
      out += JsonString(Joined(s.lines));
  }
  out += "}, \"boites\": " + JsonArray(b.boxes);
  if (!b.missing.empty()) out += ", \"absent\": " + JsonString(b.missing);
  if (!b.blocks.empty()) {
    out += ", \"parties\": [";
    for (std::size_t i = 0; i < b.blocks.size(); ++i) out += (i ? ", " : "") + JsonBlock(b.blocks[i]);
    out += "]";
  }
  return out + "}";
}

// --- HTML ---------------------------------------------------------------------------------

std::string Html(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

std::string Rgb(std::uint32_t bgr, double shade = 1.0) {
  char b[8];
  auto part = [&](int shift) { return static_cast<unsigned>(((bgr >> shift) & 0xFF) * shade); };
  std::snprintf(b, sizeof b, "#%02x%02x%02x", part(0), part(8), part(16));
  return b;
}

// The round face as the page paints it: a light dial in a grey ring, filled clockwise from noon
// with the bar's colour.
std::string Dial(double shown, std::uint32_t color) {
  constexpr double r = 30, c = 32;
  double share = shown / 100.0;
  std::string fill = Rgb(color), edge = Rgb(color, 0.7);
  std::string svg = "<svg class=\"barre\" width=\"64\" height=\"64\" viewBox=\"0 0 64 64\">"
                    "<circle cx=\"32\" cy=\"32\" r=\"30\" fill=\"#f4f4f4\" stroke=\"#707888\" stroke-width=\"1.5\"/>";
  if (share >= 1.0) {
    svg += "<circle cx=\"32\" cy=\"32\" r=\"30\" fill=\"" + fill + "\" stroke=\"" + edge + "\"/>";
  } else if (share > 0) {
    double a = 3.14159265358979 / 2 - share * 2 * 3.14159265358979;
    char d[160];
    std::snprintf(d, sizeof d, "M32,32 L32,2 A30,30 0 %d,1 %.2f,%.2f Z", share > 0.5 ? 1 : 0, c + r * std::cos(a),
                  c - r * std::sin(a));
    svg += std::string("<path d=\"") + d + "\" fill=\"" + fill + "\" stroke=\"" + edge + "\"/>";
  }
  return svg + "</svg>";
}

void HtmlBlock(std::string& out, const Block& b, char sign, int depth) {
  for (const std::string& box : b.boxes) out += "<p class=\"boite\">" + Html(kBoxWords + OneLine(box)) + "</p>\n";
  if (!b.missing.empty()) out += "<p class=\"absent\">" + Html(kMissingWords + b.missing) + "</p>\n";
  std::string lines;
  bool picturesSaid = false;
  for (const Shown& s : b.shown) {
    if (s.bar) {
      out += "<figure>" + Dial(*s.bar, s.barColor) + "<figcaption>" + Html(s.caption + " " + Percent(*s.bar, sign)) +
             "</figcaption></figure>\n";
    } else if (s.lit) {
      if (picturesSaid) continue;
      int total = 0;
      std::string lit = Lit(b.shown, &total);
      lines += "Images allumées : " + lit + " sur " + std::to_string(total) + "\n";
      picturesSaid = true;
    } else if (s.list) {
      if (s.lines.empty()) lines += "(liste vide)\n";
      for (const std::string& row : s.lines) lines += row + "\n";
    } else if (!s.caption.empty()) {
      lines += s.caption + " " + (s.lines.empty() ? std::string() : s.lines[0]) + "\n";
    } else {
      for (const std::string& line : s.lines) lines += line + "\n";
    }
  }
  if (!lines.empty()) out += "<pre>" + Html(lines) + "</pre>\n";
  std::string h = "h" + std::to_string(std::min(depth + 3, 6));
  for (const Block& part : b.blocks) {
    out += "<div class=\"partie\"><" + h + ">" + Html(PartWords(part) + part.title) + "</" + h + ">\n";
    HtmlBlock(out, part, sign, depth + 1);
    out += "</div>\n";
  }
}

}  // namespace

std::string SystemReportText(const SystemReport& r) {
  std::string out = std::string(kTitle) + ", pris le " + Taken(r.taken) + ".\r\n";
  if (!r.cpuTested) out += NoCpuTest(r) + "\r\n";
  for (const Block& s : r.sections) {
    out += "\r\n" + s.title + "\r\n";
    TextBlock(out, s, "", r.decimalSign);
  }
  return out;
}

std::string SystemReportJson(const SystemReport& r) {
  const LocalTime& t = r.taken;
  std::string out = "{\"programme\": \"Tamrix Utility 3.0 Pro\", \"pris_le\": \"" + std::to_string(t.year) + "-" + Two(t.month) +
                    "-" + Two(t.day) + "T" + Two(t.hour) + ":" + Two(t.minute) + ":" + Two(t.second) +
                    "\", \"test_cpu\": " + (r.cpuTested ? "true" : "false") + ", \"sections\": {";
  for (std::size_t i = 0; i < r.sections.size(); ++i)
    out += std::string(i ? ",\n  " : "\n  ") + JsonString(r.sections[i].key) + ": " + JsonBlock(r.sections[i]);
  return out + "\n}}\r\n";
}

std::string SystemReportHtml(const SystemReport& r) {
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"fr\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + Html(kTitle) + "</title>\n"
      "<style>\n"
      "body { font-family: Verdana, sans-serif; font-size: 13px; background: #efe7ce; color: #000; margin: 16px; }\n"
      "section { background: #fff; border: 1px solid #707888; border-radius: 8px; padding: 8px 14px; margin: 12px 0; }\n"
      "h1 { font-size: 18px; color: #00008b; } h2 { font-size: 15px; color: #00008b; margin: 4px 0 8px; }\n"
      "h3, h4, h5, h6 { font-size: 13px; margin: 8px 0 4px; }\n"
      "pre { font-family: Verdana, sans-serif; font-size: 12px; margin: 0 0 6px; white-space: pre-wrap; tab-size: 8; }\n"
      ".partie { margin-left: 16px; }\n"
      "figure { display: inline-flex; align-items: center; gap: 8px; margin: 4px 0; }\n"
      ".boite { color: #800000; } .absent { color: #800000; font-style: italic; }\n"
      "</style>\n</head>\n<body>\n<h1>" + Html(kTitle) + "</h1>\n<p>Pris le " + Html(Taken(r.taken)) + ". " +
      Html(NoCpuTest(r)) + "</p>\n";
  for (const Block& s : r.sections) {
    out += "<section id=\"" + s.key + "\">\n<h2>" + Html(s.title) + "</h2>\n";
    HtmlBlock(out, s, r.decimalSign, 0);
    out += "</section>\n";
  }
  return out + "</body>\n</html>\n";
}

}  // namespace tamrix::companion
