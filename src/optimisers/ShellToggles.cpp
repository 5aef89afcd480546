#include "optimisers/ShellToggles.h"

#include <string>

#include "platform/Ini.h"
#include "platform/Registre.h"

namespace tamrix::ShellToggles {

void Clicked(Platform& p, const Toggle& t, std::int32_t value) {
  const std::string key(t.configKey);
  if (value == 1) {
    Registre::WriteRegValue(p, t.hive, std::string(t.keyPath), std::string(t.valueName),
                            std::string(t.tickedData), kType);
    ini::ProfilePath = ini::ConfigFilePath(p);
    ini::WriteProfileValue(p, kSection, key, "1");
    // Last, after both writes; its answer isn't looked at.
    if (t.dvdNotice) p.MessageBoxA(kDvdText, mb::Ok | mb::Information, kDvdTitle);
  } else {
    if (t.untick == Toggle::Untick::DeleteKey)
      Registre::DeleteRegKey(p, t.hive, std::string(t.untickTarget));
    else
      Registre::WriteRegValue(p, t.hive, std::string(t.keyPath), std::string(t.valueName),
                              std::string(t.untickTarget), kType);
    // ProfilePath is left as the last user set it: after an optimiser run or an OEM apply the
    // "0" lands in system.ini or oeminfo.ini, and config.dll keeps its "1".
    ini::WriteProfileValue(p, kSection, key, "0");
  }
}

}  // namespace tamrix::ShellToggles
