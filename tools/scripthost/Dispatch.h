// A small base for the host's automation objects, and the calls that go the other way.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace scripthost {

// Owns one reference to an interface.
template <typename Interface>
class Reference {
 public:
  Reference() = default;
  explicit Reference(Interface* owned) : pointer_(owned) {}
  Reference(const Reference& other) : pointer_(other.pointer_) {
    if (pointer_) pointer_->AddRef();
  }
  Reference(Reference&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Reference& operator=(Reference other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Reference() {
    if (pointer_) pointer_->Release();
  }

  static Reference Share(Interface* borrowed) {
    if (borrowed) borrowed->AddRef();
    return Reference(borrowed);
  }

  Interface* Get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  Interface** Receive() {
    *this = Reference();
    return &pointer_;
  }
  Interface* Release() { return std::exchange(pointer_, nullptr); }

 private:
  Interface* pointer_ = nullptr;
};

// The interface definitions of the tool chain miss a const where a variant is only read.
inline VARIANT* Readable(const VARIANT* value) { return const_cast<VARIANT*>(value); }

// Owns a VARIANT.
class Value : public VARIANT {
 public:
  Value() { VariantInit(this); }
  explicit Value(std::wstring_view text) : Value() {
    vt = VT_BSTR;
    bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  explicit Value(long number) : Value() {
    vt = VT_I4;
    lVal = number;
  }
  explicit Value(IDispatch* object) : Value() {
    vt = VT_DISPATCH;
    pdispVal = object;
    if (object) object->AddRef();
  }
  Value(const Value& other) : Value() { VariantCopy(this, Readable(&other)); }
  Value& operator=(const Value& other) {
    VariantCopy(this, Readable(&other));
    return *this;
  }
  ~Value() { VariantClear(this); }

  // The variant itself, which the receiver then clears.
  VARIANT Detach() { return std::exchange(static_cast<VARIANT&>(*this), VARIANT{}); }
};

// The text of a value as scripts print it.
std::wstring TextOf(const VARIANT& value);

// What a member gets: the arguments in the order written, and where its result goes (never null).
struct Call {
  std::vector<VARIANT*> arguments;
  VARIANT* result;
  EXCEPINFO* exception;

  std::wstring Text(std::size_t index) const;
  long Number(std::size_t index, long fallback) const;
  Reference<IDispatch> Object(std::size_t index) const;
  HRESULT Fail(HRESULT code, std::wstring_view description) const;
};

// An object with one interface and a count of its references, of which its maker has the first.
template <typename Interface>
class ComObject : public Interface {
 public:
  ComObject() = default;
  virtual ~ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !Implements(iid)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<Interface*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  // Whether this identifies the interface.
  virtual bool Implements(REFIID iid) const = 0;

 private:
  ULONG references_ = 1;
};

// An automation object that no type library describes.
class UntypedDispatch : public ComObject<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

 protected:
  bool Implements(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch); }
};

// An automation object whose members are a table. The first member is the default one.
class Scriptable : public UntypedDispatch {
 public:
  struct Member {
    std::wstring name;
    std::function<HRESULT(const Call&)> run;
  };

  void Add(std::wstring name, std::function<HRESULT(const Call&)> run) {
    members_.push_back({std::move(name), std::move(run)});
  }
  // Runs the default member.
  HRESULT Default(const Call& call) { return members_.front().run(call); }
  // What `For Each` asks for.
  void SetEnumerator(std::function<HRESULT(const Call&)> run) { enumerator_ = std::move(run); }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

 private:
  std::vector<Member> members_;
  std::function<HRESULT(const Call&)> enumerator_;
};

// An enumerator over values that are all there already.
Reference<IEnumVARIANT> Enumerate(std::vector<Value> values);

}  // namespace scripthost
