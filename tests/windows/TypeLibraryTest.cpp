#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "automation/com/Sdk.h"
#include "root/ObjectModel.h"
#include "windows/BuiltServer.h"

namespace veldmark {
namespace {

/// The vtable's side of a class's dual interface.
com::ComRef<ITypeInfo> SlotsOf(ITypeLib& library, const Interface& table) {
  com::ComRef<ITypeInfo> dual, slots;
  HREFTYPE reference = 0;
  if (SUCCEEDED(library.GetTypeInfoOfGuid(com::AsIid(table.InterfaceIdentity()), dual.Receive())) &&
      SUCCEEDED(dual->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) {
    dual->GetRefTypeInfo(reference, slots.Receive());
  }
  return slots;
}

/// Calls a member with script variables that nothing was put into, Nothing for objects. True where
/// it works, says in words what is wrong, or refuses an argument's type.
bool AnswersACall(IDispatch& object, const Member& member) {
  std::vector<VARIANT> values(member.parameters.size()), arguments(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const BoundaryType type = member.parameters[i].type.type;
    VariantInit(&values[i]);
    if (type == BoundaryType::kClass || type == BoundaryType::kAnyObject) {
      V_VT(&values[i]) = VT_DISPATCH;
    }
    VARIANT& argument = arguments[values.size() - 1 - i];
    V_VT(&argument) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&argument) = &values[i];
  }
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  com::OwnedVariant result;
  EXCEPINFO exception{};
  const HRESULT outcome = object.Invoke(member.id, IID_NULL, 0, static_cast<WORD>(member.kind),
                                        &parameters, &result.Get(), &exception, nullptr);
  const bool tells = FAILED(exception.scode) && SysStringLen(exception.bstrDescription) > 0;
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  for (VARIANT& value : values) VariantClear(&value);
  return outcome == S_OK || outcome == DISP_E_TYPEMISMATCH ||
         (outcome == DISP_E_EXCEPTION && tells);
}

TEST(TypeLibrary, EveryMemberStandsInItsSlotAndAnswersToItsNameAndIdentifier) {
  SetEnvironmentVariableW(L"VELDMARK_ESTATE",
                          WindowsPath(VELDMARK_SOURCE_DIR, L"examples/estate.json").c_str());
  const BuiltServer server(L"Veldmark2Sandbox.dll");
  com::ComRef<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx(server.path.c_str(), REGKIND_NONE, library.Receive()), S_OK);
  for (const Interface* table : ObjectModel()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const auto slots = SlotsOf(*library.Get(), *table);
    const auto object = server.Create(table->ClassIdentity());
    ASSERT_TRUE(slots && object);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
    LPOLESTR for_each = const_cast<LPOLESTR>(L"_NewEnum");
    DISPID enumerator = 0;
    object->GetIDsOfNames(IID_NULL, &for_each, 1, 0, &enumerator);
    EXPECT_EQ(enumerator, std::ranges::count(table->members, DISPID_NEWENUM, &Member::id)
                              ? DISPID_NEWENUM
                              : DISPID_UNKNOWN);
    for (std::size_t i = 0; i < table->members.size(); ++i) {
      const Member& member = table->members[i];
      SCOPED_TRACE(ToUtf8(member.name));
      FUNCDESC* slot = nullptr;
      ASSERT_EQ(slots->GetFuncDesc(static_cast<UINT>(i), &slot), S_OK);
      EXPECT_EQ(slot->memid, member.id);
      EXPECT_EQ(slot->oVft, static_cast<SHORT>((7 + i) * sizeof(void*)));
      EXPECT_EQ(static_cast<std::size_t>(slot->cParams),
                member.parameters.size() + (member.result.type != BoundaryType::kVoid));
      slots->ReleaseFuncDesc(slot);
      std::wstring text(member.name.begin(), member.name.end());
      LPOLESTR name = text.data();
      DISPID id = DISPID_UNKNOWN;
      EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), S_OK);
      EXPECT_EQ(id, member.id);
      EXPECT_TRUE(AnswersACall(*object.Get(), member));
    }
  }
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
  SetEnvironmentVariableW(L"VELDMARK_ESTATE", nullptr);
}

}  // namespace
}  // namespace veldmark
