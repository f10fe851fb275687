#include "automation/com/Face.h"

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include "automation/Enumerator.h"
#include "automation/ModuleCount.h"
#include "automation/com/ClassFace.h"
#include "automation/com/ComRef.h"
#include "automation/com/Failure.h"
#include "automation/com/ForeignObject.h"
#include "automation/com/SecondaryFace.h"

namespace veldmark::com {
namespace {

/// The object's face with its function table in place; the table is found at the first need.
BinaryFace& FaceOf(Object& object) {
  if (!object.function_table) {
    object.function_table = dynamic_cast<Enumerator*>(&object)
                                ? EnumeratorFunctionTable()
                                : ClassFace::Of(object.GetInterface()).FunctionTable();
  }
  return object;
}

/// A member's place among the callables; the enumerator has the lowest identifier of all.
std::size_t IndexOf(DISPID id) {
  return static_cast<std::size_t>(std::int64_t{id} - kEnumeratorMember);
}

bool IsEnumerator(const BinaryFace& face) {
  return face.function_table == EnumeratorFunctionTable();
}

}  // namespace

ClassFace::ClassFace(const Interface& class_table)
    : table(class_table), iid(AsIid(class_table.InterfaceIdentity())) {
  slots_ = {this,
            Slot(QueryInterface),
            Slot(AddRef),
            Slot(Release),
            Slot(GetTypeInfoCount),
            Slot(GetTypeInfo),
            Slot(GetIDsOfNames),
            Slot(Invoke)};
  for (const Member& member : table.members) {
    slots_.push_back(Slot(member.thunk));
    const std::size_t index = IndexOf(member.id);
    if (index >= callables_.size()) callables_.resize(index + 1);
    (member.kind == MemberKind::kPut ? callables_[index].put : callables_[index].call) = &member;
  }
}

const ClassFace& ClassFace::Of(const Interface& table) {
  // One for the process, whichever threads ask: function tables depend on nothing of a thread's.
  static std::shared_mutex mutex;
  static std::unordered_map<const Interface*, std::unique_ptr<const ClassFace>> faces;
  {
    const std::shared_lock reading(mutex);
    if (const auto found = faces.find(&table); found != faces.end()) return *found->second;
  }
  auto made = std::make_unique<const ClassFace>(table);
  const std::unique_lock writing(mutex);
  return *faces.try_emplace(&table, std::move(made)).first->second;
}

const Member* ClassFace::Find(DISPID id, WORD flags) const {
  if (id < kEnumeratorMember) return nullptr;
  const std::size_t index = IndexOf(id);
  if (index >= callables_.size()) return nullptr;
  const Callable& callable = callables_[index];
  if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) return callable.put;
  // Engines ask for the enumerator as they please, as a method or as a property.
  if (!callable.call || id == kEnumeratorMember) return callable.call;
  return (static_cast<WORD>(callable.call->kind) & flags) != 0 ? callable.call : nullptr;
}

Object* OwnObject(void* pointer) {
  auto* face = static_cast<BinaryFace*>(pointer);
  return face->function_table[0] == Slot(QueryInterface) ? &ObjectOf(face) : nullptr;
}

HRESULT STDMETHODCALLTYPE QueryInterface(BinaryFace* face, REFIID iid, void** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  const bool main = iid == IID_IUnknown ||
                    (IsEnumerator(*face) ? iid == IID_IEnumVARIANT
                                         : iid == IID_IDispatch || iid == ClassFace::Of(*face).iid);
  if (main) {
    *out = face;
    AddRef(face);
    return S_OK;
  }
  if (IsEnumerator(*face)) return E_NOINTERFACE;
  return SecondaryFace::Query(ObjectOf(face), iid, out);
}

ULONG STDMETHODCALLTYPE AddRef(BinaryFace* face) noexcept {
  Object& object = ObjectOf(face);
  if (object.external_references == 0) HoldModule();
  object.AddReference();
  return ++object.external_references;
}

ULONG STDMETHODCALLTYPE Release(BinaryFace* face) noexcept {
  Object& object = ObjectOf(face);
  if (object.external_references == 0) return 0;  // one Release too many must not take ours
  const ULONG left = --object.external_references;
  object.ReleaseReference();
  if (left == 0) ReleaseModule();
  return left;
}

std::int32_t QueryObject(Object& object, const Identity& interface_identity, void** out) noexcept {
  try {
    return QueryInterface(&FaceOf(object), AsIid(interface_identity), out);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

std::int32_t ReportError(const AutomationError& error,
                         const Identity& interface_identity) noexcept {
  return ReportError(error, AsIid(interface_identity));
}

bool IsDispatch(const Object* object) {
  if (!object) return true;
  if (object->function_table) return !IsEnumerator(*object);
  if (const auto* foreign = dynamic_cast<const ForeignObject*>(object)) return foreign->Dispatch();
  return !dynamic_cast<const Enumerator*>(object);
}

abi::RawObject HandOutAny(Object* object) {
  if (!object) return nullptr;
  if (!object->function_table) {
    if (auto* foreign = dynamic_cast<ForeignObject*>(object)) return foreign->HandOut();
  }
  BinaryFace& face = FaceOf(*object);
  AddRef(&face);
  return &face;
}

ExternalReference::ExternalReference(Object& object) : object_(&object) { AddRef(&FaceOf(object)); }
ExternalReference::~ExternalReference() { Release(object_); }

}  // namespace veldmark::com

namespace veldmark::abi {

RawObject HandOutObject(Object* object) {
  if (auto* foreign =
          object && !object->function_table ? dynamic_cast<com::ForeignObject*>(object) : nullptr) {
    if (!foreign->Dispatch()) Raise(430);
  }
  return com::HandOutAny(object);
}

void FreeObject(RawObject object) noexcept {
  if (object) static_cast<IUnknown*>(object)->Release();
}

Ref<Object> Read(RawObject raw) {
  if (!raw) return nullptr;
  if (Object* own = com::OwnObject(raw)) return own;
  // A secondary interface of ours leads to the object by its identity.
  com::ComRef<IUnknown> identity;
  if (SUCCEEDED(static_cast<IUnknown*>(raw)->QueryInterface(
          IID_IUnknown, reinterpret_cast<void**>(identity.Receive())))) {
    if (Object* own = com::OwnObject(identity.Get())) return own;
  }
  return Make<com::ForeignObject>(static_cast<IUnknown*>(raw));
}

}  // namespace veldmark::abi
