#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "root/SystemRoot.h"
#include "security/BinaryAcl.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/DescriptorReader.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/ValuesOf.h"

namespace veldmark {

inline std::string Hex(std::uint32_t number) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%x", number);
  return digits;
}

/// An entry of a list, counted from 1.
inline Ref<CAce> AceOf(const Ref<CAcl>& list, std::int32_t position) {
  Variant index(position);
  return list->GetAces()->Item(index);
}

/// The entries of a list, "(0;3;1f01ff;;;S-1-5-18)": type, flags, mask, both GUIDs and the SID.
inline std::string Told(const Ref<CAcl>& list) {
  std::string text;
  for (std::int32_t i = 1; i <= list->GetAces()->Count(); ++i) {
    const Ref<CAce> ace = AceOf(list, i);
    text += "(" + std::to_string(ace->AceType) + ";" + std::to_string(ace->AceFlags) + ";" +
            Hex(static_cast<std::uint32_t>(ace->AccessMask)) + ";" +
            ToUtf8(ace->ObjectTypeGUID + u";" + ace->InheritedObjectTypeGUID + u";" +
                   ace->GetSid()->SidText()) +
            ")";
  }
  return text;
}

/// "O:S-1-5-18 1004 P (0;3;10000000;;;S-1-5-32-544)": owner, control, protection and the list.
inline std::string Told(const Ref<CSecurityDescriptor>& descriptor) {
  std::string text;
  if (const auto owner = descriptor->GetOwnerSid()) text = "O:" + ToUtf8(owner->SidText()) + " ";
  text += Hex(static_cast<std::uint16_t>(descriptor->Control()));
  const Ref<CAcl> list = descriptor->GetDACL();
  return list ? text + (list->IsProtected ? " P " : " ") + Told(list) : text;
}

inline Ref<CSecurityDescriptor> Read(const DescriptorReader& reader, Bytes bytes) {
  auto descriptor = Make<CSecurityDescriptor>();
  const BinaryDescriptor parts = reader.ReadHeader(*descriptor, bytes);
  reader.ReadOwner(*descriptor, parts);
  reader.ReadDacl(*descriptor, parts);
  return descriptor;
}

}  // namespace veldmark
