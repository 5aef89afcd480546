// Times one whole Windows optimiser apply under Wine: the click's road from the Windows
// directory to the last system.ini key, 21 registry rows and 45 profile keys, each opening and
// closing its own key or file, against Wine's real registry and C:\windows\system.ini.
//
//   bench_optimiser_apply.exe [--runs N]   N applies in this process: min, median, mean
//   bench_optimiser_apply.exe --once       one apply, for timing a whole process from outside
//   bench_optimiser_apply.exe --reg-file F writes the same 21 rows as a .reg file for reg import
//
// It changes the registry and system.ini, so it runs only where TAMRIX_BENCH_THROWAWAY=1 says
// the prefix is a throw-away one (scripts/bench-optimiser.sh makes one).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "optimisers/WindowsOptimiser.h"
#include "platform/Ini.h"
#include "platform/win32/Win32Platform.h"

namespace {

using namespace tamrix;

double NowMs() {
  static LARGE_INTEGER frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f;
  }();
  LARGE_INTEGER t;
  QueryPerformanceCounter(&t);
  return 1000.0 * static_cast<double>(t.QuadPart) / static_cast<double>(frequency.QuadPart);
}

HKEY Root(HKey hive) { return hive == hive::CurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

// The rows land only in keys that exist, as on a machine that has them all.
void CreateCatalogueKeys() {
  for (const auto& row : WindowsOptimiser::kRegistryRows) {
    HKEY k;
    if (RegCreateKeyExA(Root(row.hive), std::string(row.keyPath).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &k,
                        nullptr) == ERROR_SUCCESS)
      RegCloseKey(k);
  }
}

bool WriteRegFile(const char* path) {
  std::ofstream out(path, std::ios::binary);
  if (!out) return false;
  out << "REGEDIT4\r\n";
  for (const auto& row : WindowsOptimiser::kRegistryRows) {
    out << "\r\n[" << (row.hive == hive::CurrentUser ? "HKEY_CURRENT_USER" : "HKEY_LOCAL_MACHINE") << "\\"
        << row.keyPath << "]\r\n\"" << row.valueName << "\"=";
    if (row.type == regtype::Dword) {
      char hex[16];
      std::snprintf(hex, sizeof hex, "dword:%08x", static_cast<unsigned>(row.data.number));
      out << hex << "\r\n";
    } else {
      out << "\"" << row.data.text << "\"\r\n";
    }
  }
  return static_cast<bool>(out);
}

void ApplyOnce(Platform& p, Timer& timer) {
  WindowsOptimiser::Optimise(p, timer);
  timer.SetEnabled(false);  // no window, no show: only the writes are timed
}

}  // namespace

int main(int argc, char** argv) {
  int runs = 50;
  bool once = false;
  for (int i = 1; i < argc; ++i) {
    if (!std::strcmp(argv[i], "--reg-file") && i + 1 < argc) return WriteRegFile(argv[i + 1]) ? 0 : 1;
    if (!std::strcmp(argv[i], "--once")) once = true;
    if (!std::strcmp(argv[i], "--runs") && i + 1 < argc) runs = std::max(1, std::atoi(argv[++i]));
  }
  const char* throwaway = std::getenv("TAMRIX_BENCH_THROWAWAY");
  if (!throwaway || std::strcmp(throwaway, "1") != 0) {
    std::fprintf(stderr,
                 "bench_optimiser_apply changes the registry and system.ini: run it through "
                 "scripts/bench-optimiser.sh, or set TAMRIX_BENCH_THROWAWAY=1 in a throw-away prefix\n");
    return 2;
  }

  win32::Win32Platform p;
  Form form({.name = "bench"});
  Timer timer(&form, {.name = "Timer4", .enabled = false, .interval = 500});
  CreateCatalogueKeys();

  if (once) {
    ApplyOnce(p, timer);
    return 0;
  }

  ApplyOnce(p, timer);  // warm-up: the files and keys are touched once before timing
  std::vector<double> ms;
  for (int i = 0; i < runs; ++i) {
    double start = NowMs();
    ApplyOnce(p, timer);
    ms.push_back(NowMs() - start);
  }
  std::sort(ms.begin(), ms.end());
  double mean = 0;
  for (double v : ms) mean += v;
  mean /= static_cast<double>(ms.size());

  // The two halves on their own, to see where the time goes.
  auto time = [&](auto&& body) {
    std::vector<double> t;
    for (int i = 0; i < runs; ++i) {
      double start = NowMs();
      body();
      t.push_back(NowMs() - start);
    }
    std::sort(t.begin(), t.end());
    return t[t.size() / 2];
  };
  auto registry = catalogue::RegistryWriter(p);
  auto profile = catalogue::ProfileFileWriter(p);
  double registryMs = time([&] { catalogue::WriteRows(WindowsOptimiser::kRegistryRows, registry); });
  double profileMs = time([&] {
    catalogue::WriteRows(WindowsOptimiser::kProfileRowsBeforeTimer, profile);
    catalogue::WriteRows(WindowsOptimiser::kProfileRowsAfterTimer, profile);
  });

  std::printf("runs=%d\n", runs);
  std::printf("apply_ms_min=%.3f\napply_ms_median=%.3f\napply_ms_mean=%.3f\n", ms.front(), ms[ms.size() / 2], mean);
  std::printf("registry_rows_ms_median=%.3f\nprofile_rows_ms_median=%.3f\n", registryMs, profileMs);
  return 0;
}
