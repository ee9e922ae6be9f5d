// Objects of other programs, driven late bound, by the names of their members (OLE automation). Where there
// is no automation nothing can be created, as the class answers itself.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zimbrat::platform {

using AutomationArgument = std::variant<std::int32_t, std::u16string>;

// All raise the error that the object raises; 438 for a name that it does not know.
class AutomationObject {
 public:
  virtual ~AutomationObject() = default;
  virtual void Put(std::u16string_view property, std::u16string_view text) = 0;
  // Calls the method, or asks for the property, of that name: the object that it gives, null for none.
  virtual std::unique_ptr<AutomationObject> Call(std::u16string_view member,
                                                 const std::vector<AutomationArgument>& arguments) = 0;
};

class Automation {
 public:
  virtual ~Automation() = default;
  // A new object of a registered class, never null. Error 429 when it cannot be made.
  virtual std::unique_ptr<AutomationObject> Create(std::u16string_view programId);
};

}  // namespace zimbrat::platform
