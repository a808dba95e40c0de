// How a document is locked, with the host's values.
#pragma once

namespace cad::app {

enum class LockMode {
    None = 0x00,
    AutoWrite = 0x01,
    NotLocked = 0x02,
    Write = 0x04,
    ProtectedAutoWrite = 0x14,
    Read = 0x20,
    XWrite = 0x40,  // exclusive: no other lock of any kind
};

}  // namespace cad::app
