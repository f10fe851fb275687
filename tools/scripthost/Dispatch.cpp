#include "Dispatch.h"

#include <algorithm>

namespace scripthost {
namespace {

class ValueEnumerator final : public ComObject<IEnumVARIANT> {
 public:
  explicit ValueEnumerator(std::vector<Value> values, std::size_t next = 0)
      : values_(std::move(values)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
    ULONG given = 0;
    for (; given < count && next_ < values_.size(); ++given, ++next_) {
      VariantInit(&values[given]);
      VariantCopy(&values[given], &values_[next_]);
    }
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t step = std::min<std::size_t>(count, values_.size() - next_);
    next_ += step;
    return step == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    *copy = new ValueEnumerator(values_, next_);
    return S_OK;
  }

 private:
  bool Implements(REFIID iid) const override { return IsEqualIID(iid, IID_IEnumVARIANT); }

  std::vector<Value> values_;
  std::size_t next_;
};

}  // namespace

std::wstring TextOf(const VARIANT& value) {
  Value text;
  if (FAILED(VariantChangeTypeEx(&text, Readable(&value), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL,
                                 VT_BSTR))) {
    return {};
  }
  return std::wstring(text.bstrVal, SysStringLen(text.bstrVal));
}

std::wstring Call::Text(std::size_t index) const {
  return index < arguments.size() ? TextOf(*arguments[index]) : std::wstring();
}

long Call::Number(std::size_t index, long fallback) const {
  Value number;
  if (index >= arguments.size() || FAILED(VariantChangeType(&number, arguments[index], 0, VT_I4))) {
    return fallback;
  }
  return number.lVal;
}

Reference<IDispatch> Call::Object(std::size_t index) const {
  Value object;
  if (index >= arguments.size() ||
      FAILED(VariantChangeType(&object, arguments[index], 0, VT_DISPATCH))) {
    return {};
  }
  return Reference<IDispatch>::Share(object.pdispVal);
}

HRESULT Call::Fail(HRESULT code, std::wstring_view description) const {
  if (!exception) return code;
  *exception = EXCEPINFO{};
  exception->bstrSource = SysAllocString(L"WScript");
  exception->bstrDescription =
      SysAllocStringLen(description.data(), static_cast<UINT>(description.size()));
  exception->scode = code;
  return DISP_E_EXCEPTION;
}

HRESULT Scriptable::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  std::fill_n(ids, count, DISPID_UNKNOWN);
  const auto member = std::find_if(members_.begin(), members_.end(), [&](const Member& candidate) {
    return _wcsicmp(candidate.name.c_str(), names[0]) == 0;
  });
  if (member == members_.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = static_cast<DISPID>(member - members_.begin()) + 1;
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Scriptable::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO* exception, UINT*) {
  Value ignored;
  if (result) VariantInit(result);
  Call call{{}, result ? result : &ignored, exception};
  for (UINT i = parameters->cArgs; i > 0; --i) call.arguments.push_back(&parameters->rgvarg[i - 1]);
  if (id == DISPID_NEWENUM && enumerator_) return enumerator_(call);
  const std::size_t index = id == DISPID_VALUE ? 0 : static_cast<std::size_t>(id) - 1;
  if (id < 0 || index >= members_.size()) return DISP_E_MEMBERNOTFOUND;
  return members_[index].run(call);
}

Reference<IEnumVARIANT> Enumerate(std::vector<Value> values) {
  return Reference<IEnumVARIANT>(new ValueEnumerator(std::move(values)));
}

}  // namespace scripthost
