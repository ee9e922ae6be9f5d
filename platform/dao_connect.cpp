#include "platform/dao_connect.h"

namespace zimbrat::dao {

platform::Secret ConnectText(std::u16string_view password) {
  platform::Secret connect(u";pwd=");
  connect.Append(password);
  connect.Append(u";");
  return connect;
}

}  // namespace zimbrat::dao
