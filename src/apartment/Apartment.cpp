#include "apartment/Apartment.h"

#include <memory>

#include "accounts/CGroups.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/CTimer.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "automation/ThreadSlot.h"
#include "collections/Collection.h"
#include "registry/CRegSettings.h"
#include "security/WellKnownGroups.h"

namespace veldmark {
namespace {

constexpr TextView kSettingsPath = u"SOFTWARE\\Quillmoss\\Veldmark2";

}  // namespace

Apartment::Apartment(Platform& apartment_platform) : platform(apartment_platform) {}

Apartment::~Apartment() = default;

Apartment* Apartment::TryCurrent() noexcept { return static_cast<Apartment*>(thread_slot::Get()); }

Apartment& Apartment::Current() { return *TryCurrent(); }

Apartment& Apartment::Start(Platform& platform) {
  if (Apartment* running = TryCurrent()) return *running;
  auto apartment = std::make_unique<Apartment>(platform);
  // The start-up routine creates objects, which ask for their apartment.
  thread_slot::Put(apartment.get(), [](void*) { End(); });
  ErrObject::Attach(&apartment->err);
  apartment->RunStartUp();
  return *apartment.release();
}

void Apartment::End() noexcept {
  const std::unique_ptr<Apartment> apartment(TryCurrent());
  if (!apartment) return;
  apartment->ReleaseState();
  ErrObject::Attach(nullptr);
  thread_slot::Clear();
}

void Apartment::RunStartUp() {
  debug = false;
  Swallow([this] {
    CRegSettings settings;
    settings.HKeyRoot = static_cast<std::int32_t>(0x80000002);
    settings.Path = kSettingsPath;
    debug = ToBoolean(settings.GetString(u"Config", u"Debug", u"False"));
  });
  err.Clear();
  Swallow([this] { engine = Make<CSupport>(); });
  Swallow([this] { status = Make<CStatus>(); });
  for (Ref<Collection>* cache :
       {&sid_cache, &account_cache, &pdc_cache, &server_cache, &domain_cache, &message_modules,
        &category_texts, &machine_paths}) {
    Swallow([cache] { *cache = Make<Collection>(); });
  }
  Swallow([this] { well_known_groups = BuildWellKnownGroups(); });
  err.Clear();
}

void Apartment::ReleaseState() noexcept {
  // While an object ends it may still ask for its apartment, so each reference is emptied before
  // its object goes.
  guid_resolver = nullptr;
  message_files.clear();
  known_modules = nullptr;
  timer = nullptr;
  for (const auto& [id, hold] : running_timers) platform.timers.KillTimer(nullptr, id);
  running_timers.clear();
  well_known_groups = nullptr;
  for (Ref<Collection>* cache : {&machine_paths, &category_texts, &message_modules, &domain_cache,
                                 &server_cache, &pdc_cache, &account_cache, &sid_cache}) {
    *cache = nullptr;
  }
  status = nullptr;
  engine = nullptr;
}

CSupport& Engine() {
  const Ref<CSupport>& engine = Apartment::Current().engine;
  if (!engine) Raise(runtime_error::kObjectNotSet);
  return *engine;
}

CStatus& StatusObject() {
  const Ref<CStatus>& status = Apartment::Current().status;
  if (!status) Raise(runtime_error::kObjectNotSet);
  return *status;
}

}  // namespace veldmark
