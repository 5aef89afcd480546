// Catalogue places in Wine's real registry, set up before a scenario and put back after it: the
// values as they stood, and no key left behind that the scenario created.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "e2e/Registry.h"

namespace tamrix::e2e {

struct Place {
  HKEY hive;
  std::string path;
  std::string name;
};

struct StoredValue {
  DWORD type = 0;
  std::string bytes;  // as the registry holds them
};
std::optional<StoredValue> ReadValue(HKEY hive, const std::string& path, const std::string& name);

class RegistrySnapshot {
 public:
  explicit RegistrySnapshot(std::vector<Place> places);
  // Makes every key of the places, remembering the highest key each had to create.
  void CreateKeys();
  // Deletes the places' values, so that a run shows every write in an export.
  void ClearValues();
  // The values back as they stood, the created keys gone.
  void Restore();

 private:
  struct Saved {
    Place place;
    std::optional<StoredValue> value;
  };
  std::vector<Saved> saved_;
  std::vector<std::pair<HKEY, std::string>> created_;
};

// The export entry of one value, as Difference names it, in lower case.
std::string EntryOf(HKEY hive, const std::string& path, const std::string& name);
std::string Lower(std::string s);

// What a stored value reads as a catalogue row gives it: a DWORD in decimal, a text as it stands.
std::string AsRowData(const StoredValue& v);

// Entries that differ between two exports, keys in lower case, without the ones Wine changes by
// itself (its own settings, the video keys, driver dates, the audio endpoints).
std::map<std::string, std::string> Changes(const Export& before, const Export& after);

// Whole files, by Windows path: nullopt when absent.
std::optional<std::string> ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, const std::string& bytes);

// A file put back as it stood at construction, present or absent.
class FileGuard {
 public:
  explicit FileGuard(std::string path) : path_(std::move(path)), saved_(ReadWholeFile(path_)) {}
  ~FileGuard() { Restore(); }
  void Restore();
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::optional<std::string> saved_;
};

// Ends the program's process at once, when a scenario must not wait for its show.
void EndProcess(DWORD pid);

}  // namespace tamrix::e2e
