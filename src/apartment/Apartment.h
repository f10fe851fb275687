#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "apartment/Counters.h"
#include "automation/Error.h"
#include "automation/ModuleCount.h"
#include "automation/Object.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Platform.h"

namespace veldmark {

class CGroups;
class CStatus;
class CSupport;
class CTimer;
class Collection;

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

  bool debug = false;
  Ref<CSupport> engine;
  Ref<CStatus> status;
  Ref<Collection> sid_cache;
  Ref<Collection> account_cache;
  Ref<Collection> pdc_cache;
  Ref<Collection> server_cache;
  Ref<Collection> domain_cache;
  /// By key a text of module handles, of `message_files`; freed ones stay in it.
  Ref<Collection> message_modules;
  Ref<Collection> category_texts;
  Ref<Collection> machine_paths;
  Ref<CGroups> well_known_groups;
  Ref<CTimer> timer;
  /// The platform timers that run for this thread, those too whose identifier no `CTimer` knows any
  /// more. They end with the apartment, and till then the library stays loaded: a timer calls into
  /// it.
  std::vector<std::pair<UINT_PTR, std::unique_ptr<ModuleHold>>> running_timers;
  /// The message files that are loaded, one entry a load.
  std::vector<Module> message_files;
  /// What the texts in `message_modules` say, read already (see eventlog/EventMessages.cpp).
  Ref<ReferenceCounted> known_modules;
  /// Room for a message, kept from one look-up to the next.
  std::unique_ptr<char16_t[]> message_buffer;
  Ref<Object> guid_resolver;

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
