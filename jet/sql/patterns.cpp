// Like and ALike.
#include <unordered_map>
#include <vector>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "platform/text.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

constexpr std::size_t kMaxSteps = 20'000'000;

// "[a-z]" without its brackets. Ranges follow the sort order: "ł" lies between "a" and "z".
class CharacterList {
 public:
  explicit CharacterList(std::u16string_view list) : list_(list) {
    negated_ = list_.size() > 1 && list_.front() == u'!';
    if (negated_) list_.remove_prefix(1);
  }

  // The sort order is slow to ask, and texts repeat their characters.
  bool Has(char16_t unit) {
    const auto [place, isNew] = known_.try_emplace(unit, false);
    if (isNew) place->second = Search(unit) != negated_;
    return place->second;
  }

 private:
  bool Search(char16_t unit) const {
    const std::u16string_view own(&unit, 1);
    for (std::size_t i = 0; i < list_.size(); ++i) {
      const bool range = i + 2 < list_.size() && list_[i + 1] == u'-';
      const std::u16string_view low = list_.substr(i, 1);
      const std::u16string_view high = range ? list_.substr(i + 2, 1) : low;
      if (unit == low[0] || unit == high[0]) return true;
      if (CompareText(own, low) >= 0 && CompareText(own, high) <= 0) return true;
      if (range) i += 2;
    }
    return false;
  }

  std::u16string_view list_;
  bool negated_ = false;
  std::unordered_map<char16_t, bool> known_;
};

struct Element {
  enum class Kind { Run, One, Digit, Unit, List };
  Kind kind = Kind::Unit;
  char16_t unit = 0;     // Unit, as a capital
  std::size_t list = 0;  // List: which
};

class Pattern {
 public:
  Pattern(std::u16string_view text, const Wildcards& wildcards) {
    for (std::size_t at = 0; at < text.size();) Add(text, at, wildcards);
  }

  // Goes back to the last run only: what stood before it has matched as early as it can.
  bool Matches(std::u16string_view text) {
    std::size_t t = 0, p = 0, afterRun = 0, runText = 0, steps = 0;
    bool sawRun = false;
    while (t < text.size()) {
      if (++steps > kMaxSteps) Raise(platform::kErrQueryExpression, u"Wyrażenie jest zbyt złożone", u"Like");
      if (p < elements_.size() && elements_[p].kind == Element::Kind::Run) {
        sawRun = true;
        afterRun = ++p;
        runText = t;
      } else if (p < elements_.size() && Fits(elements_[p], text[t])) {
        ++p;
        ++t;
      } else if (sawRun && afterRun == elements_.size()) {
        return true;
      } else if (sawRun) {
        p = afterRun;
        t = ++runText;
      } else {
        return false;
      }
    }
    while (p < elements_.size() && elements_[p].kind == Element::Kind::Run) ++p;
    return p == elements_.size();
  }

 private:
  // A bracket that does not close stands for itself; "[]" stands for nothing.
  void Add(std::u16string_view text, std::size_t& at, const Wildcards& wildcards) {
    const char16_t unit = text[at++];
    if (unit == wildcards.run) {
      elements_.push_back({Element::Kind::Run});
    } else if (unit == wildcards.one) {
      elements_.push_back({Element::Kind::One});
    } else if (unit == wildcards.digit && unit != u'\0') {
      elements_.push_back({Element::Kind::Digit});
    } else if (const std::size_t close = unit == u'[' ? text.find(u']', at) : text.npos; close != text.npos) {
      if (close > at) {
        elements_.push_back({Element::Kind::List, 0, lists_.size()});
        lists_.emplace_back(text.substr(at, close - at));
      }
      at = close + 1;
    } else {
      elements_.push_back({Element::Kind::Unit, platform::UpperCase(unit)});
    }
  }

  bool Fits(const Element& element, char16_t unit) {
    switch (element.kind) {
      case Element::Kind::Digit: return unit >= u'0' && unit <= u'9';
      case Element::Kind::Unit: return element.unit == platform::UpperCase(unit);
      case Element::Kind::List: return lists_[element.list].Has(unit);
      default: return true;
    }
  }

  std::vector<Element> elements_;
  std::vector<CharacterList> lists_;
};

}  // namespace

bool MatchesPattern(std::u16string_view text, std::u16string_view pattern, const Wildcards& wildcards) {
  return Pattern(pattern, wildcards).Matches(text);
}

}  // namespace zimbrat::jet
