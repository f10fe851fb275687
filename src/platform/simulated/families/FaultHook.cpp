#include "platform/simulated/families/FaultHook.h"

namespace veldmark::simulated {

void FaultHook::FailNth(std::size_t nth, DWORD code) {
  if (nth > 0) rules_.push_back({"", nth, {.fails = code}});
}

void FaultHook::FailEvery(std::string_view operation, DWORD code) {
  rules_.push_back({std::string(operation), 0, {.fails = code}});
}

void FaultHook::LeaveEvery(std::string_view operation, DWORD code) {
  rules_.push_back({std::string(operation), 0, {.leaves = code}});
}

void FaultHook::FailNthOf(std::string_view operation, std::size_t nth, DWORD code) {
  if (nth > 0) rules_.push_back({std::string(operation), nth, {.fails = code}});
}

void FaultHook::Clear() { *this = FaultHook(); }

FaultHook::Effect FaultHook::Next(std::string_view operation) {
  ++calls_;
  Effect effect;
  for (auto rule = rules_.begin(); rule != rules_.end();) {
    const bool applies = rule->operation.empty() || rule->operation == operation;
    if (!applies || rule->countdown > 1) {
      if (applies) --rule->countdown;
      ++rule;
      continue;
    }
    if (effect.fails == 0) effect.fails = rule->effect.fails;
    if (effect.leaves == 0) effect.leaves = rule->effect.leaves;
    rule = rule->countdown == 0 ? rule + 1 : rules_.erase(rule);
  }
  if (effect.fails != 0 || effect.leaves != 0) {
    ++fired_;
    last_fired_ = operation;
  }
  return effect;
}

}  // namespace veldmark::simulated
