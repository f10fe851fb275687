#pragma once

#include <vector>

#include "automation/Interface.h"
#include "automation/com/Sdk.h"

namespace veldmark::com {

/// What the binary face knows of a class: its function table, and its members by identifier. Built
/// at the class's first object that goes out, and kept.
class ClassFace {
 public:
  /// That of a class; any thread may ask.
  static const ClassFace& Of(const Interface& table);
  /// That of an object that has gone out.
  static const ClassFace& Of(const BinaryFace& face) {
    return *static_cast<const ClassFace*>(face.function_table[-1]);
  }

  explicit ClassFace(const Interface& class_table);
  ClassFace(const ClassFace&) = delete;
  ClassFace& operator=(const ClassFace&) = delete;

  const void* const* FunctionTable() const { return slots_.data() + 1; }

  /// The member that an invocation with these flags means; null when there is none.
  const Member* Find(DISPID id, WORD flags) const;

  const Interface& table;
  const IID iid;

 private:
  struct Callable {
    const Member* call = nullptr;  // the method or the get
    const Member* put = nullptr;
  };

  std::vector<const void*> slots_;  // this, then the functions
  std::vector<Callable> callables_;
};

/// The class's face behind an interface pointer, if the pointer is one of this module's; null
/// otherwise. Looks at nothing but the function table.
Object* OwnObject(void* face);

/// The first three functions of every object's table.
HRESULT STDMETHODCALLTYPE QueryInterface(BinaryFace* face, REFIID iid, void** out) noexcept;
ULONG STDMETHODCALLTYPE AddRef(BinaryFace* face) noexcept;
ULONG STDMETHODCALLTYPE Release(BinaryFace* face) noexcept;

/// The next four, those of IDispatch.
HRESULT STDMETHODCALLTYPE GetTypeInfoCount(BinaryFace* face, UINT* count) noexcept;
HRESULT STDMETHODCALLTYPE GetTypeInfo(BinaryFace* face, UINT index, LCID locale,
                                      ITypeInfo** info) noexcept;
HRESULT STDMETHODCALLTYPE GetIDsOfNames(BinaryFace* face, REFIID reserved, OLECHAR** names,
                                        UINT count, LCID locale, DISPID* ids) noexcept;
HRESULT STDMETHODCALLTYPE Invoke(BinaryFace* face, DISPID id, REFIID reserved, LCID locale,
                                 WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                 EXCEPINFO* exception, UINT* bad_argument) noexcept;

/// The function table of every enumerator: IUnknown's functions and IEnumVARIANT's.
const void* const* EnumeratorFunctionTable();

template <class Function>
const void* Slot(Function* function) {
  return reinterpret_cast<const void*>(function);
}

inline Object& ObjectOf(BinaryFace* face) { return static_cast<Object&>(*face); }

}  // namespace veldmark::com
