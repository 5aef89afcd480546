#include "companion/Command.h"

#include <algorithm>
#include <cstdio>

#include "companion/Catalogues.h"
#include "companion/CatalogueState.h"
#include "companion/StateReport.h"
#include "companion/SystemReport.h"
#include "companion/Backup.h"
#include "companion/Differences.h"
#include "platform/AsciiCase.h"

namespace tamrix::companion {

const char* const kUsage =
    "Utilisation :\r\n"
    "  tamrix-etat.exe [etat] [--json] [--vue 32|64]\r\n"
    "      ce que chaque catalogue changerait sur cette machine\r\n"
    "  tamrix-etat.exe sauvegarde FICHIER.reg [--remplacer] [--vue 32|64]\r\n"
    "      les valeurs actuelles dans FICHIER.reg (à remettre par reg import)\r\n"
    "      et une copie de system.ini dans FICHIER.system.ini ;\r\n"
    "      un fichier qui existe n'est remplacé qu'avec --remplacer\r\n"
    "  tamrix-etat.exe differences FICHIER.reg [--json] [--vue 32|64]\r\n"
    "      ce qui a changé depuis une sauvegarde (ou un fichier de reg export) :\r\n"
    "      chaque valeur du fichier face à cette machine, et system.ini face à sa copie ;\r\n"
    "      dans la vue du registre que nomme la sauvegarde (sinon --vue) ; rien n'est modifié.\r\n"
    "      Code de sortie : 0 rien n'a changé, 1 quelque chose a changé, 2 mauvaise entrée\r\n"
    "  tamrix-etat.exe rapport [FICHIER] [--json | --html] [--test-cpu] [--remplacer]\r\n"
    "      ce que montrent les pages d'information, en un seul rapport\r\n"
    "      (à l'écran, ou dans FICHIER ; --test-cpu ajoute le test du processeur, 15 secondes)\r\n"
    "  --vue 32 ou 64 : la vue du registre qu'écrit le programme 32 ou 64 bits\r\n"
    "      (par défaut, celle du programme de la même version que celle-ci)\r\n"
    "  -h, --aide : cette aide\r\n";

namespace {

// A command word as typed, in UTF-8, in any case: the one capital letter with an accent that
// the command words hold is folded too.
std::string Folded(const std::string& utf8) {
  std::string s = AsciiLower(utf8);
  for (std::size_t at = s.find("\xC3\x89"); at != std::string::npos; at = s.find("\xC3\x89", at)) s.replace(at, 2, "\xC3\xA9");
  return s;
}

int Bad(const Io& io, const std::string& sentence) {
  io.err("tamrix-etat : " + sentence + "\r\n" + kUsage);
  return kBadInput;
}

// --- the command line ---------------------------------------------------------------------

enum class Command { Etat, Sauvegarde, Rapport, Differences };

struct CommandWord {
  const char* word;
  Command command;
  std::size_t operands;  // the file names it takes
};
constexpr CommandWord kCommands[] = {
    {"etat", Command::Etat, 0},
    {"sauvegarde", Command::Sauvegarde, 1},
    {"rapport", Command::Rapport, 1},
    {"differences", Command::Differences, 1},
    {"différences", Command::Differences, 1},
};

struct Options {
  bool json = false, html = false, testCpu = false, replace = false, help = false;
  std::optional<std::uint32_t> view;
};

// The commands an option goes with: none listed is every one.
struct OptionWord {
  const char* word;
  bool takesValue;
  std::vector<Command> only;
  void (*set)(Options&, const std::string& value);
};
const OptionWord kOptions[] = {
    {"--json", false, {Command::Etat, Command::Rapport, Command::Differences}, [](Options& o, const std::string&) { o.json = true; }},
    {"--html", false, {Command::Rapport}, [](Options& o, const std::string&) { o.html = true; }},
    {"--test-cpu", false, {Command::Rapport}, [](Options& o, const std::string&) { o.testCpu = true; }},
    {"--remplacer", false, {Command::Sauvegarde, Command::Rapport}, [](Options& o, const std::string&) { o.replace = true; }},
    {"--vue", true, {Command::Etat, Command::Sauvegarde, Command::Differences},
     [](Options& o, const std::string& v) { o.view = v == "32" ? keyaccess::View32 : keyaccess::View64; }},
    {"--aide", false, {}, [](Options& o, const std::string&) { o.help = true; }},
    {"-h", false, {}, [](Options& o, const std::string&) { o.help = true; }},
    {"/?", false, {}, [](Options& o, const std::string&) { o.help = true; }},
    {"aide", false, {}, [](Options& o, const std::string&) { o.help = true; }},
};

const char* CommandName(Command c) {
  for (const CommandWord& w : kCommands)
    if (w.command == c) return w.word;
  return "";
}

struct Line {
  Command command = Command::Etat;
  Options options;
  std::vector<std::string> operands;
};

// The sentence for bad input, or nothing.
std::optional<std::string> Parse(const std::vector<std::string>& args, Line& line, const Io& io) {
  bool commandSeen = false;
  std::vector<const OptionWord*> given;
  for (std::size_t i = 0; i < args.size(); ++i) {
    std::string word = AsciiLower(args[i]);
    const OptionWord* option = nullptr;
    for (const OptionWord& o : kOptions)
      if (word == o.word) option = &o;
    if (option) {
      for (const OptionWord* g : given)
        if (g == option) return "l'option " + std::string(option->word) + " est donnée deux fois.";
      given.push_back(option);
      std::string value;
      if (option->takesValue) {
        if (i + 1 >= args.size()) return "il manque la valeur de l'option " + std::string(option->word) + ".";
        value = args[++i];
        if (value != "32" && value != "64")
          return "l'option " + std::string(option->word) + " prend 32 ou 64, pas \"" + io.fromAnsi(value) + "\".";
      }
      option->set(line.options, value);
      continue;
    }
    if (word.size() > 1 && word[0] == '-') return "option inconnue : \"" + io.fromAnsi(args[i]) + "\".";
    const CommandWord* command = nullptr;
    for (const CommandWord& c : kCommands)
      if (Folded(io.fromAnsi(args[i])) == c.word) command = &c;
    if (!commandSeen && command) {
      commandSeen = true;
      line.command = command->command;
      continue;
    }
    if (!commandSeen) return "commande inconnue : \"" + io.fromAnsi(args[i]) + "\".";
    line.operands.push_back(args[i]);
  }
  if (line.options.help) return std::nullopt;
  for (const OptionWord* g : given) {
    if (g->only.empty() || std::find(g->only.begin(), g->only.end(), line.command) != g->only.end()) continue;
    std::string commands;
    for (std::size_t i = 0; i < g->only.size(); ++i)
      commands += std::string(i == 0 ? "" : i + 1 == g->only.size() ? " et " : ", ") + CommandName(g->only[i]);
    return "l'option " + std::string(g->word) + " ne va qu'avec " + (g->only.size() > 1 ? "les commandes " : "la commande ") +
           commands + ".";
  }
  if (line.options.json && line.options.html) return "choisissez --json ou --html, pas les deux.";
  std::size_t wanted = 0;
  for (const CommandWord& c : kCommands)
    if (c.command == line.command) wanted = c.operands;
  if (line.command == Command::Sauvegarde && (line.operands.empty() || line.operands[0].empty()))
    return "il manque le nom du fichier de sauvegarde.";
  if (line.command == Command::Differences && (line.operands.empty() || line.operands[0].empty()))
    return "il manque le nom du fichier .reg à comparer.";
  if (line.command == Command::Rapport && !line.operands.empty() && line.operands[0].empty())
    return "le nom du fichier du rapport est vide.";
  if (line.operands.size() > wanted)
    return line.command == Command::Etat ? "commande inconnue : \"" + io.fromAnsi(line.operands[wanted]) + "\"."
           : line.command == Command::Sauvegarde
               ? "un seul fichier de sauvegarde, pas \"" + io.fromAnsi(line.operands[wanted]) + "\"."
           : line.command == Command::Differences
               ? "un seul fichier à comparer, pas \"" + io.fromAnsi(line.operands[wanted]) + "\"."
               : "un seul fichier de rapport, pas \"" + io.fromAnsi(line.operands[wanted]) + "\".";
  return std::nullopt;
}

// --- the backup -------------------------------------------------------------------------------

std::string DateText(const LocalTime& t) {
  char b[32];
  std::snprintf(b, sizeof b, "%02d/%02d/%04d à %02d:%02d:%02d", t.day, t.month, t.year, t.hour, t.minute, t.second);
  return b;
}

std::string BaseName(const std::string& path) {
  std::size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The files the catalogues themselves write: a backup never takes their place, wherever they stand.
constexpr const char* kCatalogueFiles[] = {"system.ini", "config.dll", "oeminfo.ini", "desktop.ini"};

// Why the backup may not be written at that name, or nothing.
std::optional<std::string> Forbidden(const std::string& full, const std::string& windowsDir, const Io& io) {
  std::string shown = io.fromAnsi(full);
  for (const char* name : kCatalogueFiles)
    if (AsciiLower(BaseName(full)) == name)
      return "\"" + shown + "\" est un fichier qu'écrit le programme lui-même : une sauvegarde ne le remplace jamais.";
  // Both separators are one to Windows.
  auto folded = [](std::string s) {
    for (char& c : s)
      if (c == '/') c = '\\';
    return AsciiLower(s);
  };
  std::string dir = folded(windowsDir), lower = folded(full);
  while (!dir.empty() && dir.back() == '\\') dir.pop_back();
  if (!dir.empty() && lower.rfind(dir + "\\", 0) == 0)
    return "\"" + shown + "\" est dans le dossier de Windows : une sauvegarde n'y écrit jamais.";
  return std::nullopt;
}

// Why these new files may not be written, or nothing: a file of the program's own or in the
// Windows directory never, one that stands there only when told to replace it, and never a
// read-only one.
std::optional<std::string> Refusal(const std::vector<std::string>& names, bool replace, const std::string& windowsDir,
                                   const Io& io) {
  for (const std::string& name : names)
    if (auto why = Forbidden(name, windowsDir, io)) return *why + " Rien n'a été écrit.";
  for (const std::string& name : names) {
    if (!io.exists(name)) continue;
    if (!replace) return "\"" + io.fromAnsi(name) + "\" existe déjà : ajoutez --remplacer pour le remplacer. Rien n'a été écrit.";
    if (io.readOnly(name)) return "\"" + io.fromAnsi(name) + "\" est en lecture seule : il reste tel quel. Rien n'a été écrit.";
  }
  return std::nullopt;
}

// A name beside the file that nothing holds yet.
std::string FreeName(const std::string& path, const std::string& suffix, const Io& io) {
  std::string name = path + suffix;
  for (int n = 2; io.exists(name) && n < 100; ++n) name = path + suffix + std::to_string(n);
  return name;
}

struct Target {
  std::string path;     // where the file goes
  std::string bytes;
  std::string temp;     // the new file, written whole before anything moves
  std::string aside;    // the earlier file while the new one is put in place
  bool earlier = false;
  bool placed = false, setAside = false;
};

// Every new file is written whole and flushed under a name of its own; only then do the earlier
// files step aside and the new ones take their names. Any failure undoes what was done, so the
// earlier files stand exactly as they were.
bool PutInPlace(std::vector<Target>& targets, const Io& io) {
  bool ok = true;
  for (Target& t : targets) {
    t.temp = FreeName(t.path, ".partiel", io);
    if (ok) ok = io.writeFile(t.temp, t.bytes);
  }
  for (Target& t : targets) {
    if (!ok || !t.earlier) continue;
    t.aside = FreeName(t.path, ".ancien", io);
    ok = t.setAside = io.moveFile(t.path, t.aside);
  }
  for (Target& t : targets)
    if (ok) ok = t.placed = io.moveFile(t.temp, t.path);
  if (ok) {
    for (Target& t : targets)
      if (t.setAside) io.removeFile(t.aside);
    return true;
  }
  for (Target& t : targets) {
    if (t.placed) io.removeFile(t.path);
    if (t.setAside) io.moveFile(t.aside, t.path);
    io.removeFile(t.temp);
  }
  return false;
}

const char* const kOneView =
    "tamrix-etat : ce Windows n'a qu'une vue du registre (Windows 32 bits) : --vue n'y change rien.\r\n";

int Backup(const std::string& givenPath, const Options& options, Platform& p, const Io& io) {
  std::string iniPath = SystemIni(p);
  std::string regPath = io.fullPath(givenPath);
  std::string iniCopy = IniCopyName(regPath);
  std::string regShown = io.fromAnsi(regPath), copyShown = io.fromAnsi(iniCopy);
  std::string windowsDir = iniPath.substr(0, iniPath.find_last_of('\\'));
  std::optional<std::string> ini = io.readFile(io.toAnsi(iniPath));

  std::vector<std::string> names = {regPath};
  if (ini) names.push_back(iniCopy);
  if (auto why = Refusal(names, options.replace, io.toAnsi(windowsDir), io)) return Bad(io, *why);

  // The view the program of the chosen build writes; the 32-bit one is named under WOW6432Node.
  bool twoViews = TwoViews(p);
  std::uint32_t view = twoViews ? options.view.value_or(keyaccess::View64) : 0;
  Naming naming{view == keyaccess::View32};

  std::string import = "reg import \"" + regShown + "\"" + (twoViews && view == keyaccess::View64 ? " /reg:64" : "");
  std::string restore = "Pour tout remettre : " + import;
  restore += ini ? ", puis copiez \"" + copyShown + "\" sur \"" + iniPath + "\"."
                 : ", puis supprimez \"" + iniPath + "\" (il n'existait pas lors de la sauvegarde).";
  std::string admin = "Les clés HKLM et system.ini ne se remettent que depuis une invite de commandes ouverte en administrateur.";
  std::vector<std::string> header = {
      "Tamrix Utility : sauvegarde des valeurs des catalogues, prise le " + DateText(p.Now()) + ".",
      "Les valeurs présentes sont remises telles quelles, les absentes sont supprimées (=-).",
      "Les clés absentes ne sont que notées : l'import n'en crée aucune, sauf les clés que le programme supprime,",
      "remises entières (ou supprimées si elles n'existaient pas).",
      restore,
      admin,
  };
  if (twoViews)
    header.insert(header.end() - 2,
                  std::string("Vue du registre : celle du programme ") + (view == keyaccess::View32 ? "32" : "64") + " bits.");

  auto catalogues = Catalogues(p.BooleanText(true));
  std::vector<Target> targets;
  targets.push_back({regPath, Utf16File(RegFileText(InspectAll(p, catalogues, view), header, naming)), {}, {},
                     io.exists(regPath)});
  if (ini) targets.push_back({iniCopy, *ini, {}, {}, io.exists(iniCopy)});
  if (!PutInPlace(targets, io))
    return Bad(io, "impossible d'écrire \"" + regShown + "\" ou \"" + copyShown +
                       "\" : vérifiez le dossier et vos droits. Aucun fichier d'avant n'a changé.");
  io.out("Sauvegarde écrite dans \"" + regShown + "\".\r\n");
  if (ini)
    io.out("Copie de system.ini écrite dans \"" + copyShown + "\".\r\n");
  else
    io.out("\"" + iniPath + "\" n'existe pas : pas de copie.\r\n");
  io.out(restore + "\r\n" + admin + "\r\n");
  return kOk;
}

// --- the system report -------------------------------------------------------------------------

int Report(const Line& line, Platform& p, const Io& io) {
  const Options& o = line.options;
  std::optional<std::string> path;
  if (!line.operands.empty()) {
    path = io.fullPath(line.operands[0]);
    std::string iniPath = SystemIni(p);
    if (auto why = Refusal({*path}, o.replace, io.toAnsi(iniPath.substr(0, iniPath.find_last_of('\\'))), io))
      return Bad(io, *why);
  }
  SystemReport report = TakeSystemReport(p, o.testCpu);
  std::string text = o.json ? SystemReportJson(report) : o.html ? SystemReportHtml(report) : SystemReportText(report);
  if (!path) {
    io.out(text);
    return kOk;
  }
  // A text file in UTF-8 says so by its byte-order mark, which Notepad reads; the JSON is ASCII
  // and the HTML names its encoding itself.
  if (!o.json && !o.html) text = "\xEF\xBB\xBF" + text;
  std::vector<Target> targets = {{*path, text, {}, {}, io.exists(*path)}};
  std::string shown = io.fromAnsi(*path);
  if (!PutInPlace(targets, io))
    return Bad(io, "impossible d'écrire \"" + shown + "\" : vérifiez le dossier et vos droits. Aucun fichier d'avant n'a changé.");
  io.out("Rapport écrit dans \"" + shown + "\".\r\n");
  return kOk;
}

}  // namespace

int Run(const std::vector<std::string>& args, Platform& p, const Io& io, std::uint32_t ownView) {
  Line line;
  if (auto bad = Parse(args, line, io)) return Bad(io, *bad);
  if (line.options.help) {
    io.out(kUsage);
    return kOk;
  }
  std::optional<std::uint32_t> explicitView = line.options.view;
  // A 32-bit Windows has one view of the registry: "--vue" has nothing to choose there. It is
  // said on the error stream, so that a report in JSON stays whole, and the command goes on.
  if (line.options.view && !TwoViews(p)) io.err(kOneView);
  if (!line.options.view) line.options.view = ownView;
  if (line.command == Command::Sauvegarde) return Backup(line.operands[0], line.options, p, io);
  if (line.command == Command::Rapport) return Report(line, p, io);
  if (line.command == Command::Differences)
    return Differences(line.operands[0], {line.options.json, explicitView}, p, io, ownView);
  auto catalogues = Catalogues(p.BooleanText(true));
  auto states = InspectAll(p, catalogues, TwoViews(p) ? *line.options.view : 0);
  bool admin = p.IsUserAnAdmin();
  io.out(line.options.json ? JsonReport(states, admin) : TextReport(states, admin));
  return kOk;
}

}  // namespace tamrix::companion
