#include <gtest/gtest.h>

#include <functional>

#include "automation/ModuleCount.h"
#include "automation/com/ComObject.h"
#include "automation/com/ComRef.h"
#include "automation/com/Face.h"
#include "automation/com/Failure.h"
#include "support/ErrorOf.h"
#include "windows/BuiltServer.h"
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
  STDMETHOD(Tell)(BSTR, VARIANT_BOOL*) = 0;
  STDMETHOD(get_Children)(ISpecimen**) = 0;
};

namespace {

using com::AsIid;
using com::ComRef;

struct Bstr {
  BSTR text;
  explicit Bstr(const wchar_t* from = nullptr) : text(SysAllocString(from)) {}
  Bstr(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text); }
  BSTR* Receive() {
    SysFreeString(text);
    return &(text = nullptr);
  }
  std::wstring Text() const { return std::wstring(text, text + SysStringLen(text)); }
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
    VariantClear(&result_.Get());
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
  /// A late-bound call, with its arguments last first, as the platform has them. What it leaves is
  /// in `result_`, `exception_` and `bad_argument_`.
  HRESULT Call(const wchar_t* name, std::vector<VARIANT> arguments = {},
               WORD flags = DISPATCH_METHOD, std::vector<DISPID> named = {}) {
    DISPID id = 0;
    auto* names = const_cast<OLECHAR*>(name);
    const HRESULT found = specimen_->GetIDsOfNames(IID_NULL, &names, 1, 0, &id);
    if (FAILED(found)) return found;
    DISPPARAMS parameters{arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(named.size())};
    VariantClear(&result_.Get());
    return specimen_->Invoke(id, IID_NULL, 0, flags, &parameters, &result_.Get(), &exception_,
                             &bad_argument_);
  }
  std::wstring NameOf(IDispatch* other) {
    Bstr name;
    EXPECT_EQ(specimen_->NameOf(other, &name.text), S_OK);
    return name.Text();
  }
  static Variant Read(const VARIANT& variant) { return abi::Read(com::AsRaw(variant)); }
  static VARIANT Of(VARTYPE type, void* pointer) {
    VARIANT variant{};
    V_VT(&variant) = type;
    V_BYREF(&variant) = pointer;
    return variant;
  }
  static VARIANT By(VARTYPE type, void* variable) {
    return Of(static_cast<VARTYPE>(VT_BYREF | type), variable);
  }
  static VARIANT Long(LONG value) {
    VARIANT variant = Of(VT_I4, nullptr);
    V_I4(&variant) = value;
    return variant;
  }

  const std::int32_t holds_before_ = ModuleHolds();
  CSpecimen* object_ = nullptr;
  ComRef<ISpecimen> specimen_;
  com::OwnedVariant result_;
  EXCEPINFO exception_{};
  UINT bad_argument_ = 0;
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
  Bstr text(L"plain");
  ASSERT_EQ(specimen_->put_Name(text.text), S_OK);
  ASSERT_EQ(specimen_->get_Name(text.Receive()), S_OK);
  EXPECT_EQ(text.Text(), L"plain");
  EXPECT_EQ(specimen_->get_Name(nullptr), E_POINTER);
  ASSERT_EQ(specimen_->Join(nullptr, Long(7), 2, text.Receive()), S_OK);
  EXPECT_EQ(text.Text(), L"77") << "a null text is empty";

  ComRef<ISpecimen> item;
  ASSERT_EQ(specimen_->get_Item(Long(3), item.Receive()), S_OK);
  EXPECT_EQ(NameOf(item.Get()), L"item 3");
  ISpecimen* out = nullptr;
  ASSERT_EQ(specimen_->Create(&out), S_OK);
  EXPECT_EQ(specimen_->Create(&out), S_OK) << "which lets go of the object it was given";
  EXPECT_EQ(out, nullptr);

  LONG number = 1;
  VARIANT_BOOL flag = VARIANT_TRUE;
  LONG behind = 5;
  VARIANT value = By(VT_I4, &behind);
  BSTR const before = text.text;
  ASSERT_EQ(specimen_->Leave(&text.text, &value, &number, &flag), S_OK);
  EXPECT_EQ(text.text, before) << "what stays unchanged isn't replaced";
  com::OwnedVariant changed;
  ASSERT_EQ(specimen_->Change(&text.text, &changed.Get(), &number, &flag), S_OK);
  EXPECT_EQ(text.Text() + std::to_wstring(number) + V_BSTR(&changed.Get()), L"77!2changed");
  EXPECT_EQ(flag, VARIANT_FALSE);
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
    com::OwnedVariant out(value), echoed;
    ASSERT_EQ(specimen_->Echo(out.Get(), &echoed.Get()), S_OK);
    EXPECT_TRUE(Read(echoed.Get()) == value);
  }
  // One of the platform's arrays that has no twin among ours, with the first index fastest.
  SAFEARRAYBOUND bounds[] = {{2, 0}, {1, 5}};
  SAFEARRAY* shorts = SafeArrayCreate(VT_I2, 2, bounds);
  LONG at[] = {1, 5};
  short element = 9;
  SafeArrayPutElement(shorts, at, &element);
  const Variant read = Read(Of(VT_ARRAY | VT_I2, shorts));
  ASSERT_TRUE(read.If<VariantArray>());
  EXPECT_EQ(read.If<VariantArray>()->bounds, (std::vector<Bound>{{0, 2}, {5, 1}}));
  EXPECT_TRUE(read.If<VariantArray>()->At(1, 0) == Variant(std::int16_t{9}));

  SAFEARRAY* none = nullptr;
  SAFEARRAY* reversed = nullptr;
  EXPECT_EQ(specimen_->Reverse(&none, &reversed), S_OK) << "a null array is empty";
  SafeArrayDestroy(reversed);
  EXPECT_EQ(specimen_->Reverse(&shorts, &reversed), static_cast<HRESULT>(0x800A000D));
  SafeArrayDestroy(shorts);
}

TEST_F(ClientCalls, ATypedVariableKeepsItsTypeWhenItIsWritten) {
  std::uint8_t byte = 4;
  float single = 4;
  DECIMAL decimal;
  VarDecFromI4(4, &decimal);
  VARIANT inner = Long(4), middle = By(VT_VARIANT, &inner);
  for (const VARIANT& number :
       {By(VT_UI1, &byte), By(VT_R4, &single), By(VT_DECIMAL, &decimal), By(VT_VARIANT, &middle)}) {
    Bstr text(L"x");
    com::OwnedVariant value, flag;
    ASSERT_EQ(Call(L"Change", {By(VT_VARIANT, &flag.Get()), number, By(VT_VARIANT, &value.Get()),
                               By(VT_BSTR, &text.text)}),
              S_OK);
    EXPECT_EQ(ToText(Read(number)), u"5");
    EXPECT_EQ(text.Text(), L"x!");
    EXPECT_EQ(V_VT(&flag.Get()), VT_BOOL);
  }
  EXPECT_EQ(V_VT(&inner), VT_I4);
  // A reference to nowhere, and one that never ends, are refused.
  VARIANT knot = By(VT_VARIANT, &knot);
  for (const VARIANT& wrong : {By(VT_I4, nullptr), knot}) {
    EXPECT_TRUE(FAILED(Call(L"Echo", {wrong})));
  }
}

TEST_F(ClientCalls, WhatACallersRecordClaimsIsNotTakenOnTrust) {
  const auto make = [](VARTYPE type) { return SafeArrayCreateVector(type, 0, 2); };
  SAFEARRAY* const numbers = make(VT_I8);
  SAFEARRAY* const untyped = make(VT_I8);
  untyped->fFeatures &= static_cast<USHORT>(~FADF_HAVEVARTYPE);
  SAFEARRAY* knotted = make(VT_VARIANT);
  static_cast<VARIANT*>(knotted->pvData)[1] = By(VT_ARRAY | VT_VARIANT, &knotted);
  const std::tuple<const char*, VARIANT, std::int32_t> cases[] = {
      {"a variant in place", Of(VT_VARIANT, nullptr), 458},
      {"numbers as texts", Of(VT_ARRAY | VT_BSTR, numbers), 13},
      {"numbers as objects", Of(VT_ARRAY | VT_DISPATCH, numbers), 13},
      {"elements of no type as texts", Of(VT_ARRAY | VT_BSTR, untyped), 13},
      {"elements of no type as numbers", Of(VT_ARRAY | VT_I8, untyped), 0},
      {"an array within itself", Of(VT_ARRAY | VT_VARIANT, knotted), 13},
  };
  for (const auto& [what, value, number] : cases) {
    const VARIANT& claimed = value;
    EXPECT_EQ(ErrorOf([&] { Read(claimed); }), number) << what;
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
  com::OwnedVariant word(u"word"), left_out(Variant::Missing());
  const VARIANT text = word.Get(), missing = left_out.Get();
  constexpr WORD kMethod = DISPATCH_METHOD, kGet = DISPATCH_PROPERTYGET,
                 kPut = DISPATCH_PROPERTYPUT;
  const struct {
    const char* what;
    const wchar_t* name;
    WORD flags;
    std::vector<VARIANT> arguments;
    std::vector<DISPID> named;
    HRESULT outcome;
    UINT bad_argument = 0;
  } cases[] = {
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
      {"the enumerator called", L"_newenum", kMethod, {}, {}, S_OK},
      {"arguments for a plain value", L"Name", kGet, {Long(1)}, {}, DISP_E_BADPARAMCOUNT},
  };
  for (const auto& test : cases) {
    bad_argument_ = 99;
    EXPECT_EQ(Call(test.name, test.arguments, test.flags, test.named), test.outcome) << test.what;
    EXPECT_EQ(bad_argument_, test.bad_argument) << test.what;
  }
  EXPECT_EQ(Call(L"Nothing"), DISP_E_UNKNOWNNAME);
  OLECHAR* names[] = {const_cast<OLECHAR*>(L"JOIN"), const_cast<OLECHAR*>(L"times"),
                      const_cast<OLECHAR*>(L"often")};
  DISPID ids[3];
  EXPECT_EQ(specimen_->GetIDsOfNames(IID_NULL, names, 2, 0, ids), S_OK);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(specimen_->GetIDsOfNames(IID_NULL, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[2], DISPID_UNKNOWN);
}

TEST_F(ClientCalls, ScriptsVariablesAndArraysCrossInTheirOwnShapes) {
  // A fresh variable takes the object, and then Nothing.
  com::OwnedVariant object;
  for (const bool made : {true, false}) {
    ASSERT_EQ(Call(L"Create", {By(VT_VARIANT, &object.Get())}), S_OK);
    EXPECT_EQ(V_VT(&object.Get()), VT_DISPATCH);
    EXPECT_EQ(V_DISPATCH(&object.Get()) != nullptr, made);
  }
  // What a member leaves alone keeps the type that the script gave it.
  VARIANT left = Of(VT_I2, nullptr);
  EXPECT_EQ(Call(L"Leave", std::vector<VARIANT>(4, By(VT_VARIANT, &left))), S_OK);
  EXPECT_EQ(V_VT(&left), VT_I2);

  // `Children(4)` means the default member of what `Children` gives.
  ASSERT_EQ(Call(L"Children", {Long(4)}, DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(NameOf(V_DISPATCH(&result_.Get())), L"item 4");

  // A script's array holds variants; what comes back in its place has the parameter's type.
  com::OwnedVariant array(VariantArray({Variant(1), Variant(u"2"), Variant(3)}));
  ASSERT_EQ(Call(L"Reverse", {By(VT_VARIANT, &array.Get())}), S_OK);
  EXPECT_TRUE(Read(array.Get()) == Variant(ByteArray({3, 2, 1}, 0)));
  EXPECT_TRUE(Read(result_.Get()) == Variant(ByteArray({1, 2, 3}, 0)));
}

TEST_F(ClientCalls, OnlyAMembersOwnErrorStandsInErrAndComesWithItsInformation) {
  ErrObject err;
  err.Set(AutomationError(77, u"", u"of an earlier call"));
  ErrObject::Attach(&err);
  com::OwnedVariant null(Null{}), word(u"gone");
  for (const VARIANT& refused : {null.Get(), word.Get()}) {
    EXPECT_TRUE(FAILED(Call(L"Number", {refused}, DISPATCH_PROPERTYPUT)));
    EXPECT_EQ(err.Number(), 77) << "an argument refused";
  }
  // A member that fails with 13 itself is no refused argument.
  Bstr changed(L"x");
  EXPECT_EQ(Call(L"ChangeAndFail", {By(VT_BSTR, &changed.text)}), DISP_E_EXCEPTION);
  EXPECT_EQ(exception_.scode, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(com::TakeException(exception_).source, u"Veldmark2.CSpecimen");
  EXPECT_EQ(changed.Text(), L"");
  EXPECT_EQ(err.Number(), 13);
  // Nor does a variable that can't take what the member left hide the member's error.
  LONG number = 7;
  EXPECT_EQ(Call(L"ChangeAndFail", {By(VT_I4, &number)}), DISP_E_EXCEPTION);
  EXPECT_EQ(com::TakeException(exception_).source, u"Veldmark2.CSpecimen");

  EXPECT_EQ(specimen_->Fail(2221, V_BSTR(&word.Get())), static_cast<HRESULT>(0x800A08AD));
  EXPECT_EQ(err.Number(), 2221);
  EXPECT_EQ(ErrorInformation(), L"Veldmark2.CSpecimen|gone");
  ErrObject::Attach(nullptr);
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
  EXPECT_EQ(ErrorInformation(), L"client|no more");

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
      {"late-bound", false, [&] { return Call(L"Tell", {Long(1)}); }},
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
  BSTR name = nullptr;
  EXPECT_EQ(specimen_->NameOf(foreign.Get(), &name), static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(NameOf(nullptr), L"Nothing");
  // One without late-bound calls travels as plain IUnknown.
  ComRef<IUnknown> numbers;
  ASSERT_EQ(specimen_->get_NewEnum(numbers.Receive()), S_OK);
  ASSERT_EQ(specimen_->Echo(Of(VT_UNKNOWN, numbers.Get()), &result_.Get()), S_OK);
  EXPECT_EQ(V_VT(&result_.Get()), VT_UNKNOWN);
  EXPECT_EQ(V_UNKNOWN(&result_.Get()), numbers.Get());
}

}  // namespace
}  // namespace veldmark
