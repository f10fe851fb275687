#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "apartment/Counters.h"
#include "automation/Error.h"
#include "automation/ModuleCount.h"
#include "automation/Object.h"
#include "collections/Collection.h"
#include "platform/operations/Platform.h"

namespace veldmark {

class CGroups;
class CStatus;
class CSupport;
class CTimer;

/// The module state of one apartment: what the library keeps for a thread that uses it. The
/// start-up routine makes it before the thread's first object; it ends with the thread.
class Apartment {
 public:
  /// The calling thread's apartment. There must be one.
  static Apartment& Current();
  /// The same, or null where the thread has none.
  static Apartment* TryCurrent() noexcept;
  /// Runs the start-up routine on the calling thread unless it has an apartment already. Nothing in
  /// it can fail: what can't be created stays Nothing. Raises 7 where the thread has no room for an
  /// apartment.
  static Apartment& Start(Platform& platform);
  /// Ends the calling thread's apartment, its engine and caches with it.
  static void End() noexcept;

  explicit Apartment(Platform& platform);
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment();

  Platform& platform;
  ErrObject err;
  Counters counters;

  bool g_bDebug = false;
  Ref<CSupport> g_oSupport;
  Ref<CStatus> g_oStatus;
  Ref<Collection> g_colSidCache;
  Ref<Collection> g_colAccountCache;
  Ref<Collection> g_colPDCs;
  Ref<Collection> g_colServers;
  Ref<Collection> g_colDomains;
  Ref<Collection> g_colMessageModules;
  Ref<Collection> g_colCategoryTexts;
  Ref<Collection> g_colMachinePaths;
  Ref<CGroups> g_oWellKnownGroups;
  Ref<CTimer> g_oTimer;
  /// The platform timers that run for this thread, those too whose identifier no `CTimer` knows any
  /// more. They end with the apartment, and till then the library stays loaded: a timer calls into
  /// it.
  std::vector<std::pair<UINT_PTR, std::unique_ptr<ModuleHold>>> running_timers;
  Ref<Object> g_oGuidResolver;

 private:
  void RunStartUp();
  void ReleaseState() noexcept;
};

/// The apartment's error object.
inline ErrObject& Err() { return Apartment::Current().err; }
/// The apartment's engine; raises 91 where start-up could not create it.
CSupport& Engine();
/// The apartment's status object; raises 91 where start-up could not create it.
CStatus& StatusObject();

}  // namespace veldmark
