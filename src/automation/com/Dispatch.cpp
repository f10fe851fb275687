#include <algorithm>
#include <array>

#include "automation/Boundary.h"
#include "automation/CallInProgress.h"
#include "automation/Enumerator.h"
#include "automation/Secret.h"
#include "automation/com/ClassFace.h"
#include "automation/com/ComRef.h"
#include "automation/com/Face.h"
#include "automation/com/Failure.h"
#include "automation/com/TypeLibrary.h"

namespace veldmark::com {
namespace {

/// Elements of a count known at the call, in place while they are few.
template <class T>
class ShortList {
 public:
  explicit ShortList(std::size_t count) {
    if (count > few_.size()) many_.resize(count);
    all_ = count > few_.size() ? std::span<T>(many_) : std::span<T>(few_).first(count);
  }
  ShortList(const ShortList&) = delete;
  ShortList& operator=(const ShortList&) = delete;

  T& operator[](std::size_t i) { return all_[i]; }
  std::span<T> All() { return all_; }

 private:
  std::array<T, 4> few_{};
  std::vector<T> many_;
  std::span<T> all_;
};

/// A caller's argument record put in order: for each parameter of the member the variant that the
/// caller passes, null for one left out.
class IncomingArguments {
 public:
  IncomingArguments(const Member& member, const DISPPARAMS& passed)
      : member_(member), passed_(passed), sources_(member.parameters.size()) {}

  /// Finds each argument's place. Fails for too many, for a name that the member doesn't have and
  /// for a place taken twice.
  HRESULT Arrange(UINT& bad_argument) {
    const std::size_t named = passed_.cNamedArgs;
    const std::size_t positional = passed_.cArgs - named;
    const std::size_t count = member_.parameters.size();
    if (passed_.cArgs > count) return DISP_E_BADPARAMCOUNT;
    for (std::size_t i = 0; i < positional; ++i)
      sources_[i] = &passed_.rgvarg[passed_.cArgs - 1 - i];
    for (std::size_t i = 0; i < named; ++i) {
      const DISPID id = passed_.rgdispidNamedArgs[i];
      const bool is_value = id == DISPID_PROPERTYPUT && member_.kind == MemberKind::kPut;
      const std::size_t place = is_value ? count - 1 : static_cast<std::size_t>(id);
      if (place >= count || sources_[place]) {
        bad_argument = static_cast<UINT>(i);
        return DISP_E_PARAMNOTFOUND;
      }
      sources_[place] = &passed_.rgvarg[i];
    }
    return S_OK;
  }

  /// Reads the arguments, defaults standing in for those left out.
  HRESULT Read(std::span<Variant> values, UINT& bad_argument) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (sources_[i]) {
        try {
          values[i] = abi::Read(AsRaw(*sources_[i]));
        } catch (const AutomationError& error) {
          bad_argument = Position(i);
          const HRESULT refusal = ToRefusal(error.number);
          return refusal == DISP_E_EXCEPTION ? DISP_E_BADVARTYPE : refusal;
        }
        if (!values[i].IsMissing()) continue;
      }
      const Parameter& parameter = member_.parameters[i];
      if (!parameter.default_value) {
        bad_argument = sources_[i] ? Position(i) : static_cast<UINT>(i);
        return DISP_E_PARAMNOTOPTIONAL;
      }
      values[i] = *parameter.default_value;
    }
    return S_OK;
  }

  /// Whether the caller has a variable there that the member may change.
  bool IsVariable(std::size_t i) {
    return member_.parameters[i].type.by_reference && sources_[i] &&
           (V_VT(sources_[i]) & VT_BYREF) != 0;
  }
  void WriteBack(std::size_t i, const Variant& value) { abi::Assign(AsRaw(*sources_[i]), value); }

  /// An argument's place in the caller's record.
  UINT Position(std::size_t i) { return static_cast<UINT>(sources_[i] - passed_.rgvarg); }

 private:
  const Member& member_;
  const DISPPARAMS& passed_;
  ShortList<VARIANT*> sources_;
};

/// Wipes the texts of secret parameters, which a call's values hold, when the call is over.
class SecretsEnd {
 public:
  SecretsEnd(const Member& member, std::span<Variant> values) : member_(member), values_(values) {}
  SecretsEnd(const SecretsEnd&) = delete;
  SecretsEnd& operator=(const SecretsEnd&) = delete;
  ~SecretsEnd() {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      Text* const text = values_[i].If<Text>();
      if (text && member_.parameters[i].type.secret) Wipe(*text);
    }
  }

 private:
  const Member& member_;
  std::span<Variant> values_;
};

/// Hands the arguments of a property without parameters on to the default member of its value:
/// `x.Files(1)` for `x.Files.Item(1)`.
HRESULT InvokeDefault(const Variant& value, DISPPARAMS& parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) {
  OwnedVariant target(value);
  if (V_VT(&target.Get()) != VT_DISPATCH || !V_DISPATCH(&target.Get())) {
    return DISP_E_BADPARAMCOUNT;
  }
  return V_DISPATCH(&target.Get())
      ->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
               &parameters, result, exception, bad_argument);
}

HRESULT InvokeMember(Object& self, const Member& member, DISPPARAMS& parameters, VARIANT* result,
                     EXCEPINFO* exception, UINT* bad_argument) {
  if (member.parameters.empty() && parameters.cArgs == 0) {
    const Variant returned = member.Invoke(self, {});
    if (result) AsRaw(*result) = abi::HandOutVariant(returned);
    return S_OK;
  }
  if (member.kind == MemberKind::kGet && member.parameters.empty()) {
    return InvokeDefault(member.Invoke(self, {}), parameters, result, exception, bad_argument);
  }

  UINT bad = 0;
  const auto refuse = [&](HRESULT refusal) {
    if (bad_argument) *bad_argument = bad;
    return refusal;
  };
  IncomingArguments incoming(member, parameters);
  const std::size_t count = member.parameters.size();
  ShortList<Variant> values(count);
  const SecretsEnd secrets_end(member, values.All());
  if (const HRESULT arranged = incoming.Arrange(bad); FAILED(arranged)) return refuse(arranged);
  if (const HRESULT read = incoming.Read(values.All(), bad); FAILED(read)) return refuse(read);

  ShortList<Variant> before(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (incoming.IsVariable(i)) before[i] = values[i];
  }
  const auto write_back = [&] {
    for (std::size_t i = 0; i < count; ++i) {
      if (incoming.IsVariable(i) && !(values[i] == before[i])) incoming.WriteBack(i, values[i]);
    }
  };
  Variant returned;
  try {
    CallThenWriteBack([&] { returned = member.Invoke(self, values.All()); }, write_back);
  } catch (const ArgumentError& error) {
    const std::ptrdiff_t place = error.argument - values.All().data();
    const bool ours = place >= 0 && static_cast<std::size_t>(place) < count;
    const HRESULT refusal = ToRefusal(error.number);
    if (ours && refusal != DISP_E_EXCEPTION) {
      bad = incoming.Position(static_cast<std::size_t>(place));
      return refuse(refusal);
    }
    throw;
  }
  if (result) AsRaw(*result) = abi::HandOutVariant(returned);
  return S_OK;
}

/// A member's identifier. Some clients' For Each asks for the enumerator by the name that type
/// libraries often give it.
DISPID IdOf(const ClassFace& face, TextView name) {
  const DISPID id = face.table.IdOf(name);
  const bool alias = id == DISPID_UNKNOWN && MemberNameEqual()(name, u"_NewEnum");
  return alias && face.Find(DISPID_NEWENUM, DISPATCH_PROPERTYGET) ? DISPID_NEWENUM : id;
}

}  // namespace

HRESULT STDMETHODCALLTYPE GetTypeInfoCount(BinaryFace*, UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = OwnTypeLibrary() ? 1 : 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE GetTypeInfo(BinaryFace* face, UINT index, LCID,
                                      ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  const ComRef<ITypeLib> library = OwnTypeLibrary();
  if (!library) return TYPE_E_CANTLOADLIBRARY;
  return library->GetTypeInfoOfGuid(ClassFace::Of(*face).iid, info);
}

HRESULT STDMETHODCALLTYPE GetIDsOfNames(BinaryFace* face, REFIID reserved, OLECHAR** names,
                                        UINT count, LCID, DISPID* ids) noexcept {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids || count == 0) return E_INVALIDARG;
  const auto name = [&](UINT i) {
    return names[i] ? TextView(reinterpret_cast<const char16_t*>(names[i])) : TextView();
  };
  const Interface& table = ClassFace::Of(*face).table;
  ids[0] = IdOf(ClassFace::Of(*face), name(0));
  bool known = ids[0] != DISPID_UNKNOWN;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    for (const Member& member : table.members) {
      if (ids[0] == DISPID_UNKNOWN || member.id != ids[0]) continue;
      const auto found = std::ranges::find_if(member.parameters, [&](const Parameter& parameter) {
        return MemberNameEqual()(parameter.name, name(i));
      });
      if (found == member.parameters.end()) continue;
      ids[i] = static_cast<DISPID>(found - member.parameters.begin());
      break;
    }
    known = known && ids[i] != DISPID_UNKNOWN;
  }
  return known ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT STDMETHODCALLTYPE Invoke(BinaryFace* face, DISPID id, REFIID reserved, LCID, WORD flags,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                 UINT* bad_argument) noexcept {
  if (result) VariantInit(result);
  if (exception) *exception = EXCEPINFO{};
  if (bad_argument) *bad_argument = 0;
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters || (parameters->cArgs > 0 && !parameters->rgvarg) ||
      (parameters->cNamedArgs > 0 && !parameters->rgdispidNamedArgs) ||
      parameters->cNamedArgs > parameters->cArgs) {
    return E_INVALIDARG;
  }
  const Member* member = ClassFace::Of(*face).Find(id, flags);
  if (!member) return DISP_E_MEMBERNOTFOUND;
  Object& self = ObjectOf(face);
  const CallInProgress in_progress(self);
  try {
    return InvokeMember(self, *member, *parameters, result, exception, bad_argument);
  } catch (...) {
    try {
      if (exception) FillException(*exception, CurrentError());
      return DISP_E_EXCEPTION;
    } catch (...) {
      return E_OUTOFMEMORY;  // not even the error could be told
    }
  }
}

}  // namespace veldmark::com
