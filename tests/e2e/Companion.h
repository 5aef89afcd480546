// The companion tamrix-etat.exe, run beside the program under test as a user runs it from a
// command prompt, its output redirected.
#pragma once

#include <windows.h>

#include <string>

namespace tamrix::e2e {

// A fresh name in the temporary folder.
std::string TempPath(const std::string& name);
// The folder of the program under test, where the companion stands beside it.
std::string ExeDirectory();
std::string EtatPath();

struct Output {
  DWORD code = 0;
  std::string out, err;  // as the program wrote them
};

// Runs the companion with its standard output and error sent to files, as "> f 2> g" would.
Output RunEtat(const std::string& arguments, DWORD timeoutMs = 60000);

// Redirected output is in the OEM code page, as the system's own console tools write it.
std::string FromOem(const std::string& bytes);

}  // namespace tamrix::e2e
