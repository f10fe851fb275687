#pragma once

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

}  // namespace veldmark
