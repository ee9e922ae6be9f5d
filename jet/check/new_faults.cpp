#include "jet/check/new_faults.h"

#include <map>
#include <string>

namespace zimbrat::jet {

namespace {

enum class Likeness { SameWords, OtherNumbers, OtherNames };

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// What two errors that are alike have in common. Numbers within names are part of the name.
std::u16string KindOf(const Fault& fault, Likeness likeness) {
  const std::u16string words = fault.place + u": " + fault.text;
  if (likeness == Likeness::SameWords) return words;
  std::u16string kind;
  bool isInName = false;
  for (const char16_t c : words) {
    if (c == u'”') isInName = false;
    if (isInName) {
      if (likeness != Likeness::OtherNames) kind += c;
    } else if (!IsDigit(c)) {
      kind += c;
    } else if (!kind.ends_with(u'#')) {
      kind += u'#';
    }
    if (c == u'„') isInName = true;
  }
  return kind;
}

using Errors = std::vector<const Fault*>;

Errors ErrorsOf(const std::vector<Fault>& faults) {
  Errors errors;
  for (const Fault& fault : faults) {
    if (fault.isError) errors.push_back(&fault);
  }
  return errors;
}

// Takes the pairs out of both. What is left of `errors` stays in its order.
void RemovePairs(Errors& errors, Errors& former, Likeness likeness) {
  std::multimap<std::u16string, const Fault*> left;
  for (const Fault* fault : former) left.emplace(KindOf(*fault, likeness), fault);
  std::erase_if(errors, [&](const Fault* fault) {
    const auto pair = left.find(KindOf(*fault, likeness));
    if (pair == left.end()) return false;
    left.erase(pair);
    return true;
  });
  former.clear();
  for (const auto& [kind, fault] : left) former.push_back(fault);
}

}  // namespace

std::vector<Fault> NewFaults(const std::vector<Fault>& faults, const std::vector<Fault>& former) {
  Errors errors = ErrorsOf(faults);
  Errors left = ErrorsOf(former);
  for (const Likeness likeness :
       {Likeness::SameWords, Likeness::OtherNumbers, Likeness::OtherNames}) {
    RemovePairs(errors, left, likeness);
  }
  std::vector<Fault> found;
  for (const Fault* fault : errors) found.push_back(*fault);
  return found;
}

}  // namespace zimbrat::jet
