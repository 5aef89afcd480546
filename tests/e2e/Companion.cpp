#include "e2e/Companion.h"

#include "e2e/Driver.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {

std::string TempPath(const std::string& name) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  return std::string(temp) + name;
}
std::string ExeDirectory() {
  std::string exe = App::ExePath();
  return exe.substr(0, exe.find_last_of('\\'));
}
std::string EtatPath() { return ExeDirectory() + "\\tamrix-etat.exe"; }

Output RunEtat(const std::string& arguments, DWORD timeoutMs) {
  // Fresh names at each run, so no run can ever read what an earlier one left.
  static int runs = 0;
  ++runs;
  std::string outPath = TempPath("tamrix-etat-out-" + std::to_string(runs) + ".txt");
  std::string errPath = TempPath("tamrix-etat-err-" + std::to_string(runs) + ".txt");
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE out = CreateFileA(outPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &sa, CREATE_ALWAYS, 0, nullptr);
  HANDLE err = CreateFileA(errPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &sa, CREATE_ALWAYS, 0, nullptr);
  STARTUPINFOA si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESTDHANDLES;
  si.hStdOutput = out;
  si.hStdError = err;
  PROCESS_INFORMATION pi{};
  std::string line = "\"" + EtatPath() + "\"" + (arguments.empty() ? "" : " " + arguments);
  Output o;
  o.code = static_cast<DWORD>(-1);
  if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr, &si, &pi)) {
    WaitForSingleObject(pi.hProcess, timeoutMs);
    GetExitCodeProcess(pi.hProcess, &o.code);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  CloseHandle(out);
  CloseHandle(err);
  o.out = ReadWholeFile(outPath).value_or("");
  o.err = ReadWholeFile(errPath).value_or("");
  DeleteFileA(outPath.c_str());
  DeleteFileA(errPath.c_str());
  return o;
}

std::string FromOem(const std::string& bytes) {
  if (bytes.empty()) return {};
  int n = MultiByteToWideChar(GetOEMCP(), 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
  std::wstring w(n, L'\0');
  MultiByteToWideChar(GetOEMCP(), 0, bytes.data(), static_cast<int>(bytes.size()), w.data(), n);
  return Utf8(w);
}

}  // namespace tamrix::e2e
