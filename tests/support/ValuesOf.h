#pragma once

#include <initializer_list>
#include <string>

#include "automation/Conversion.h"
#include "automation/Interface.h"

namespace veldmark {

/// Properties of an object as texts, "FS1|CORP|500"; a date as its number.
inline std::string ValuesOf(Object& object, std::initializer_list<TextView> properties) {
  std::string values;
  for (const TextView property : properties) {
    const Variant value = Call(object, property, MemberKind::kGet);
    const Date* const date = value.If<Date>();
    values += ToUtf8(ToText(date ? Variant(date->days) : value)) + "|";
  }
  if (!values.empty()) values.pop_back();
  return values;
}

}  // namespace veldmark
