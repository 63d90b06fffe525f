// What stands on the instance's socket: a message, and the number back as the receipt.
//   "TESS" u32 number, u64 wParam, i64 lParam, u32 length of the token, token
// in the machine's own byte order: both ends are on one machine.
#pragma once
#include "desktop/instance.h"

#include <optional>

constexpr int kWireHeader = 28;
constexpr quint32 kWireMaxToken = 4096; // far above any desktop's

QByteArray EncodeMessage(const CInstanceMessage& message);
enum class WireState { Incomplete, Complete, Malformed };
// Takes one message off the front of `bytes`.
WireState DecodeMessage(QByteArray& bytes, CInstanceMessage& message);

// Opens a stream socket with the address of that name; -1 on failure. `Use` is bind or connect.
enum class SocketUse { Bind, Connect };
int OpenInstanceSocket(const QByteArray& name, SocketUse use);
bool IsOwnPeer(int socket); // the process at the other end runs as the same user
