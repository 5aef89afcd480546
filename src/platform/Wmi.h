// WMI as the scripting objects present it: a service bound from a moniker, its queries, the
// objects of a result and their properties read by name.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tamrix {

// What WMI's scripting objects hand over for a property: Null, a Boolean, a whole number, a
// double, a text or an array (indexed from 0; its upper bound is its size less one).
struct WmiValue {
  enum class Type { Empty, Null, Boolean, Integer, Double, Text, Array };
  Type type = Type::Empty;
  bool boolean = false;
  std::int64_t integer = 0;
  double number = 0;
  std::string text;
  std::vector<WmiValue> items;
};

// One object of a WMI result. Get reads a property by name, as the scripting objects do: a name
// the object doesn't have raises run-time error 438.
class WmiObject {
 public:
  virtual ~WmiObject() = default;
  virtual WmiValue Get(const std::string& name) = 0;
};
using WmiObjects = std::vector<std::shared_ptr<WmiObject>>;

// A collection walked one object at a time, as a For Each over it fetches them: Next gives the
// next object, or null after the last; a fetch that fails raises a run-time error, and the
// objects fetched before it stand.
class WmiCollection {
 public:
  virtual ~WmiCollection() = default;
  virtual std::shared_ptr<WmiObject> Next() = 0;
};

// A WMI service bound from a moniker. A query that fails raises a run-time error.
class WmiService {
 public:
  virtual ~WmiService() = default;
  virtual WmiObjects ExecQuery(const std::string& query) = 0;
  virtual std::shared_ptr<WmiCollection> InstancesOf(const std::string& className) = 0;
};

}  // namespace tamrix
