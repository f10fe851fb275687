#pragma once

#include "platform/operations/AccountManagement.h"
#include "platform/operations/EventLog.h"
#include "platform/operations/FileSystem.h"
#include "platform/operations/LocalSecurityAuthority.h"
#include "platform/operations/Messages.h"
#include "platform/operations/Multimedia.h"
#include "platform/operations/NetworkManagement.h"
#include "platform/operations/NetworkProvider.h"
#include "platform/operations/Printing.h"
#include "platform/operations/Registry.h"
#include "platform/operations/Security.h"
#include "platform/operations/ServiceControl.h"
#include "platform/operations/Sockets.h"
#include "platform/operations/System.h"
#include "platform/operations/TaskScheduler.h"
#include "platform/operations/Timers.h"
#include "platform/operations/VersionInformation.h"

namespace veldmark {

// One family of each kind, from wherever: a platform with a single family replaced is this record
// with one member exchanged. It owns nothing; the families must outlive it.
struct Platform {
  FileSystem& files;
  NetworkProvider& network_provider;
  Messages& messages;
  Registry& registry;
  System& system;
  Timers& timers;
  Security& security;
  NetworkManagement& network_management;
  VersionInformation& version_information;
  Multimedia& multimedia;
  AccountManagement& accounts;
  LocalSecurityAuthority& authority;
  Sockets& sockets;
  ServiceControl& services;
  Printing& printers;
  EventLog& event_logs;
  TaskScheduler& tasks;
};

}  // namespace veldmark
