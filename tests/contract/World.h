#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/operations/Platform.h"

namespace veldmark {

// Published behaviours that a world may be unable to show.
enum class Trait {
  ShortNames,         // files get 8.3 names, and find by them
  NtfsOrder,          // listings come in the order of upper-cased names
  AccessChecks,       // read-only folders, denied folders
  PublishedTexts,     // the system's English message texts
  NetworkMessages,    // netmsg.dll and its texts
  RemoteComputers,    // another computer is there, or is known to be missing
  FolderTimes,        // a folder's time of last write follows its entries
  InvalidCharacters,  // names with characters that names can't have are refused
  LongComponents,     // names over 255 characters are refused as published
  SystemFileGuard,    // hidden and system files are not replaced unknowingly
  DeletedKeys,        // handles to deleted keys answer 1018
  RemoveOpenFolder,   // a folder with an open handle stays
};

// A platform to hold against the operations' contracts, with room to work in.
class World {
 public:
  virtual ~World() = default;

  virtual Platform platform() = 0;

  // An empty folder on a local drive, as a full plain path without a trailing "\" and at most 60
  // characters long. The world removes it with whatever is in it.
  virtual const std::u16string& scratch() const = 0;

  // The path of an empty key below kHkeyCurrentUser, removed with whatever is in it.
  virtual const std::u16string& scratch_key() const = 0;

  // Lets time pass, by waiting or by moving the clock, without a turn of the message loop.
  virtual void LetPass(unsigned milliseconds) = 0;

  // Null if the world shows this behaviour, else the reason why not.
  virtual const char* WhyNot(Trait trait) const = 0;
};

using WorldFactory = std::unique_ptr<World> (*)();

// Every contract test runs once in each world. A world's source brings its world in by
// `INSTANTIATE_TEST_SUITE_P(Name, Contract, testing::Values(&MakeThatWorld));`.
class Contract : public testing::TestWithParam<WorldFactory> {
 protected:
  Contract()
      : world_(GetParam()()),
        platform_(world_->platform()),
        files_(platform_.files),
        registry_(platform_.registry) {}

  // The scratch folder's path, followed by `rest`.
  std::u16string In(std::u16string_view rest) const {
    return world_->scratch() + std::u16string(rest);
  }

  std::unique_ptr<World> world_;
  Platform platform_;
  FileSystem& files_;
  Registry& registry_;
};

}  // namespace veldmark
