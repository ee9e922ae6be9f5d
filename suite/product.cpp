#include "suite/product.h"

namespace zimbrat::suite {

std::u16string_view ProductTitle() { return ZIMBRAT_TITLE; }

std::u16string_view MessageTitle() { return u"Zimbrat bazy"; }

std::u16string_view ProductVersion() { return ZIMBRAT_VERSION; }

std::u16string_view SupportAddress() { return ZIMBRAT_SUPPORT; }

}  // namespace zimbrat::suite
