#pragma once

#include "platform/operations/Platform.h"
#include "platform/simulated/families/Session.h"
#include "platform/simulated/families/SimulatedAccountManagement.h"
#include "platform/simulated/families/SimulatedEventLog.h"
#include "platform/simulated/families/SimulatedFileSystem.h"
#include "platform/simulated/families/SimulatedLocalSecurityAuthority.h"
#include "platform/simulated/families/SimulatedMessages.h"
#include "platform/simulated/families/SimulatedMultimedia.h"
#include "platform/simulated/families/SimulatedNetworkManagement.h"
#include "platform/simulated/families/SimulatedNetworkProvider.h"
#include "platform/simulated/families/SimulatedPrinting.h"
#include "platform/simulated/families/SimulatedRegistry.h"
#include "platform/simulated/families/SimulatedSecurity.h"
#include "platform/simulated/families/SimulatedServiceControl.h"
#include "platform/simulated/families/SimulatedSockets.h"
#include "platform/simulated/families/SimulatedSystem.h"
#include "platform/simulated/families/SimulatedTaskScheduler.h"
#include "platform/simulated/families/SimulatedTimers.h"
#include "platform/simulated/families/SimulatedVersionInformation.h"

namespace veldmark::simulated {

// All families over one estate, with the estate's books. The families serve one thread at a time,
// in turn; estate and books are for whoever knows that no other thread is at work.
class SimulatedPlatform {
 public:
  // Timers are the estate's, on its clock, or `host_timers`, which outlive this.
  explicit SimulatedPlatform(Estate estate = Estate(), Timers* host_timers = nullptr)
      : session_(std::move(estate)), host_timers_(host_timers) {}
  SimulatedPlatform(const SimulatedPlatform&) = delete;
  SimulatedPlatform& operator=(const SimulatedPlatform&) = delete;

  Platform platform() {
    return {files_,
            network_provider_,
            messages_,
            registry_,
            system_,
            host_timers_ == nullptr ? timers_ : *host_timers_,
            security_,
            network_management_,
            version_information_,
            multimedia_,
            accounts_,
            authority_,
            sockets_,
            services_,
            printers_,
            event_logs_,
            tasks_};
  }

  Session& session() { return session_; }
  SimulatedSecurity& security() { return security_; }
  Estate& estate() { return session_.estate; }
  Ledger& ledger() { return session_.ledger; }
  Journal& journal() { return session_.journal; }
  FaultHook& faults() { return session_.faults; }

 private:
  Session session_;
  Timers* const host_timers_;
  SimulatedFileSystem files_{session_};
  SimulatedNetworkProvider network_provider_{session_};
  SimulatedMessages messages_{session_};
  SimulatedRegistry registry_{session_};
  SimulatedSystem system_{session_};
  SimulatedTimers timers_{session_};
  SimulatedSecurity security_{session_};
  SimulatedNetworkManagement network_management_{session_};
  SimulatedVersionInformation version_information_{session_};
  SimulatedMultimedia multimedia_{session_};
  SimulatedAccountManagement accounts_{session_};
  SimulatedLocalSecurityAuthority authority_{session_};
  SimulatedSockets sockets_{session_};
  SimulatedServiceControl services_{session_};
  SimulatedPrinting printers_{session_};
  SimulatedEventLog event_logs_{session_};
  SimulatedTaskScheduler tasks_{session_};
};

}  // namespace veldmark::simulated
