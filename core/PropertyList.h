// Property lists as settings: a dictionary in a file, read whole, changed, written back whole.
#pragma once

#include "core/PropertyListNode.h"
#include "core/Text.h"

#include <string>
#include <utility>

// A dictionary read from a file, XML or binary. Move-only; one thread at a time.
class PropertyList {
 public:
  // Absent when the file is missing, no property list, no dictionary, or too large or too deep to be a
  // settings file (PropertyListBounds.h).
  static std::optional<PropertyList> initWithContentsOfFile(const std::string& path);

  // Absent when there is no such key or its value is no valid UTF-8 string.
  MaybeText objectForKey(const std::string& key) const;

  // A value that no property list can hold (control characters, no UTF-8) removes the key: an old value that
  // stays would be acted on as if it had been set.
  void setObject(const std::string& value, const std::string& key);
  void removeObjectForKey(const std::string& key);

  // Writes XML over the file at `path`, whatever form was read. False when the file stayed as it was.
  bool writeToFile(const std::string& path) const;

 private:
  explicit PropertyList(PropertyListNode dictionary) : dictionary_(std::move(dictionary)) {}

  PropertyListNode dictionary_;
};

// One value of the dictionary in the file; absent as objectForKey says, or when the file cannot be read.
MaybeText propertyListValue(const std::string& path, const std::string& key);

// Reads the file, sets or removes one key, writes it back. Silently nothing when the file cannot be read: the
// shipped files must exist, none is made here.
void setPropertyListValue(const std::string& path, const std::string& key, const std::string& value);
void removePropertyListValue(const std::string& path, const std::string& key);
