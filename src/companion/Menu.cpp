#include "companion/Menu.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace tamrix::companion {

namespace {

constexpr int kDesktopDirectory = 0x10;  // CSIDL_DESKTOPDIRECTORY: the Desktop as a folder of files
constexpr int kShowNormal = 1;
constexpr char32_t kEscape = 0x1B;

const char* const kMenuText =
    "\r\n"
    "Tamrix Utility 3.0 Pro : le compagnon\r\n"
    "\r\n"
    "  1  Ce que chaque optimisation changerait sur cette machine\r\n"
    "  2  Une sauvegarde sur le Bureau, pour tout remettre comme avant\r\n"
    "  3  Le rapport système sur le Bureau, ouvert dans le navigateur\r\n"
    "  4  Ce qui a changé depuis une sauvegarde\r\n"
    "  0  Quitter (ou Q, ou Échap)\r\n"
    "\r\n"
    "Votre choix : ";

// The Desktop's folder, or the current one where the system names none.
std::string Desktop(Platform& p, const Io& io) {
  std::uint64_t list = 0;
  std::string path;
  bool found = p.SHGetSpecialFolderLocation(0, kDesktopDirectory, &list) == 0 && list != 0 &&
               p.SHGetPathFromIDListA(list, &path) && !path.empty();
  if (list) p.CoTaskMemFree(list);
  if (found) return path;
  io.out("Le Bureau est introuvable : le fichier va dans le dossier courant.\r\n");
  return io.fullPath(".");
}

// A dated name that no file holds yet, with each of its endings: two choices in the same minute
// get "(2)", and nothing is ever replaced.
std::string FreeBase(const std::string& folder, const std::string& name, const std::vector<std::string>& endings,
                     const Io& io) {
  std::string separator = !folder.empty() && (folder.back() == '\\' || folder.back() == '/') ? "" : "\\";
  std::string base = folder + separator + name;
  for (int n = 2;; ++n) {
    bool taken = false;
    for (const std::string& ending : endings) taken = taken || io.exists(base + ending);
    if (!taken || n > 99) return base;
    base = folder + separator + name + " (" + std::to_string(n) + ")";
  }
}

// The choices run the commands themselves; a failure's sentence is enough here, without the
// command line's usage after it.
Io WithoutUsage(const Io& io) {
  Io quiet = io;
  quiet.err = [err = io.err](const std::string& s) {
    std::size_t usage = s.find(kUsage);
    err(usage == std::string::npos ? s : s.substr(0, usage));
  };
  return quiet;
}

void Backup(Platform& p, const Io& io, std::uint32_t ownView) {
  std::string base = FreeBase(Desktop(p, io), DatedName("Tamrix sauvegarde", p.Now()), {".reg", ".system.ini"}, io);
  Run({"sauvegarde", base + ".reg"}, p, WithoutUsage(io), ownView);
}

void Report(Platform& p, const Io& io, std::uint32_t ownView) {
  std::string path = FreeBase(Desktop(p, io), DatedName("Tamrix rapport", p.Now()), {".html"}, io) + ".html";
  io.out("Le rapport se prépare (une seconde environ)...\r\n");
  if (Run({"rapport", path, "--html"}, p, WithoutUsage(io), ownView) != kOk) return;
  // The shell's answer above 32 means the page's program was started.
  if (p.ShellExecuteA(0, "open", path, "", "", kShowNormal) > 32)
    io.out("Ouvert dans votre navigateur.\r\n");
  else
    io.out("Le navigateur ne s'est pas ouvert : ouvrez ce fichier d'un double-clic.\r\n");
}

const char* const kBackupPrefix = "Tamrix sauvegarde ";

// What changed since a backup: the Desktop's newest first, or any file the user names (a file
// dropped on the console types its path between quotes). False when the input ended at the question.
bool Changes(Platform& p, const Io& io, const Keyboard& keyboard, std::uint32_t ownView) {
  std::string desktop = Desktop(p, io);
  std::string separator = !desktop.empty() && (desktop.back() == '\\' || desktop.back() == '/') ? "" : "\\";
  std::optional<std::string> newest = NewestBackup(io.findFiles(desktop, kBackupPrefix, ".reg"));
  if (newest) {
    newest = desktop + separator + *newest;
    io.out("La sauvegarde la plus récente du Bureau est \"" + io.fromAnsi(*newest) + "\".\r\n"
           "Entrée pour la comparer, ou tapez le chemin d'une autre : ");
  } else {
    io.out("Aucune sauvegarde sur le Bureau. Tapez le chemin d'un fichier .reg (Entrée : retour au menu) : ");
  }
  std::optional<std::string> typed = keyboard.line();
  if (!typed) return false;
  std::string path = *typed;
  while (!path.empty() && (path.back() == ' ' || path.back() == '\t')) path.pop_back();
  while (!path.empty() && (path.front() == ' ' || path.front() == '\t')) path.erase(0, 1);
  if (path.size() >= 2 && path.front() == '"' && path.back() == '"') path = path.substr(1, path.size() - 2);
  if (path.empty() && !newest) return true;
  io.out("\r\n");
  Run({"differences", path.empty() ? *newest : io.toAnsi(path)}, p, WithoutUsage(io), ownView);
  return true;
}

}  // namespace

std::optional<std::string> NewestBackup(const std::vector<std::string>& names) {
  // The date sorts as text; a second backup of the same minute, "(2)", comes after the first.
  auto key = [](const std::string& name) {
    std::string stem = name.substr(0, name.size() - 4);
    int n = 1;
    std::size_t open = stem.rfind(" (");
    if (!stem.empty() && stem.back() == ')' && open != std::string::npos) {
      n = std::atoi(stem.c_str() + open + 2);
      stem.resize(open);
    }
    return std::make_pair(stem, n);
  };
  std::optional<std::string> newest;
  for (const std::string& name : names) {
    if (name.size() < 4 || name.rfind(kBackupPrefix, 0) != 0) continue;
    if (!newest || key(*newest) < key(name)) newest = name;
  }
  return newest;
}

std::string DatedName(const std::string& what, const LocalTime& t) {
  char b[32];
  std::snprintf(b, sizeof b, " %04d-%02d-%02d %02dh%02d", t.year, t.month, t.day, t.hour, t.minute);
  return what + b;
}

int Menu(Platform& p, const Io& io, const Keyboard& keyboard, std::uint32_t ownView) {
  io.out(kMenuText);
  for (;;) {
    std::optional<char32_t> key = keyboard.key();
    if (!key) {
      io.out("\r\n");
      return kOk;
    }
    // Enter, a blank or a tab after a choice is the habit of a command line: nothing to answer.
    if (*key == '\r' || *key == '\n' || *key == ' ' || *key == '\t') continue;
    // The choice shows after the question, as the console would have echoed it.
    io.out((*key >= 0x20 && *key < 0x7F ? std::string(1, static_cast<char>(*key)) : "") + "\r\n");
    if (*key == '0' || *key == 'q' || *key == 'Q' || *key == kEscape) return kOk;
    io.out("\r\n");
    switch (*key) {
      case '1': Run({"etat"}, p, WithoutUsage(io), ownView); break;
      case '2': Backup(p, io, ownView); break;
      case '3': Report(p, io, ownView); break;
      case '4':
        if (!Changes(p, io, keyboard, ownView)) {
          io.out("\r\n");
          return kOk;
        }
        break;
      default: io.out("Choix inconnu : tapez 1, 2, 3 ou 4, ou 0 pour quitter.\r\n");
    }
    io.out(kMenuText);
  }
}

}  // namespace tamrix::companion
