#include "shell/Dispatch.h"

#include <new>
#include <string>

#include "platform/Runtime.h"

namespace tamrix {

namespace {

void ShowFault(Platform& p, int number, const std::string& description) {
  p.MessageBoxA("Run-time error '" + std::to_string(number) + "':\r\r" + description, mb::Ok | mb::Critical,
                rt::kAppTitle);
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
