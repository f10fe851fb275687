#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "automation/Conversion.h"
#include "automation/Interface.h"

namespace veldmark {

/// The values of an object's properties as texts, "FS1|CORP|500"; of all where none are named.
inline std::string ValuesOf(Object& object, std::vector<TextView> properties = {}) {
  if (properties.empty()) {
    for (const Member& member : object.GetInterface().members) {
      if (member.kind == MemberKind::kGet) properties.push_back(member.name);
    }
  }
  std::string values;
  for (const TextView property : properties) {
    values += ToUtf8(ToText(Call(object, property, MemberKind::kGet))) + "|";
  }
  if (!values.empty()) values.pop_back();
  return values;
}

/// The same of each object in a list, "FS1|CORP, PC1|CORP"; "Nothing" without a list.
template <class List>
std::string ListOf(const Ref<List>& list, const std::vector<TextView>& properties) {
  if (!list) return "Nothing";
  std::string values;
  for (std::int32_t i = 1; i <= list->Count(); ++i) {
    Variant position(i);
    values += (i == 1 ? "" : ", ") + ValuesOf(*list->Item(position), properties);
  }
  return values;
}

}  // namespace veldmark
