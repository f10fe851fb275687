// Insert strings out of event records: walked for references and for parameters. Whatever stands in
// them, nothing but the documented errors may be raised, and a message may hold any of it.

#include <cstdlib>
#include <cstring>

#include "apartment/Apartment.h"
#include "collections/Collection.h"
#include "eventlog/EventMessages.h"
#include "eventlog/InsertStrings.h"
#include "eventlog/MessageModules.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace {

using namespace veldmark;

template <class Action>
void Try(Action&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    if (error.number == runtime_error::kInternalError) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static simulated::SimulatedPlatform simulated;
  static Platform platform = simulated.platform();
  static const MessageSource source{u"LOCALHOST", u"System", u"App"};
  if (!Apartment::TryCurrent()) {
    simulated.estate()
        .local()
        .AddFile(u"C:\\t.dll")
        .Messages({{1, u"%1 %2!40s! %99!*.*s!"}, {5, u"five"}});
    simulated.estate()
        .local()
        .local_machine()
        .Key(u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\App")
        .String(u"EventMessageFile", u"C:\\t.dll")
        .String(u"ParameterMessageFile", u"C:\\t.dll");
  }
  Apartment& apartment = Apartment::Start(platform);
  // A number that the file lacks frees it.
  apartment.message_files.clear();
  apartment.known_modules.clear();
  apartment.message_modules = Make<Collection>();
  Text text(size / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
  for (const Text& form : {text, Text(data, data + size)}) {
    Try([&] { ResolveInsertString(form, source.server); });
    Try([&] { GetParameterMessage(source, form); });
    Text raw;
    Try([&] { GetEventMessage(source, 1, {}, std::vector{form, form}, raw); });
  }
  simulated.journal().Clear();
  return 0;
}
