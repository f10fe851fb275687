#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "automation/ModuleCount.h"
#include "automation/com/ComObject.h"
#include "automation/com/ComRef.h"
#include "automation/com/Face.h"
#include "support/ErrorOf.h"
#include "windows/CSpecimen.h"

namespace veldmark {
// Not in the unnamed namespace: the compiler would see that nothing derives from it and take its
// calls for impossible.
/// The dual interface as a type library describes it to an early-bound client.
struct ISpecimen : IDispatch {
  STDMETHOD(get_Name)(BSTR*) = 0;
  STDMETHOD(put_Name)(BSTR) = 0;
  STDMETHOD(get_Number)(LONG*) = 0;
  STDMETHOD(put_Number)(LONG) = 0;
  STDMETHOD(get_Item)(VARIANT, ISpecimen**) = 0;
  STDMETHOD(get_NewEnum)(IUnknown**) = 0;
  STDMETHOD(Join)(BSTR, VARIANT, LONG, BSTR*) = 0;
  STDMETHOD(Fail)(LONG, BSTR) = 0;
  STDMETHOD(Change)(BSTR*, VARIANT*, LONG*, VARIANT_BOOL*) = 0;
  STDMETHOD(Leave)(BSTR*, VARIANT*, LONG*, VARIANT_BOOL*) = 0;
  STDMETHOD(ChangeAndFail)(BSTR*) = 0;
  STDMETHOD(Create)(ISpecimen**) = 0;
  STDMETHOD(Echo)(VARIANT, VARIANT*) = 0;
  STDMETHOD(EchoObject)(IDispatch*, IDispatch**) = 0;
  STDMETHOD(NameOf)(IDispatch*, BSTR*) = 0;
  STDMETHOD(Reverse)(SAFEARRAY**, SAFEARRAY**) = 0;
  STDMETHOD(Split)(SAFEARRAY*, SAFEARRAY**) = 0;
  STDMETHOD(Tell)(BSTR, VARIANT_BOOL*) = 0;
  STDMETHOD(get_Children)(ISpecimen**) = 0;
};

namespace {

using com::AsIid;
using com::ComRef;

struct Bstr {
  BSTR text;
  explicit Bstr(const wchar_t* from = nullptr) : text(from ? SysAllocString(from) : nullptr) {}
  Bstr(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text); }
  std::wstring Text() const { return text ? std::wstring(text, SysStringLen(text)) : L""; }
};

/// A listener written by a client: what it does on an event is told by the test.
class Listener final : public com::ComObject<IDispatch> {
 public:
  std::function<HRESULT(DISPPARAMS&, EXCEPINFO*)> on_event;
  std::function<void()> on_connection;  // as it begins and as it ends

  ~Listener() override {
    if (on_connection) on_connection();
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (on_connection) on_connection();
    const Identity events = CSpecimen::Describe().events->InterfaceIdentity();
    return ComObject::QueryInterface(iid == AsIid(events) && knows_events ? IID_IDispatch : iid,
                                     out);
  }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                      EXCEPINFO* exception, UINT*) override {
    return id == 1 ? on_event(*parameters, exception) : DISP_E_MEMBERNOTFOUND;
  }

  bool knows_events = true;
};

class ClientCalls : public testing::Test {
 protected:
  ClientCalls() {
    const Ref<CSpecimen> object = Make<CSpecimen>();
    object_ = object.Get();
    *specimen_.Receive() = static_cast<ISpecimen*>(abi::HandOutObject(object_));
  }
  ~ClientCalls() override {
    specimen_ = {};
    EXPECT_EQ(CSpecimen::alive, 0);
    EXPECT_EQ(Holds(), 0);
  }

  /// How often the test itself holds the module.
  std::int32_t Holds() const { return ModuleHolds() - holds_before_; }

  template <class Face>
  ComRef<Face> As(IUnknown* from) {
    ComRef<Face> face;
    from->QueryInterface(__uuidof(Face), reinterpret_cast<void**>(face.Receive()));
    return face;
  }
  ComRef<IConnectionPoint> Point() {
    ComRef<IConnectionPoint> point;
    As<IConnectionPointContainer>(specimen_.Get())
        ->FindConnectionPoint(AsIid(CSpecimen::Describe().events->InterfaceIdentity()),
                              point.Receive());
    return point;
  }
  HRESULT Call(const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
               std::vector<DISPID> named, VARIANT* result, EXCEPINFO* exception = nullptr,
               UINT* bad = nullptr) {
    DISPID id = 0;
    OLECHAR* names[] = {const_cast<OLECHAR*>(name)};
    const HRESULT found = specimen_->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
    if (FAILED(found)) return found;
    DISPPARAMS parameters{arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(named.size())};
    return specimen_->Invoke(id, IID_NULL, 0, flags, &parameters, result, exception, bad);
  }
  static VARIANT Long(LONG value) {
    VARIANT variant;
    VariantInit(&variant);
    V_VT(&variant) = VT_I4;
    V_I4(&variant) = value;
    return variant;
  }
  template <class T>
  static VARIANT By(VARTYPE type, T* variable) {
    VARIANT variant;
    VariantInit(&variant);
    V_VT(&variant) = static_cast<VARTYPE>(VT_BYREF | type);
    V_BYREF(&variant) = variable;
    return variant;
  }

  const std::int32_t holds_before_ = ModuleHolds();
  CSpecimen* object_ = nullptr;
  ComRef<ISpecimen> specimen_;
};

TEST_F(ClientCalls, EveryInterfaceLeadsBackToOneIdentity) {
  const Identity own = CSpecimen::Describe().InterfaceIdentity();
  const auto identity = As<IUnknown>(specimen_.Get());
  const IID answered[] = {IID_IUnknown,
                          IID_IDispatch,
                          AsIid(own),
                          IID_ISupportErrorInfo,
                          IID_IProvideClassInfo,
                          IID_IProvideClassInfo2,
                          IID_IConnectionPointContainer};
  for (const IID& from : answered) {
    ComRef<IUnknown> face;
    ASSERT_EQ(specimen_->QueryInterface(from, reinterpret_cast<void**>(face.Receive())), S_OK);
    EXPECT_EQ(As<IUnknown>(face.Get()).Get(), identity.Get());
    for (const IID& to : answered) {
      ComRef<IUnknown> other;
      EXPECT_EQ(face->QueryInterface(to, reinterpret_cast<void**>(other.Receive())), S_OK);
    }
    EXPECT_EQ(abi::Read(face.Get()).Get(), object_) << "an argument by any of its interfaces";
  }
  void* out = this;
  EXPECT_EQ(specimen_->QueryInterface(IID_IPersist, &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(As<ISupportErrorInfo>(specimen_.Get())->InterfaceSupportsErrorInfo(AsIid(own)), S_OK);
}

TEST_F(ClientCalls, OnlyAClientsReferencesHoldTheModule) {
  EXPECT_EQ(Holds(), 1);
  const Ref<Object> library_reference(object_);
  auto point = Point();
  specimen_ = {};
  EXPECT_EQ(Holds(), 1) << "the connection point holds its object";
  ComRef<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
  point = {};
  EXPECT_EQ(Holds(), 1) << "an enumeration is the library's code too";
  connections = {};
  EXPECT_EQ(Holds(), 0);
  *specimen_.Receive() = static_cast<ISpecimen*>(abi::HandOutObject(object_));
  EXPECT_EQ(Holds(), 1);
}

TEST_F(ClientCalls, EarlyBoundCallsConvertBothWays) {
  const Bstr name(L"plain");
  Bstr read, joined;
  ASSERT_EQ(specimen_->put_Name(name.text), S_OK);
  ASSERT_EQ(specimen_->get_Name(&read.text), S_OK);
  EXPECT_EQ(read.Text(), L"plain");
  EXPECT_EQ(specimen_->get_Name(nullptr), E_POINTER);
  ASSERT_EQ(specimen_->Join(nullptr, Long(7), 2, &joined.text), S_OK);
  EXPECT_EQ(joined.Text(), L"77") << "a null text is empty";

  ComRef<ISpecimen> item, made;
  ASSERT_EQ(specimen_->get_Item(Long(3), item.Receive()), S_OK);
  Bstr item_name;
  EXPECT_EQ(specimen_->NameOf(item.Get(), &item_name.text), S_OK);
  EXPECT_EQ(item_name.Text(), L"item 3");
  ISpecimen* out = nullptr;
  ASSERT_EQ(specimen_->Create(&out), S_OK);
  EXPECT_EQ(specimen_->Create(&out), S_OK) << "which lets go of the object it was given";
  EXPECT_EQ(out, nullptr);

  Bstr text(L"x");
  LONG number = 1;
  VARIANT_BOOL flag = VARIANT_TRUE;
  LONG behind = 5;
  VARIANT value = By(VT_I4, &behind);
  BSTR const before = text.text;
  ASSERT_EQ(specimen_->Leave(&text.text, &value, &number, &flag), S_OK);
  EXPECT_EQ(text.text, before) << "what stays unchanged isn't replaced";
  VariantInit(&value);
  ASSERT_EQ(specimen_->Change(&text.text, &value, &number, &flag), S_OK);
  EXPECT_EQ(text.Text() + std::to_wstring(number) + V_BSTR(&value), L"x!2changed");
  EXPECT_EQ(flag, VARIANT_FALSE);
  VariantClear(&value);
  EXPECT_EQ(specimen_->Change(&text.text, nullptr, &number, &flag), E_POINTER);
}

TEST_F(ClientCalls, ArraysCrossWithTheirBoundsAndDimensions) {
  LongArray square(2, 3);
  square.bounds[0].lower = -1;
  for (std::int32_t i = 0; i < 6; ++i) square.elements[static_cast<std::size_t>(i)] = i;
  const Variant values[] = {Variant(square), Variant(ByteArray({1, 2, 3}, 1)),
                            Variant(TextArray({u"a", Text(u"\0b", 2), u""})),
                            Variant(VariantArray({Variant(u"t"), Variant(), Variant(square)})),
                            Variant(ByteArray())};
  for (const Variant& value : values) {
    com::OwnedVariant out(value);
    VARIANT echoed;
    ASSERT_EQ(specimen_->Echo(out.Get(), &echoed), S_OK);
    EXPECT_TRUE(abi::Read(com::AsRaw(echoed)) == value);
    VariantClear(&echoed);
  }
  // One of the platform's arrays that has no twin among ours, with the first index fastest.
  SAFEARRAYBOUND bounds[] = {{2, 0}, {1, 5}};
  SAFEARRAY* shorts = SafeArrayCreate(VT_I2, 2, bounds);
  LONG at[] = {1, 5};
  short element = 9;
  SafeArrayPutElement(shorts, at, &element);
  VARIANT raw;
  V_VT(&raw) = VT_ARRAY | VT_I2;
  V_ARRAY(&raw) = shorts;
  const Variant read = abi::Read(com::AsRaw(raw));
  ASSERT_TRUE(read.If<VariantArray>());
  EXPECT_EQ(read.If<VariantArray>()->bounds, (std::vector<Bound>{{0, 2}, {5, 1}}));
  EXPECT_TRUE(read.If<VariantArray>()->At(1, 0) == Variant(std::int16_t{9}));

  SAFEARRAY* none = nullptr;
  SAFEARRAY* reversed = nullptr;
  EXPECT_EQ(specimen_->Reverse(&none, &reversed), S_OK) << "a null array is empty";
  SafeArrayDestroy(reversed);
  SafeArrayDestroy(none);
  EXPECT_EQ(specimen_->Reverse(&shorts, &reversed), static_cast<HRESULT>(0x800A000D));
  VariantClear(&raw);
}

TEST_F(ClientCalls, ATypedVariableKeepsItsTypeWhenItIsWritten) {
  std::uint8_t byte = 4;
  float single = 4;
  DECIMAL decimal;
  VarDecFromI4(4, &decimal);
  VARIANT inner = Long(4), middle = By(VT_VARIANT, &inner), outer = By(VT_VARIANT, &middle);
  struct Case {
    VARIANT number;
    std::function<double()> read;
  } const cases[] = {
      {By(VT_UI1, &byte), [&] { return byte; }},
      {By(VT_R4, &single), [&] { return single; }},
      {By(VT_DECIMAL, &decimal),
       [&] {
         double value = 0;
         VarR8FromDec(&decimal, &value);
         return value;
       }},
      {outer, [&] { return V_VT(&inner) == VT_I4 ? V_I4(&inner) : -1; }},
  };
  for (const Case& test : cases) {
    Bstr text(L"x");
    VARIANT value, flag;
    VariantInit(&value);
    VariantInit(&flag);
    VARIANT result;
    ASSERT_EQ(
        Call(L"Change", DISPATCH_METHOD,
             {By(VT_VARIANT, &flag), test.number, By(VT_VARIANT, &value), By(VT_BSTR, &text.text)},
             {}, &result),
        S_OK);
    EXPECT_EQ(test.read(), 5);
    EXPECT_EQ(text.Text(), L"x!");
    EXPECT_EQ(V_VT(&flag), VT_BOOL);
    VariantClear(&value);
  }
  // A reference to nowhere, and one that never ends, are refused.
  VARIANT knot = By(VT_VARIANT, &knot);
  UINT bad = 0;
  for (const VARIANT& wrong : {By<LONG>(VT_I4, nullptr), knot}) {
    EXPECT_TRUE(FAILED(Call(L"Echo", DISPATCH_METHOD, {wrong}, {}, nullptr, nullptr, &bad)));
  }
}

TEST_F(ClientCalls, WhatACallersRecordClaimsIsNotTakenOnTrust) {
  const auto make = [](VARTYPE type) { return SafeArrayCreateVector(type, 0, 2); };
  const auto claim = [](VARTYPE type, SAFEARRAY* array) {
    VARIANT variant{};
    V_VT(&variant) = type;
    V_ARRAY(&variant) = array;
    return variant;
  };
  SAFEARRAY* const numbers = make(VT_I8);
  SAFEARRAY* const untyped = make(VT_I8);
  untyped->fFeatures &= static_cast<USHORT>(~FADF_HAVEVARTYPE);
  SAFEARRAY* knotted = make(VT_VARIANT);
  static_cast<VARIANT*>(knotted->pvData)[1] = By(VT_ARRAY | VT_VARIANT, &knotted);
  const std::tuple<const char*, VARIANT, std::int32_t> cases[] = {
      {"a variant in place", claim(VT_VARIANT, nullptr), 458},
      {"numbers as texts", claim(VT_ARRAY | VT_BSTR, numbers), 13},
      {"numbers as objects", claim(VT_ARRAY | VT_DISPATCH, numbers), 13},
      {"elements of no type as texts", claim(VT_ARRAY | VT_BSTR, untyped), 13},
      {"elements of no type as numbers", claim(VT_ARRAY | VT_I8, untyped), 0},
      {"an array within itself", claim(VT_ARRAY | VT_VARIANT, knotted), 13},
  };
  for (const auto& [what, value, number] : cases) {
    const VARIANT& claimed = value;
    EXPECT_EQ(ErrorOf([&] { abi::Read(com::AsRaw(claimed)); }), number) << what;
  }
  // An array in the client's own storage is filled, but not replaced.
  for (const int own : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, FADF_EMBEDDED, 0}) {
    SAFEARRAY* bytes = make(VT_UI1);
    bytes->fFeatures |= static_cast<USHORT>(own);
    VARIANT by = By(VT_ARRAY | VT_UI1, &bytes);
    for (const ByteArray& fresh : {ByteArray({8, 9}, 0), ByteArray({1, 2, 3}, 0)}) {
      const int refusal = own != 0 && fresh.elements.size() == 3 ? 10 : 0;
      EXPECT_EQ(ErrorOf([&] { abi::Assign(com::AsRaw(by), Variant(fresh)); }), refusal);
    }
    EXPECT_EQ(static_cast<std::uint8_t*>(bytes->pvData)[1], own != 0 ? 9 : 2);
    bytes->fFeatures &= static_cast<USHORT>(~own);
    SafeArrayDestroy(bytes);
  }
  for (SAFEARRAY* array : {numbers, untyped, knotted}) SafeArrayDestroy(array);
}

TEST_F(ClientCalls, LateBoundCallsFindTheirPlaceByPositionAndByName) {
  struct Case {
    const char* what;
    const wchar_t* name;
    WORD flags;
    std::vector<VARIANT> arguments;  // last first, as the platform has them
    std::vector<DISPID> named;
    HRESULT outcome;
    UINT bad = 0;
  };
  VARIANT text, missing = Long(DISP_E_PARAMNOTFOUND);
  V_VT(&missing) = VT_ERROR;
  V_VT(&text) = VT_BSTR;
  const Bstr word(L"word");
  V_BSTR(&text) = word.text;
  constexpr WORD kMethod = DISPATCH_METHOD, kGet = DISPATCH_PROPERTYGET,
                 kPut = DISPATCH_PROPERTYPUT;
  const Case cases[] = {
      {"all by name", L"join", kMethod, {Long(2), text}, {2, 0}, S_OK},
      {"name and position", L"Join", kMethod | kGet, {Long(2), text}, {2}, S_OK},
      {"left out", L"Join", kMethod, {missing, missing, text}, {}, S_OK},
      {"required left out", L"Join", kMethod, {Long(1), missing}, {}, DISP_E_PARAMNOTOPTIONAL, 1},
      {"given twice", L"Join", kMethod, {text, text}, {0}, DISP_E_PARAMNOTFOUND, 0},
      {"no such place", L"Join", kMethod, {Long(1), text}, {9}, DISP_E_PARAMNOTFOUND, 0},
      {"too many", L"Fail", kMethod, {text, text, text}, {}, DISP_E_BADPARAMCOUNT},
      {"no conversion", L"Join", kMethod, {text, text, text}, {}, DISP_E_TYPEMISMATCH, 0},
      {"put", L"Number", kPut, {Long(3)}, {DISPID_PROPERTYPUT}, S_OK},
      {"put by reference", L"Number", kPut | 8, {Long(3)}, {DISPID_PROPERTYPUT}, S_OK},
      {"put without the name", L"Number", kPut, {Long(3)}, {}, S_OK},
      {"put what is read only", L"Item", kPut, {Long(3)}, {}, DISP_E_MEMBERNOTFOUND},
      {"a method read", L"Tell", kGet, {text}, {}, DISP_E_MEMBERNOTFOUND},
      {"arguments for a plain value", L"Name", kGet, {Long(1)}, {}, DISP_E_BADPARAMCOUNT},
      {"no such name", L"Nothing", kMethod, {}, {}, DISP_E_UNKNOWNNAME},
  };
  for (const Case& test : cases) {
    UINT bad = 99;
    VARIANT result;
    const HRESULT outcome =
        Call(test.name, test.flags, test.arguments, test.named, &result, nullptr, &bad);
    EXPECT_EQ(outcome, test.outcome) << test.what;
    if (test.outcome == DISP_E_UNKNOWNNAME) continue;
    EXPECT_EQ(bad, test.bad) << test.what;
    VariantClear(&result);
  }
  OLECHAR* names[] = {const_cast<OLECHAR*>(L"JOIN"), const_cast<OLECHAR*>(L"times"),
                      const_cast<OLECHAR*>(L"often")};
  DISPID ids[3];
  EXPECT_EQ(specimen_->GetIDsOfNames(IID_NULL, names, 2, 0, ids), S_OK);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(specimen_->GetIDsOfNames(IID_NULL, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[2], DISPID_UNKNOWN);
}

TEST_F(ClientCalls, ScriptsVariablesAndArraysCrossInTheirOwnShapes) {
  VARIANT object, left, array, result;
  for (VARIANT* variant : {&object, &left, &array, &result}) VariantInit(variant);
  // A fresh variable takes the object, and then Nothing.
  const auto create = [&] {
    return Call(L"Create", DISPATCH_METHOD, {By(VT_VARIANT, &object)}, {}, nullptr);
  };
  ASSERT_EQ(create(), S_OK);
  EXPECT_TRUE(V_VT(&object) == VT_DISPATCH && V_DISPATCH(&object));
  ASSERT_EQ(create(), S_OK);
  EXPECT_TRUE(V_VT(&object) == VT_DISPATCH && !V_DISPATCH(&object));

  // What a member leaves alone keeps the type that the script gave it.
  V_VT(&left) = VT_I2;
  const VARIANT by_left = By(VT_VARIANT, &left);
  EXPECT_EQ(Call(L"Leave", DISPATCH_METHOD, {by_left, by_left, by_left, by_left}, {}, nullptr),
            S_OK);
  EXPECT_EQ(V_VT(&left), VT_I2);

  // `Children(4)` means the default member of what `Children` gives.
  ASSERT_EQ(Call(L"Children", DISPATCH_PROPERTYGET, {Long(4)}, {}, &result), S_OK);
  Bstr name;
  specimen_->NameOf(V_DISPATCH(&result), &name.text);
  EXPECT_EQ(name.Text(), L"item 4");
  VariantClear(&result);

  // A script's array holds variants; what comes back in its place has the parameter's type.
  com::OwnedVariant loose(Variant(VariantArray({Variant(1), Variant(Text(u"2")), Variant(3)})));
  array = loose.Detach();
  ASSERT_EQ(Call(L"Reverse", DISPATCH_METHOD, {By(VT_VARIANT, &array)}, {}, &result), S_OK);
  EXPECT_TRUE(abi::Read(com::AsRaw(array)) == Variant(ByteArray({3, 2, 1}, 0)));
  EXPECT_TRUE(abi::Read(com::AsRaw(result)) == Variant(ByteArray({1, 2, 3}, 0)));
  VariantClear(&array);
  VariantClear(&result);
}

TEST_F(ClientCalls, ForEachFindsTheEnumeratorByEitherName) {
  for (const wchar_t* name : {L"NewEnum", L"_NewEnum", L"_newenum"}) {
    VARIANT result;
    OLECHAR* names[] = {const_cast<OLECHAR*>(name)};
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(specimen_->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, DISPID_NEWENUM);
    EXPECT_EQ(Call(name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}, {}, &result), S_OK);
    EXPECT_EQ(V_VT(&result), VT_UNKNOWN);
    VariantClear(&result);
  }
}

TEST_F(ClientCalls, OnlyAMembersOwnErrorStandsInErr) {
  ErrObject err;
  err.Set(AutomationError(77, u"", u"of an earlier call"));
  ErrObject::Attach(&err);
  VARIANT null, word;
  V_VT(&null) = VT_NULL;
  const Bstr text(L"word");
  V_VT(&word) = VT_BSTR;
  V_BSTR(&word) = text.text;
  for (const VARIANT& refused : {null, word}) {
    EXPECT_TRUE(FAILED(Call(L"Number", DISPATCH_PROPERTYPUT, {refused}, {}, nullptr)));
    EXPECT_EQ(err.Number(), 77) << "an argument refused";
  }
  EXPECT_EQ(Call(L"Fail", DISPATCH_METHOD, {word, Long(5)}, {}, nullptr), DISP_E_EXCEPTION);
  EXPECT_EQ(err.Number(), 5);
  EXPECT_EQ(specimen_->Fail(6, text.text), static_cast<HRESULT>(0x800A0006));
  EXPECT_EQ(err.Number(), 6);
  ErrObject::Attach(nullptr);
}

TEST_F(ClientCalls, AnErrorComesWithItsInformationEarlyAndLateBound) {
  const Bstr description(L"gone");
  EXPECT_EQ(specimen_->Fail(2221, description.text), static_cast<HRESULT>(0x800A08AD));
  ComRef<IErrorInfo> info;
  ASSERT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
  Bstr source, text;
  info->GetSource(&source.text);
  info->GetDescription(&text.text);
  EXPECT_EQ(source.Text() + L"|" + text.Text(), L"Veldmark2.CSpecimen|gone");

  // A member that fails with 13 itself is no refused argument.
  Bstr changed(L"x");
  EXCEPINFO exception{};
  EXPECT_EQ(Call(L"ChangeAndFail", DISPATCH_METHOD, {By(VT_BSTR, &changed.text)}, {}, nullptr,
                 &exception),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(changed.Text(), L"");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  // Nor does a variable that can't take what the member left hide the member's error.
  LONG number = 7;
  Call(L"ChangeAndFail", DISPATCH_METHOD, {By(VT_I4, &number)}, {}, nullptr, &exception);
  EXPECT_STREQ(exception.bstrSource, L"Veldmark2.CSpecimen");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
}

TEST_F(ClientCalls, AnEnumeratorGivesPartsAndFailsCleanly) {
  specimen_->put_Number(4);  // the fourth step fails
  ComRef<IUnknown> unknown;
  ASSERT_EQ(specimen_->get_NewEnum(unknown.Receive()), S_OK);
  const auto numbers = As<IEnumVARIANT>(unknown.Get());
  ComRef<IEnumVARIANT> copy;
  VARIANT items[4];
  ULONG fetched = 9;
  EXPECT_EQ(numbers->Next(1, items, nullptr), S_OK);
  EXPECT_EQ(V_I4(&items[0]), 1);
  EXPECT_EQ(numbers->Next(2, items, nullptr), E_INVALIDARG);
  ASSERT_EQ(numbers->Clone(copy.Receive()), S_OK);
  EXPECT_EQ(numbers->Next(4, items, &fetched), static_cast<HRESULT>(0x800A0009));
  EXPECT_EQ(fetched, 0u);
  EXPECT_EQ(copy->Skip(1), S_OK);
  EXPECT_EQ(copy->Next(1, items, &fetched), S_OK);
  EXPECT_EQ(V_I4(&items[0]), 3);
  EXPECT_EQ(copy->Skip(1), S_FALSE);
  EXPECT_EQ(As<IDispatch>(numbers.Get()).Get(), nullptr);

  specimen_->put_Number(0);
  ASSERT_EQ(specimen_->get_NewEnum(unknown.Receive()), S_OK);
  EXPECT_EQ(As<IEnumVARIANT>(unknown.Get())->Next(4, items, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 3u);
}

TEST_F(ClientCalls, ListenersHearCancelFailAndLeaveInTheMiddleOfAnEvent) {
  const auto point = Point();
  ComRef<Listener> listener;
  *listener.Receive() = new Listener;
  DWORD first = 0, second = 0;
  EXPECT_EQ(point->Advise(nullptr, &first), E_POINTER);
  ComRef<IUnknown> deaf;
  ASSERT_EQ(specimen_->get_NewEnum(deaf.Receive()), S_OK);
  EXPECT_EQ(point->Advise(deaf.Get(), &first), CONNECT_E_CANNOTCONNECT);
  ASSERT_EQ(point->Advise(listener.Get(), &first), S_OK);
  listener->knows_events = false;  // which leaves its IDispatch
  ASSERT_EQ(point->Advise(listener.Get(), &second), S_OK);

  const Bstr message(L"news");
  VARIANT_BOOL cancelled = VARIANT_FALSE;
  int heard = 0;
  listener->on_event = [&](DISPPARAMS& parameters, EXCEPINFO*) {
    ++heard;
    EXPECT_EQ(parameters.cArgs, 2u);
    EXPECT_STREQ(V_BSTR(&parameters.rgvarg[1]), L"news");
    *V_BOOLREF(&parameters.rgvarg[0]) = VARIANT_TRUE;
    point->Unadvise(second);
    return S_OK;
  };
  EXPECT_EQ(specimen_->Tell(message.text, &cancelled), S_OK);
  EXPECT_EQ(cancelled, VARIANT_TRUE);
  EXPECT_EQ(heard, 1) << "the second left before its turn";
  EXPECT_EQ(point->Unadvise(second), CONNECT_E_NOCONNECTION);

  ComRef<IEnumConnections> connections;
  CONNECTDATA connected[2];
  ULONG count = 0;
  ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
  EXPECT_EQ(connections->Next(2, connected, &count), S_FALSE);
  ASSERT_EQ(count, 1u);
  EXPECT_EQ(connected[0].dwCookie, first);
  connected[0].pUnk->Release();

  listener->on_event = [](DISPPARAMS&, EXCEPINFO* exception) {
    exception->scode = static_cast<SCODE>(0x800A0046);
    exception->bstrSource = SysAllocString(L"client");
    exception->bstrDescription = SysAllocString(L"no more");
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(specimen_->Tell(message.text, &cancelled), static_cast<HRESULT>(0x800A0046));
  ComRef<IErrorInfo> info;
  ASSERT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
  Bstr source;
  info->GetSource(&source.text);
  EXPECT_EQ(source.Text(), L"client");

  listener->on_event = [](DISPPARAMS&, EXCEPINFO*) { return DISP_E_MEMBERNOTFOUND; };
  EXPECT_EQ(specimen_->Tell(message.text, &cancelled), S_OK);
  EXPECT_EQ(cancelled, VARIANT_FALSE);
}

TEST_F(ClientCalls, ACallWhoseListenerLetsGoOfEverythingHoldsObjectAndModuleToItsEnd) {
  // What the client has, beside its object.
  ComRef<IUnknown> numbers;
  ComRef<IConnectionPoint> point;
  ComRef<Listener> listener;
  DWORD cookie = 0;
  VARIANT_BOOL cancelled = VARIANT_FALSE;
  VARIANT item;
  struct Way {
    const char* what;
    bool by_connection;
    std::function<HRESULT()> call;
  } const ways[] = {
      {"early-bound", false, [&] { return specimen_->Tell(nullptr, &cancelled); }},
      {"late-bound", false, [&] { return Call(L"Tell", DISPATCH_METHOD, {Long(1)}, {}, nullptr); }},
      {"an enumerator's step", false,
       [&] { return static_cast<IEnumVARIANT*>(numbers.Get())->Next(1, &item, nullptr); }},
      {"a connection's begin", true, [&] { return point->Advise(listener.Get(), &cookie); }},
      {"a connection's end", true,
       [&] {
         listener = {};
         return point->Unadvise(cookie);
       }},
  };
  for (const Way& way : ways) {
    SCOPED_TRACE(way.what);
    *specimen_.Receive() = static_cast<ISpecimen*>(abi::HandOutObject(Make<CSpecimen>().Get()));
    point = Point();
    *listener.Receive() = new Listener;
    ASSERT_EQ(point->Advise(listener.Get(), &cookie), S_OK);
    ASSERT_EQ(specimen_->get_NewEnum(numbers.Receive()), S_OK);
    int times = 0;
    const auto let_go = [&] {
      ++times;
      specimen_ = {};
      point = {};
      numbers = {};
      EXPECT_EQ(CSpecimen::alive, 1);
      EXPECT_EQ(Holds(), 1);
    };
    listener->on_event = [&](DISPPARAMS&, EXCEPINFO*) {
      let_go();
      return S_OK;
    };
    if (way.by_connection) listener->on_connection = let_go;
    EXPECT_EQ(way.call(), S_OK);
    EXPECT_GE(times, 1);
    if (listener) listener->on_connection = {};
    listener = {};
    EXPECT_EQ(CSpecimen::alive, 0) << "a subscription keeps nothing alive";
    EXPECT_EQ(Holds(), 0);
  }
}

TEST_F(ClientCalls, AForeignObjectGoesOutAsThePointerItCameBy) {
  ComRef<Listener> foreign;
  *foreign.Receive() = new Listener;
  ComRef<IDispatch> echoed;
  ASSERT_EQ(specimen_->EchoObject(foreign.Get(), echoed.Receive()), S_OK);
  EXPECT_EQ(echoed.Get(), foreign.Get());
  Bstr name;
  EXPECT_EQ(specimen_->NameOf(foreign.Get(), &name.text), static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(specimen_->NameOf(nullptr, &name.text), S_OK);
  EXPECT_EQ(name.Text(), L"Nothing");
  // One without late-bound calls travels as plain IUnknown.
  ComRef<IUnknown> numbers;
  ASSERT_EQ(specimen_->get_NewEnum(numbers.Receive()), S_OK);
  VARIANT unknown, returned;
  V_VT(&unknown) = VT_UNKNOWN;
  V_UNKNOWN(&unknown) = numbers.Get();
  ASSERT_EQ(specimen_->Echo(unknown, &returned), S_OK);
  EXPECT_EQ(V_VT(&returned), VT_UNKNOWN);
  EXPECT_EQ(V_UNKNOWN(&returned), numbers.Get());
  VariantClear(&returned);
}

}  // namespace
}  // namespace veldmark
