#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "automation/com/Sdk.h"
#include "root/ObjectModel.h"
#include "windows/BuiltServer.h"

namespace veldmark {
namespace {

/// The tables' types as a type library states them, in the order of `BoundaryType`.
constexpr VARTYPE kTypes[] = {VT_VOID,      VT_BOOL,      VT_UI1,      VT_I2,      VT_I4,
                              VT_I8,        VT_R8,        VT_CY,       VT_DATE,    VT_BSTR,
                              VT_VARIANT,   VT_PTR,       VT_DISPATCH, VT_UNKNOWN, VT_USERDEFINED,
                              VT_SAFEARRAY, VT_SAFEARRAY, VT_SAFEARRAY};
VARTYPE TypeOf(const TypeReference& type) { return kTypes[static_cast<std::size_t>(type.type)]; }

std::wstring Wide(const Text& text) { return {text.begin(), text.end()}; }

std::wstring Take(BSTR text) {
  const std::wstring taken = text ? text : L"";
  SysFreeString(text);
  return taken;
}

/// A description that a type hands out and takes back.
template <class Description, HRESULT (STDMETHODCALLTYPE ITypeInfo::*kGet)(Description**),
          void (STDMETHODCALLTYPE ITypeInfo::*kRelease)(Description*)>
class Described {
 public:
  explicit Described(ITypeInfo* type) : type_(type) { (type_->*kGet)(&description_); }
  Described(const Described&) = delete;
  Described& operator=(const Described&) = delete;
  ~Described() { (type_->*kRelease)(description_); }
  const Description* operator->() const { return description_; }

 private:
  ITypeInfo* type_;
  Description* description_ = nullptr;
};
using Attributes = Described<TYPEATTR, &ITypeInfo::GetTypeAttr, &ITypeInfo::ReleaseTypeAttr>;

class TypeLibrary : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadTypeLibEx(sandbox_.path.c_str(), REGKIND_NONE, library_.Receive()), S_OK);
    SetEnvironmentVariableW(L"VELDMARK_ESTATE",
                            WindowsPath(VELDMARK_SOURCE_DIR, L"examples/estate.json").c_str());
  }

  com::ComRef<ITypeInfo> Find(const Identity& identity) const {
    com::ComRef<ITypeInfo> type;
    library_->GetTypeInfoOfGuid(com::AsIid(identity), type.Receive());
    return type;
  }
  /// The vtable's side of a dual interface.
  com::ComRef<ITypeInfo> FindSlots(const Interface& table) const {
    const auto type = Find(table.InterfaceIdentity());
    HREFTYPE reference = 0;
    com::ComRef<ITypeInfo> slots;
    if (type && SUCCEEDED(type->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) {
      type->GetRefTypeInfo(reference, slots.Receive());
    }
    return slots;
  }

  BuiltServer sandbox_{L"Veldmark2Sandbox.dll"};
  com::ComRef<ITypeLib> library_;
};

void ExpectParameter(const ELEMDESC& found, const Parameter& parameter) {
  const TYPEDESC* type = &found.tdesc;
  if (parameter.type.by_reference) {
    ASSERT_EQ(type->vt, VT_PTR);
    type = type->lptdesc;
  }
  EXPECT_EQ(type->vt, TypeOf(parameter.type));
  const USHORT flags = found.paramdesc.wParamFlags;
  EXPECT_EQ(flags & (PARAMFLAG_FIN | PARAMFLAG_FOUT | PARAMFLAG_FOPT),
            PARAMFLAG_FIN | (parameter.type.by_reference ? PARAMFLAG_FOUT : 0) |
                (parameter.default_value ? PARAMFLAG_FOPT : 0));
  if (!(flags & PARAMFLAG_FHASDEFAULT)) return;
  ASSERT_TRUE(parameter.default_value);
  const VARIANT& value = found.paramdesc.pparamdescex->varDefaultValue;
  if (const Text* text = parameter.default_value->If<Text>()) {
    EXPECT_EQ(value.vt, VT_BSTR);
    EXPECT_EQ(std::wstring(value.bstrVal ? value.bstrVal : L""), Wide(*text));
  } else if (const bool* truth = parameter.default_value->If<bool>()) {
    EXPECT_EQ(value.vt, VT_BOOL);
    EXPECT_EQ(value.boolVal, *truth ? VARIANT_TRUE : VARIANT_FALSE);
  }
}

TEST_F(TypeLibrary, StatesEverySlotAsTheTablesDo) {
  for (const Interface* table : ObjectModel()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const auto slots = FindSlots(*table);
    ASSERT_TRUE(slots);
    ASSERT_EQ(Attributes(slots.Get())->cFuncs, table->members.size());
    for (std::size_t i = 0; i < table->members.size(); ++i) {
      const Member& member = table->members[i];
      SCOPED_TRACE(ToUtf8(member.name));
      FUNCDESC* slot = nullptr;
      ASSERT_EQ(slots->GetFuncDesc(static_cast<UINT>(i), &slot), S_OK);
      EXPECT_EQ(slot->memid, member.id);
      EXPECT_EQ(slot->oVft, static_cast<SHORT>((7 + i) * sizeof(void*)));
      EXPECT_EQ((slot->wFuncFlags & FUNCFLAG_FHIDDEN) != 0, member.hidden);
      const bool has_result = member.result.type != BoundaryType::kVoid;
      ASSERT_EQ(static_cast<std::size_t>(slot->cParams), member.parameters.size() + has_result);
      switch (member.kind) {
        case MemberKind::kMethod:
          EXPECT_EQ(slot->invkind, INVOKE_FUNC);
          break;
        case MemberKind::kGet:
          EXPECT_EQ(slot->invkind, INVOKE_PROPERTYGET);
          break;
        case MemberKind::kPut:
          EXPECT_TRUE(slot->invkind == INVOKE_PROPERTYPUT ||
                      slot->invkind == INVOKE_PROPERTYPUTREF);
      }
      for (std::size_t p = 0; p < member.parameters.size(); ++p) {
        SCOPED_TRACE(ToUtf8(member.parameters[p].name));
        ExpectParameter(slot->lprgelemdescParam[p], member.parameters[p]);
      }
      if (has_result) {
        const ELEMDESC& result = slot->lprgelemdescParam[slot->cParams - 1];
        EXPECT_EQ(result.paramdesc.wParamFlags, PARAMFLAG_FOUT | PARAMFLAG_FRETVAL);
        EXPECT_EQ(result.tdesc.lptdesc->vt, TypeOf(member.result));
      }
      slots->ReleaseFuncDesc(slot);

      BSTR name = nullptr;
      BSTR help = nullptr;
      slots->GetDocumentation(member.id, &name, &help, nullptr, nullptr);
      EXPECT_EQ(_wcsicmp(Take(name).c_str(), Wide(member.name).c_str()), 0);
      EXPECT_FALSE(Take(help).empty());
    }
  }
}

TEST_F(TypeLibrary, StatesEveryClassEventAndEnumeration) {
  EXPECT_EQ(library_->GetTypeInfoCount(),
            2 * ObjectModel().size() + EventInterfaces().size() + Enumerations().size());
  for (const Interface* table : ObjectModel()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const auto type = Find(table->ClassIdentity());
    ASSERT_TRUE(type);
    const Attributes attributes(type.Get());
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FCANCREATE);
    ASSERT_EQ(attributes->cImplTypes, table->events ? 2 : 1);
    INT flags = 0;
    type->GetImplTypeFlags(0, &flags);
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
    if (!table->events) continue;
    type->GetImplTypeFlags(1, &flags);
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
  }
  for (const EventInterface* table : EventInterfaces()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const auto type = Find(table->InterfaceIdentity());
    ASSERT_TRUE(type);
    for (const Event& event : table->events) {
      std::wstring text = Wide(event.name);
      LPOLESTR name = text.data();
      MEMBERID id = MEMBERID_NIL;
      EXPECT_EQ(type->GetIDsOfNames(&name, 1, &id), S_OK);
      EXPECT_EQ(id, event.id);
    }
  }
  for (const Enumeration* table : Enumerations()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const auto type = Find(table->EnumerationIdentity());
    ASSERT_TRUE(type);
    ASSERT_EQ(Attributes(type.Get())->cVars, table->values.size());
    for (std::size_t i = 0; i < table->values.size(); ++i) {
      VARDESC* value = nullptr;
      ASSERT_EQ(type->GetVarDesc(static_cast<UINT>(i), &value), S_OK);
      EXPECT_EQ(value->lpvarValue->lVal, table->values[i].value);
      type->ReleaseVarDesc(value);
    }
  }
}

/// How a call came out: 0, the error that the member raised, or the code of a refused call.
struct Outcome {
  HRESULT result = S_OK;
  HRESULT error = S_OK;
  bool has_text = false;
};

template <class Caller>
Outcome CallWithEmptyArguments(const Member& member, Caller&& caller) {
  std::vector<VARIANT> values(member.parameters.size());
  std::vector<VARIANT> arguments(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    VariantInit(&values[i]);
    VARIANT& argument = arguments[values.size() - 1 - i];
    VariantInit(&argument);
    if (member.parameters[i].type.type == BoundaryType::kClass ||
        member.parameters[i].type.type == BoundaryType::kAnyObject) {
      values[i].vt = VT_DISPATCH;
    }
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = &values[i];
  }
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  if (member.kind == MemberKind::kPut) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  VARIANT result;
  VariantInit(&result);
  EXCEPINFO exception{};
  Outcome outcome;
  outcome.result = caller(static_cast<WORD>(member.kind), &parameters,
                          member.kind == MemberKind::kPut ? nullptr : &result, &exception);
  outcome.error = exception.scode;
  outcome.has_text = !Take(exception.bstrDescription).empty();
  Take(exception.bstrSource);
  Take(exception.bstrHelpFile);
  VariantClear(&result);
  for (VARIANT& value : values) VariantClear(&value);
  return outcome;
}

TEST_F(TypeLibrary, EveryMemberIsFoundByNameAndAnswersACall) {
  for (const Interface* table : ObjectModel()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const auto object = sandbox_.Create(table->ClassIdentity());
    const auto type = Find(table->InterfaceIdentity());
    ASSERT_TRUE(object && type);
    for (const Member& member : table->members) {
      SCOPED_TRACE(ToUtf8(member.name));
      std::wstring text = Wide(member.name);
      LPOLESTR name = text.data();
      DISPID id = DISPID_UNKNOWN;
      EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), S_OK);
      EXPECT_EQ(id, member.id);
      const Outcome outcome = CallWithEmptyArguments(
          member, [&](WORD kind, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception) {
            return object->Invoke(member.id, IID_NULL, 0, kind, parameters, result, exception,
                                  nullptr);
          });
      // Either it works, or it says in words what is wrong, or an argument's type is refused.
      if (outcome.result == DISP_E_EXCEPTION) {
        EXPECT_TRUE(FAILED(outcome.error));
        EXPECT_TRUE(outcome.has_text);
      } else {
        EXPECT_TRUE(outcome.result == S_OK || outcome.result == DISP_E_TYPEMISMATCH)
            << std::hex << outcome.result;
      }

      // The platform's type information takes no script variable for an object by reference.
      if (std::ranges::any_of(member.parameters, [](const Parameter& parameter) {
            return parameter.type.by_reference && parameter.type.type == BoundaryType::kClass;
          })) {
        continue;
      }
      const Outcome early = CallWithEmptyArguments(
          member, [&](WORD kind, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception) {
            return type->Invoke(object.Get(), member.id, kind, parameters, result, exception,
                                nullptr);
          });
      EXPECT_EQ(early.result, outcome.result) << std::hex << early.result << " " << outcome.result;
      EXPECT_EQ(early.error, outcome.error) << std::hex << early.error << " " << outcome.error;
    }
  }
}

}  // namespace
}  // namespace veldmark
