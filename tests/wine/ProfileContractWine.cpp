// The profile expectations against Wine's real profile functions and real files.
#include <windows.h>

#include <fstream>
#include <iterator>

#include "contract/ProfileContract.h"
#include "platform/win32/Win32Platform.h"

namespace tamrix::test {

namespace {

std::string Convert(const std::string& text, UINT from, UINT to) {
  if (text.empty()) return {};
  int n = MultiByteToWideChar(from, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(n), L'\0');
  MultiByteToWideChar(from, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
  int m = WideCharToMultiByte(to, 0, wide.data(), n, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(m), '\0');
  WideCharToMultiByte(to, 0, wide.data(), n, out.data(), m, nullptr, nullptr);
  return out;
}

class WineProfileBench : public ProfileBench {
 public:
  WineProfileBench() {
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    dir_ = std::string(temp) + "tamrix-profile-contract";
    CreateDirectoryA(dir_.c_str(), nullptr);
  }
  ~WineProfileBench() override {
    for (const auto& path : made_) DeleteFileA(Convert(path, CP_UTF8, CP_ACP).c_str());
    RemoveDirectoryA(dir_.c_str());
  }
  Platform& platform() override { return p_; }
  std::string Path(const std::string& name) override {
    std::string path = dir_ + "\\" + name;
    DeleteFileA(path.c_str());
    made_.push_back(path);
    return path;
  }
  void Put(const std::string& path, const std::string& text) override {
    std::ofstream out(Convert(path, CP_UTF8, CP_ACP), std::ios::binary | std::ios::trunc);
    std::string ansi = Convert(text, CP_UTF8, CP_ACP);
    out.write(ansi.data(), static_cast<std::streamsize>(ansi.size()));
  }
  std::optional<std::string> Get(const std::string& path) override {
    std::ifstream in(Convert(path, CP_UTF8, CP_ACP), std::ios::binary);
    if (!in) return std::nullopt;
    std::string ansi((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return Convert(ansi, CP_ACP, CP_UTF8);
  }

 private:
  win32::Win32Platform p_;
  std::string dir_;
  std::vector<std::string> made_;
};

}  // namespace

std::unique_ptr<ProfileBench> MakeProfileBench() { return std::make_unique<WineProfileBench>(); }

}  // namespace tamrix::test
