#pragma once

#include "platform/simulated/estate/FileNode.h"

namespace veldmark::simulated {

// The English texts of the system's error codes, and of the network codes in "netmsg.dll": those
// that a program of files, registry, accounts, services and network meets.
MessageTable PublishedSystemMessages();
MessageTable PublishedNetworkMessages();

}  // namespace veldmark::simulated
