#include "automation/com/Failure.h"

#include "automation/Interface.h"
#include "automation/com/ComRef.h"

namespace veldmark::com {
namespace {

struct Refusal {
  HRESULT code;
  std::int32_t number;
  bool refuses_argument = false;  // also what refuses a call for an argument with that error
};

constexpr Refusal kRefusals[] = {
    {DISP_E_TYPEMISMATCH, runtime_error::kTypeMismatch, true},
    {DISP_E_OVERFLOW, runtime_error::kOverflow, true},
    {DISP_E_MEMBERNOTFOUND, runtime_error::kNoSuchMember},
    {DISP_E_UNKNOWNNAME, runtime_error::kNoSuchMember},
    {DISP_E_PARAMNOTFOUND, runtime_error::kNamedArgumentNotFound},
    {DISP_E_NONAMEDARGS, 446},
    {DISP_E_PARAMNOTOPTIONAL, runtime_error::kArgumentNotOptional},
    {DISP_E_BADPARAMCOUNT, runtime_error::kWrongNumberOfArguments},
    {DISP_E_BADINDEX, runtime_error::kSubscriptOutOfRange},
    {DISP_E_ARRAYISLOCKED, 10},
    {DISP_E_DIVBYZERO, 11},
    {E_OUTOFMEMORY, runtime_error::kOutOfMemory, true},
    {E_NOINTERFACE, 430},
};

BSTR TextOrNull(const Text& text) noexcept {
  return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                           static_cast<UINT>(text.size()));
}

Text TakeText(BSTR& text) {
  const abi::RawText taken = reinterpret_cast<abi::RawText>(std::exchange(text, nullptr));
  struct Freed {
    abi::RawText text;
    ~Freed() { abi::Free(text); }
  } const freed{taken};
  return Text(abi::View(taken));
}

}  // namespace

HRESULT ToFailure(std::int32_t number) {
  if (number < 0) return number;
  if (number <= 0xFFFF) return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
  return static_cast<HRESULT>(static_cast<std::uint32_t>(number) | 0x80000000u);
}

std::int32_t ToNumber(HRESULT failure) {
  if (HRESULT_FACILITY(failure) == FACILITY_CONTROL) return HRESULT_CODE(failure);
  for (const Refusal& refusal : kRefusals) {
    if (refusal.code == failure) return refusal.number;
  }
  return failure;
}

HRESULT ToRefusal(std::int32_t number) {
  for (const Refusal& refusal : kRefusals) {
    if (refusal.refuses_argument && refusal.number == number) return refusal.code;
  }
  return DISP_E_EXCEPTION;
}

HRESULT ReportError(const AutomationError& error, const IID& iid) noexcept {
  const HRESULT failure = ToFailure(error.number);
  ComRef<ICreateErrorInfo> creating;
  if (FAILED(CreateErrorInfo(creating.Receive()))) return failure;
  creating->SetGUID(iid);
  // Both copy; they are declared with a plain pointer all the same.
  creating->SetSource(reinterpret_cast<LPOLESTR>(const_cast<char16_t*>(error.source.c_str())));
  creating->SetDescription(
      reinterpret_cast<LPOLESTR>(const_cast<char16_t*>(error.description.c_str())));
  ComRef<IErrorInfo> info;
  if (SUCCEEDED(
          creating->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.Receive())))) {
    SetErrorInfo(0, info.Get());
  }
  return failure;
}

void FillException(EXCEPINFO& exception, const AutomationError& error) noexcept {
  exception = EXCEPINFO{};
  exception.scode = ToFailure(error.number);
  exception.bstrSource = TextOrNull(error.source);
  exception.bstrDescription = TextOrNull(error.description);
}

AutomationError TakeException(EXCEPINFO& exception) {
  if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
  Text source = TakeText(exception.bstrSource);
  Text description = TakeText(exception.bstrDescription);
  SysFreeString(std::exchange(exception.bstrHelpFile, nullptr));
  std::int32_t number = exception.scode != 0 ? ToNumber(exception.scode) : exception.wCode;
  if (number == 0) number = 440;
  if (description.empty()) description = Text(StandardErrorText(number));
  return AutomationError(number, std::move(source), std::move(description));
}

}  // namespace veldmark::com

namespace veldmark::abi {

std::int32_t Fail(const Object& self) noexcept {
  try {
    const Identity iid = self.GetInterface().InterfaceIdentity();
    return com::ReportError(CurrentError(), com::AsIid(iid));
  } catch (...) {
    return E_OUTOFMEMORY;  // not even the error could be told
  }
}

}  // namespace veldmark::abi
