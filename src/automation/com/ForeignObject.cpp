#include "automation/com/ForeignObject.h"

#include <deque>

#include "automation/Boundary.h"
#include "automation/Interface.h"
#include "automation/com/Failure.h"

namespace veldmark::com {
namespace {

/// The arguments of a call out of the library, in the order and with the ownership that the
/// platform wants: last first, by-reference ones over variables that live as long as this.
class OutgoingArguments {
 public:
  explicit OutgoingArguments(std::span<Variant> arguments) : arguments_(arguments) {
    passed_.resize(arguments.size());
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      OwnedVariant& held = held_.emplace_back(arguments[i]);
      VARIANT& passed = passed_[arguments.size() - 1 - i];
      const auto* reference = arguments[i].If<Reference>();
      if (!reference) {
        passed = held.Get();  // lent
      } else if (std::holds_alternative<Variant*>(*reference)) {
        V_VT(&passed) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&passed) = &held.Get();
      } else {
        V_VT(&passed) = static_cast<VARTYPE>(VT_BYREF | V_VT(&held.Get()));
        V_BYREF(&passed) = &V_I8(&held.Get());
      }
    }
  }

  DISPPARAMS Parameters() {
    return {passed_.data(), nullptr, static_cast<UINT>(passed_.size()), 0};
  }

  void WriteBack() {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      if (arguments_[i].If<Reference>()) arguments_[i].Assign(abi::Read(AsRaw(held_[i].Get())));
    }
  }

 private:
  std::span<Variant> arguments_;
  std::deque<OwnedVariant> held_;
  std::vector<VARIANT> passed_;
};

/// The exception record of a call out of the library: a callee may fill it even where it succeeds.
struct ExceptionRecord : EXCEPINFO {
  ExceptionRecord() : EXCEPINFO{} {}
  ExceptionRecord(const ExceptionRecord&) = delete;
  ExceptionRecord& operator=(const ExceptionRecord&) = delete;
  ~ExceptionRecord() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
};

}  // namespace

ForeignObject::ForeignObject(IUnknown* pointer) : pointer_(pointer) {
  pointer->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch_.Receive()));
}

const Interface& ForeignObject::GetInterface() const {
  static const Interface table = [] {
    Interface unnamed;
    unnamed.name = u"Object";
    unnamed.help = u"An object of another library.";
    return unnamed;
  }();
  return table;
}

bool ForeignObject::DefaultValue(Variant& value) {
  if (!dispatch_) return false;
  std::optional<Variant> read =
      InvokeForeign(*dispatch_.Get(), DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {});
  if (!read) return false;
  value = *std::move(read);
  return true;
}

Variant ForeignObject::CallMethod(TextView name, std::span<Variant> arguments) {
  const std::wstring spelled(name.begin(), name.end());
  auto* names = const_cast<OLECHAR*>(spelled.c_str());
  DISPID id = DISPID_UNKNOWN;
  if (!dispatch_ ||
      FAILED(dispatch_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id))) {
    Raise(runtime_error::kNoSuchMember);
  }
  std::optional<Variant> result = InvokeForeign(*dispatch_.Get(), id, DISPATCH_METHOD, arguments);
  if (!result) Raise(runtime_error::kNoSuchMember);
  return *std::move(result);
}

IUnknown* ForeignObject::HandOut() const {
  IUnknown* pointer = dispatch_ ? dispatch_.Get() : pointer_.Get();
  pointer->AddRef();
  return pointer;
}

std::optional<Variant> InvokeForeign(IDispatch& object, DISPID id, WORD flags,
                                     std::span<Variant> arguments) {
  const ComRef<IDispatch> keep_alive(&object);
  OutgoingArguments outgoing(arguments);
  DISPPARAMS parameters = outgoing.Parameters();
  OwnedVariant result;
  ExceptionRecord exception;
  UINT bad_argument = 0;
  const HRESULT outcome = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        &result.Get(), &exception, &bad_argument);
  if (outcome == DISP_E_MEMBERNOTFOUND) return {};
  if (FAILED(outcome) && outcome != DISP_E_EXCEPTION) Raise(ToNumber(outcome));
  const auto raise_its_error = [&] {
    if (FAILED(outcome)) throw TakeException(exception);
  };
  CallThenWriteBack(raise_its_error, [&] { outgoing.WriteBack(); });
  return abi::Read(AsRaw(result.Get()));
}

}  // namespace veldmark::com
