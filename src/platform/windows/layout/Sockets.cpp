#include "platform/operations/Sockets.h"

#include <winsock2.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(HOSTENT, h_name, h_aliases, h_addrtype, h_length, h_addr_list);

}  // namespace veldmark
