#pragma once
// Every byte value of the keyboard's configuration protocol, in one place.
//
// All traffic is feature report 4, 64 bytes. A command frame carries the
// report id in byte 0; a data report that follows a header is pure payload.

#include <cstddef>
#include <cstdint>

namespace Protocol {

inline constexpr uint8_t kReportId = 0x04;
inline constexpr std::size_t kReportSize = 64;
// Callers build single reports in 65-byte buffers; byte 64 is never sent.
inline constexpr std::size_t kFrameBufferSize = 65;

// ---- Command bytes (byte 1 of a frame) ------------------------------------
enum class Command : uint8_t {
    // Session framing
    BeginUpload = 0x18,    // opens every upload but the macro store
    BeginMacro = 0x19,     // opens the macro store upload
    EndUpload = 0x02,      // closes an upload, and closes a status poll
    ApplyLight = 0xF0,     // follows EndUpload on light uploads

    // Headers announcing data reports (target in byte 2, count in byte 8)
    KeyTable = 0x11,       // profile, 9 reports
    LightMode = 0x13,      // profile, 1 report
    MacroData = 0x15,      // 0, n reports
    SystemSet = 0x17,      // profile, 1 report
    UserLightData = 0x23,  // 128 + slot, 9 reports

    // Status
    ReadStatus = 0x30,     // reply byte 9: active profile
};

// True for the ten command bytes above; anything else in byte 1 of a frame
// is a command the keyboard does not know.
constexpr bool isKnownCommand(uint8_t byte)
{
    switch (static_cast<Command>(byte)) {
    case Command::BeginUpload:
    case Command::BeginMacro:
    case Command::EndUpload:
    case Command::ApplyLight:
    case Command::KeyTable:
    case Command::LightMode:
    case Command::MacroData:
    case Command::SystemSet:
    case Command::UserLightData:
    case Command::ReadStatus:
        return true;
    }
    return false;
}

// ---- Frame offsets ---------------------------------------------------------
namespace Offset {
inline constexpr std::size_t ReportId = 0;
inline constexpr std::size_t Command = 1;
inline constexpr std::size_t Target = 2;
inline constexpr std::size_t ReplyStatus = 3;   // in replies
inline constexpr std::size_t ReplyChecksumLo = 4; // in the reply to EndUpload
inline constexpr std::size_t ReplyChecksumHi = 5;
inline constexpr std::size_t DataCount = 8;
inline constexpr std::size_t ReplyProfile = 9;  // in the reply to ReadStatus
}  // namespace Offset

// ---- Reply status (byte 3 of a reply) -------------------------------------
inline constexpr uint8_t kReplyOk = 0x01;
inline constexpr uint8_t kReplyRepeat = 0xFF;  // the device wants the frame again

// ---- Targets ---------------------------------------------------------------
inline constexpr uint8_t kUserLightTargetBase = 0x80;  // + slot number

// ---- Data blocks -----------------------------------------------------------
inline constexpr uint8_t kEndMarker0 = 0xAA;
inline constexpr uint8_t kEndMarker1 = 0x55;

inline constexpr std::size_t kKeyTableReports = 9;
inline constexpr std::size_t kKeyTableBytes = kKeyTableReports * kReportSize;  // 576
inline constexpr std::size_t kUserLightReports = 9;
inline constexpr std::size_t kUserLightBytes = kUserLightReports * kReportSize;  // 576
inline constexpr std::size_t kLightModeReports = 1;
inline constexpr std::size_t kSystemSetReports = 1;
inline constexpr std::size_t kLightModeMarkerAt = 14;   // marker ends the 16 meaningful bytes
inline constexpr std::size_t kSystemSetMarkerAt = 62;

// Buffer sizes handed to sendDeviceData(data:length:) by the uploads.
inline constexpr std::size_t kKeyTableBufferSize = 780;
inline constexpr std::size_t kKeyTableRunLength = 640;  // 9 reports go out
inline constexpr std::size_t kUserLightBufferSize = 640;
inline constexpr std::size_t kUserLightRunLength = 640;
inline constexpr std::size_t kMacroBufferSize = 3200;

// Pauses around the macro store's data, on top of the per-report delays.
inline constexpr int kMacroPauseMs = 30;

// ---- Active profile --------------------------------------------------------
inline constexpr int kFirstProfile = 1;
inline constexpr int kLastProfile = 5;

}  // namespace Protocol
