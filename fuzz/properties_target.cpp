// The properties of a table and its fields, as the catalogue keeps them.
#include "jet/catalog/properties.h"
#include "jet/table/definition.h"
#include "outcome.h"
#include "targets.h"

namespace zimbrat::fuzz {

void DecodeProperties(Input input) {
  jet::PropertyBlob blob;
  if (!Attempt([&] { blob = jet::PropertyBlob::Decode(std::as_bytes(input)); })) return;
  blob.FindText(u"Nazwa", u"DefaultValue");
  blob.FindBoolean({}, u"Required");
  if (!Attempt([&] {
        blob.PutText(u"Nazwa", u"ValidationRule", jet::kTypeMemo, u">0");
        blob.PutBoolean(u"Nazwa", u"Required", true);
        blob.RenameColumn(u"Nazwa", u"Nowa");
      })) {
    return;
  }
  std::vector<std::byte> encoded;
  if (!Attempt([&] { encoded = blob.Encode(); })) return;
  jet::PropertyBlob again;
  Require(Attempt([&] { again = jet::PropertyBlob::Decode(encoded); }), "properties that were written are unreadable");
  Require(again.FindText(u"Nowa", u"ValidationRule") == u">0" && again.FindBoolean(u"Nowa", u"Required"),
          "a property was lost");
  Require(again.Encode() == encoded, "properties change when they are written again");
}

}  // namespace zimbrat::fuzz
