#include "platform/simulated/estate_file/ServiceReader.h"

#include <array>

#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

void ReadText(const Node& node, const char* name, Text& place) {
  if (const auto field = node.Field(name)) place = field->String();
}

void ReadNumber(const Node& node, const char* name, DWORD& place) {
  if (const auto field = node.Field(name)) place = field->Unsigned32();
}

// Milliseconds, or null for a time that never passes.
void ReadTimeTaken(const Node& node, const char* name, DWORD& place) {
  constexpr std::int64_t kLongest = 24 * 60 * 60 * 1000;
  const auto field = node.Field(name);
  if (!field) return;
  place = field->IsNull() ? kNever : static_cast<DWORD>(field->Integer(0, kLongest));
}

void ReadType(const Node& node, Service& service) {
  if (const auto type = node.Field("type")) {
    service.type = DWORD{1} << type->OneOf({"kernelDriver", "fileSystemDriver", "adapter",
                                            "recognizerDriver", "ownProcess", "shareProcess"});
  }
  const auto interactive = node.Field("interactive");
  if (!interactive || !interactive->Boolean()) return;
  if ((service.type & kServiceWin32) == 0) interactive->Complain("isn't for drivers");
  service.type |= kServiceInteractiveProcess;
}

DWORD ReadAccepted(const Node& node) {
  DWORD accepts = 0;
  for (const Node& control : node.Elements()) {
    accepts |= DWORD{1} << control.OneOf(
                   {"stop", "pauseContinue", "shutdown", "paramChange", "netBindChange"});
  }
  return accepts;
}

void ReadService(const Node& node, Service& service) {
  ReadText(node, "displayName", service.display_name);
  ReadText(node, "description", service.description);
  ReadType(node, service);
  if (const auto start = node.Field("startType")) {
    service.start_type =
        static_cast<DWORD>(start->OneOf({"boot", "system", "auto", "demand", "disabled"}));
  }
  if (const auto control = node.Field("errorControl")) {
    service.error_control =
        static_cast<DWORD>(control->OneOf({"ignore", "normal", "severe", "critical"}));
  }
  ReadText(node, "binaryPath", service.binary_path);
  ReadText(node, "loadOrderGroup", service.load_order_group);
  ReadNumber(node, "tag", service.tag);
  ReadText(node, "account", service.account);
  if (const auto password = node.Field("password")) {
    Text secret = password->String();
    service.password.emplace(Secret::TakenFrom(secret));
  }
  if (const auto names = node.Field("dependencies")) {
    for (const Node& name : names->Elements()) service.dependencies.push_back(name.String());
  }
  if (const auto accepts = node.Field("accepts")) service.accepts = ReadAccepted(*accepts);
  if (const auto state = node.Field("state")) {
    static constexpr std::array<DWORD, 3> kStates = {kServiceStopped, kServiceRunning,
                                                     kServicePaused};
    service.SetState(kStates[state->OneOf({"stopped", "running", "paused"})]);
  }
  ReadNumber(node, "exitCode", service.exit_code);
  ReadNumber(node, "specificExitCode", service.specific_exit_code);
  ReadTimeTaken(node, "startTime", service.start_time);
  ReadTimeTaken(node, "stopTime", service.stop_time);
  ReadTimeTaken(node, "pauseTime", service.pause_time);
  ReadTimeTaken(node, "continueTime", service.continue_time);
  ReadNumber(node, "waitHint", service.wait_hint);
  ReadNumber(node, "checkpointTime", service.checkpoint_time);
  ReadNumber(node, "startError", service.start_error);
  if (const auto marked = node.Field("markedForDeletion")) {
    service.is_marked_for_deletion = marked->Boolean();
  }
}

}  // namespace

void ReadServices(const Node& node, Computer& computer, const Estate& estate) {
  for (const Node& service : node.Elements()) {
    service.OnlyFields({"name",       "security",         "displayName", "description",
                        "type",       "interactive",      "startType",   "errorControl",
                        "binaryPath", "loadOrderGroup",   "tag",         "account",
                        "password",   "dependencies",     "accepts",     "state",
                        "exitCode",   "specificExitCode", "startTime",   "stopTime",
                        "pauseTime",  "continueTime",     "waitHint",    "checkpointTime",
                        "startError", "markedForDeletion"});
    const Node name = service.Required("name");
    const Text text = name.String();
    if (text.empty()) name.Complain("needs a name");
    if (computer.FindService(text) != nullptr) name.Complain("there is a service of this name");
    const auto security = service.Field("security");
    ReadService(service,
                computer.AddService(text, security ? std::optional(ReadSecurity(*security, estate))
                                                   : std::nullopt));
  }
}

void ReadServiceManager(const Node& node, Computer& computer, const Estate& estate) {
  node.OnlyFields({"locked", "security"});
  ServiceManager& manager = computer.service_manager();
  if (const auto locked = node.Field("locked")) manager.is_locked = locked->Boolean();
  if (const auto security = node.Field("security")) {
    manager.security = SecurityBlock::Make(ReadSecurity(*security, estate));
  }
}

}  // namespace veldmark::simulated
