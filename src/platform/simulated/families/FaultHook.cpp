#include "platform/simulated/families/FaultHook.h"

namespace veldmark::simulated {

void FaultHook::FailNth(std::size_t nth, DWORD code) {
  if (nth > 0) rules_.push_back({"", nth, code});
}

void FaultHook::FailEvery(std::string_view operation, DWORD code) {
  rules_.push_back({std::string(operation), 0, code});
}

void FaultHook::FailNthOf(std::string_view operation, std::size_t nth, DWORD code) {
  if (nth > 0) rules_.push_back({std::string(operation), nth, code});
}

void FaultHook::Clear() { *this = FaultHook(); }

DWORD FaultHook::Next(std::string_view operation) {
  ++calls_;
  DWORD code = 0;
  for (auto rule = rules_.begin(); rule != rules_.end();) {
    const bool applies = rule->operation.empty() || rule->operation == operation;
    if (!applies || rule->countdown > 1) {
      if (applies) --rule->countdown;
      ++rule;
      continue;
    }
    if (code == 0) code = rule->code;
    rule = rule->countdown == 0 ? rule + 1 : rules_.erase(rule);
  }
  if (code != 0) ++fired_;
  return code;
}

}  // namespace veldmark::simulated
