// Insert strings out of event records: walked for references and for parameters. Whatever stands in
// them, nothing but the documented errors may be raised, and a message may hold any of it.

#include "FuzzTarget.h"
#include "apartment/Conversions.h"
#include "collections/Collection.h"
#include "eventlog/EventMessages.h"
#include "eventlog/InsertStrings.h"
#include "eventlog/MessageModules.h"

namespace {

using namespace veldmark;

simulated::Estate Described() {
  simulated::Estate estate;
  estate.local().AddFile(u"C:\\t.dll").Messages({{1, u"%1 %2!40s! %99!*.*s!"}, {5, u"five"}});
  estate.local()
      .local_machine()
      .Key(u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\App")
      .String(u"EventMessageFile", u"C:\\t.dll")
      .String(u"ParameterMessageFile", u"C:\\t.dll");
  return estate;
}

template <class Action>
void Try(Action&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    Require(error.number != runtime_error::kInternalError);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world(Described());
  static const MessageSource source{u"LOCALHOST", u"System", u"App"};
  Apartment& apartment = Apartment::Current();
  // A number that the file lacks frees it.
  apartment.message_files.clear();
  apartment.known_modules = nullptr;
  apartment.message_modules = Make<Collection>();
  for (const Text& form : {ByteArrayToString({data, size}), Text(data, data + size)}) {
    Try([&] { ResolveInsertString(form, source.server); });
    Try([&] { GetParameterMessage(source, form); });
    Text raw;
    Try([&] { GetEventMessage(source, 1, {}, std::vector{form, form}, raw); });
  }
  world.simulated.journal().Clear();
  return 0;
}
