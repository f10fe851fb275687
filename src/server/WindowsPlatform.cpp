#include "platform/windows/WindowsPlatform.h"

#include "server/ServerPlatform.h"

namespace veldmark {

Platform& ServerPlatform() { return WindowsPlatform(); }

}  // namespace veldmark
