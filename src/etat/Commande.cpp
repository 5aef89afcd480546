#include "etat/Commande.h"

#include <cstdio>

#include "etat/Catalogues.h"
#include "etat/Etat.h"
#include "etat/Rapport.h"
#include "etat/Sauvegarde.h"

namespace tamrix::etat {

const char* const kUsage =
    "Utilisation :\r\n"
    "  tamrix-etat.exe [etat] [--json]\r\n"
    "      ce que chaque catalogue changerait sur cette machine\r\n"
    "  tamrix-etat.exe sauvegarde FICHIER.reg\r\n"
    "      les valeurs actuelles dans FICHIER.reg (à remettre par reg import)\r\n"
    "      et une copie de system.ini dans FICHIER.system.ini\r\n";

void UseStandardFiles(Io& io) {
  io.readFile = [](const std::string& path) -> std::optional<std::string> {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return std::nullopt;
    std::string bytes;
    char buffer[65536];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
    bool ok = !std::ferror(f);
    std::fclose(f);
    if (!ok) return std::nullopt;
    return bytes;
  };
  io.writeFile = [](const std::string& path, const std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    ok = std::fclose(f) == 0 && ok;
    return ok;
  };
  io.replaceFile = [](const std::string& from, const std::string& to) { return std::rename(from.c_str(), to.c_str()) == 0; };
  io.removeFile = [](const std::string& path) { std::remove(path.c_str()); };
}

namespace {

int Bad(const Io& io, const std::string& sentence) {
  io.err("tamrix-etat : " + sentence + "\r\n" + kUsage);
  return kBadInput;
}

std::string DateText(const LocalTime& t) {
  char b[32];
  std::snprintf(b, sizeof b, "%02d/%02d/%04d à %02d:%02d:%02d", t.day, t.month, t.year, t.hour, t.minute, t.second);
  return b;
}

// The copy of system.ini stands beside the backup, named after it.
std::string IniCopyName(const std::string& regPath) {
  std::string base = regPath;
  std::size_t slash = base.find_last_of("\\/");
  std::size_t dot = base.rfind('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) {
    std::string ext = base.substr(dot);
    for (char& c : ext) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    if (ext == ".reg") base.resize(dot);
  }
  return base + ".system.ini";
}

int Backup(const std::string& regPath, Platform& p, const Io& io) {
  std::string iniPath = SystemIni(p);
  std::string iniCopy = IniCopyName(regPath);
  std::string regShown = io.fromAnsi(regPath), copyShown = io.fromAnsi(iniCopy);
  std::optional<std::string> ini = io.readFile(io.toAnsi(iniPath));

  std::string restore = "Pour tout remettre : reg import \"" + regShown + "\"";
  restore += ini ? ", puis copiez \"" + copyShown + "\" sur \"" + iniPath + "\"."
                 : ", puis supprimez \"" + iniPath + "\" (il n'existait pas lors de la sauvegarde).";
  std::vector<std::string> header = {
      "Tamrix Utility : sauvegarde des valeurs des catalogues, prise le " + DateText(p.Now()) + ".",
      "Les valeurs présentes sont remises telles quelles, les absentes sont supprimées (=-).",
      "Les clés absentes ne sont que notées : l'import n'en crée aucune.",
      restore,
  };

  auto catalogues = Catalogues(p.BooleanText(true));
  std::string reg = io.toAnsi(RegFileText(InspectAll(p, catalogues), header, io.toAnsi));

  // Everything is written beside its final name first, and only put in place when all is there,
  // so a failure leaves nothing half-written behind.
  std::string regTemp = regPath + ".partiel", copyTemp = iniCopy + ".partiel";
  bool ok = io.writeFile(regTemp, reg);
  if (ok && ini) ok = io.writeFile(copyTemp, *ini);
  if (ok) ok = io.replaceFile(regTemp, regPath);
  if (ok && ini && !io.replaceFile(copyTemp, iniCopy)) {
    io.removeFile(regPath);
    ok = false;
  }
  if (!ok) {
    io.removeFile(regTemp);
    io.removeFile(copyTemp);
    return Bad(io, "impossible d'écrire \"" + regShown + "\" ou \"" + copyShown +
                       "\" : vérifiez le dossier et vos droits. Rien n'a été écrit.");
  }
  io.out("Sauvegarde écrite dans \"" + regShown + "\".\r\n");
  if (ini)
    io.out("Copie de system.ini écrite dans \"" + copyShown + "\".\r\n");
  else
    io.out("\"" + iniPath + "\" n'existe pas : pas de copie.\r\n");
  io.out(restore + "\r\n");
  return kOk;
}

}  // namespace

int Run(const std::vector<std::string>& args, Platform& p, const Io& io) {
  if (args.size() == 1 && (args[0] == "/?" || args[0] == "aide" || args[0] == "--aide")) {
    io.out(kUsage);
    return kOk;
  }
  if (!args.empty() && args[0] == "sauvegarde") {
    if (args.size() < 2 || args[1].empty()) return Bad(io, "il manque le nom du fichier de sauvegarde.");
    if (args.size() > 2) return Bad(io, "un seul fichier de sauvegarde, pas \"" + io.fromAnsi(args[2]) + "\".");
    return Backup(args[1], p, io);
  }
  bool json = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--json" && !json)
      json = true;
    else if (args[i] == "etat" && i == 0)
      continue;
    else
      return Bad(io, "commande inconnue : \"" + io.fromAnsi(args[i]) + "\".");
  }
  auto catalogues = Catalogues(p.BooleanText(true));
  auto states = InspectAll(p, catalogues);
  io.out(json ? JsonReport(states) : TextReport(states));
  return kOk;
}

}  // namespace tamrix::etat
