#pragma once

#include <string>
#include <string_view>

namespace marisonde::simulator {

/// What a receiver set to `receiverBaud` makes of bytes sent at `senderBaud`: the bytes themselves when both
/// agree within 3 %, else the garbage that comes of looking for start bits and sampling at its own pace.
std::string SeenAtRate(std::string_view bytes, int senderBaud, int receiverBaud);

}  // namespace marisonde::simulator
