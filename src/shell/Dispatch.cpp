#include "shell/Dispatch.h"

#include <cstdio>
#include <new>
#include <string>

#include "platform/Runtime.h"

namespace tamrix {

namespace {

void ShowFault(Platform& p, int number, const std::string& description) {
  std::string shown = std::to_string(number);
  // An automation error is numbered by its failure code, which the box also gives in hex.
  if (number < 0) {
    char hex[16];
    std::snprintf(hex, sizeof hex, " (%08x)", static_cast<unsigned>(number));
    shown += hex;
  }
  p.MessageBoxA("Run-time error '" + shown + "':\r\r" + description, mb::Ok | mb::Critical, rt::kAppTitle);
}

}  // namespace

bool RunHandler(Platform& p, const std::function<void()>& handler) {
  try {
    if (handler) handler();
    return true;
  } catch (const RuntimeError& e) {
    ShowFault(p, e.Number(), e.Description());
  } catch (const std::bad_alloc&) {
    ShowFault(p, 7, "Out of memory");
  } catch (const std::exception&) {
    ShowFault(p, 51, "Internal error");
  }
  return false;
}

}  // namespace tamrix
