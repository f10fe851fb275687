#include "apartment/Apartment.h"

#include <memory>

#include "accounts/CGroups.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/CTimer.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "automation/ThreadSlot.h"
#include "registry/CRegSettings.h"

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
  g_bDebug = false;
  Swallow([this] {
    CRegSettings settings;
    settings.HKeyRoot = static_cast<std::int32_t>(0x80000002);
    settings.Path = kSettingsPath;
    g_bDebug = ToBoolean(settings.GetString(u"Config", u"Debug", u"False"));
  });
  err.Clear();
  Swallow([this] { g_oSupport = Make<CSupport>(); });
  Swallow([this] { g_oStatus = Make<CStatus>(); });
  for (Ref<Collection>* cache :
       {&g_colSidCache, &g_colAccountCache, &g_colPDCs, &g_colServers, &g_colDomains,
        &g_colMessageModules, &g_colCategoryTexts, &g_colMachinePaths}) {
    Swallow([cache] { *cache = Make<Collection>(); });
  }
  err.Clear();
}

void Apartment::ReleaseState() noexcept {
  // While an object ends it may still ask for its apartment, so each reference is emptied before
  // its object goes.
  g_oGuidResolver = nullptr;
  g_oTimer = nullptr;
  for (const auto& timer : running_timers) platform.timers.KillTimer(nullptr, timer.first);
  running_timers.clear();
  g_oWellKnownGroups = nullptr;
  for (Ref<Collection>* cache :
       {&g_colMachinePaths, &g_colCategoryTexts, &g_colMessageModules, &g_colDomains, &g_colServers,
        &g_colPDCs, &g_colAccountCache, &g_colSidCache}) {
    *cache = nullptr;
  }
  g_oStatus = nullptr;
  g_oSupport = nullptr;
}

CSupport& Engine() {
  const Ref<CSupport>& engine = Apartment::Current().g_oSupport;
  if (!engine) Raise(runtime_error::kObjectNotSet);
  return *engine;
}

CStatus& StatusObject() {
  const Ref<CStatus>& status = Apartment::Current().g_oStatus;
  if (!status) Raise(runtime_error::kObjectNotSet);
  return *status;
}

}  // namespace veldmark
