// How every event handler runs: a run-time fault that the handler didn't catch shows the
// runtime's standard error box and then the program must end.
#pragma once

#include <functional>

#include "platform/Platform.h"

namespace tamrix {

// Returns false when the handler ended in an uncaught fault and the box has been shown: the
// caller then ends the program.
bool RunHandler(Platform& p, const std::function<void()>& handler);

}  // namespace tamrix
