#include "platform/Ini.h"

#include "platform/AnsiText.h"

namespace tamrix::ini {

std::string ProfilePath;

namespace {

// The size of the reading buffer, NULs and all: 254 characters and the terminator.
constexpr std::uint32_t kBufferSize = 255;


}  // namespace

std::string ReadProfileValue(Platform& p, const std::string& section, const std::string& key) {
  std::string buffer(kBufferSize, '\0');
  std::uint32_t n = p.GetPrivateProfileStringA(section, key, "", &buffer, kBufferSize, ProfilePath);
  // Only what the call says it copied: the rest of the buffer is its NULs.
  return FirstChars(buffer, n);
}

std::string WriteProfileValue(Platform& p, const std::string& section, const std::string& key,
                              const std::string& value) {
  p.WritePrivateProfileStringA(section, key, value, ProfilePath);
  return "";
}

std::string ConfigFilePath(Platform& p) { return p.AppPath() + "\\config.dll"; }

std::string SystemIniPath(const std::string& windowsDirectory) { return windowsDirectory + "\\system.ini"; }

std::string OemInfoPath(const std::string& folder) { return folder + "\\system\\oeminfo.ini"; }

}  // namespace tamrix::ini
