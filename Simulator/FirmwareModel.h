#pragma once
// FirmwareModel: what the keyboard's firmware does with the reports it gets.
//
// The model sees the stream of 64-byte feature reports that the host sets and
// answers the host's reads. It follows the shape of every upload as the
// firmware does: the opening command the upload needs (0x18, or 0x19 for the
// macro store), a header with target and report count, exactly that many data
// reports, then the end frames of that upload type (0x02 with the byte 2 the
// type keeps, and 0xF0 after light uploads only). Whether a report is data or
// a command is decided by the count the last header announced, never by its
// bytes: a light block for mode 4 starts with 0x04 like a command frame.
// Anything the host gets wrong on the wire is recorded as a protocol error.
//
// A block is decoded into the keyboard's state (KeyboardState) the moment its
// last data report arrives with its end marker in place; the end command only
// closes the sequence and reports the sum. A block that is cut short or lacks
// its marker is dropped, and an upload half received when the keyboard is
// unplugged is forgotten.
//
// The model is a plain value: no I/O, no clock and no lock. The caller passes
// the time of every report and serialises the calls (VirtualKeyboard does).

#include "Protocol/Command.h"
#include "Simulator/KeyboardState.h"
#include "Simulator/LightModeState.h"

#include <QString>
#include <QStringList>

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

enum class ProtocolError {
    DataWithoutHeader,  // a data report when no header announced one
    WrongCount,         // a block cut short, overrun, or announced with the wrong size
    MissingEndMarker,   // 0xAA 0x55 not where the block needs it
    TooFast,            // two reports less than 10 ms apart
    BadReportId,        // a command frame whose byte 0 is not 4
    UnknownCommand,     // byte 1 of a frame is not a command
    StrayFrameBytes,    // a command frame with bytes other than 0, 1, 2 and 8 set
    BadTarget,          // a header addressing no profile or user light slot 1..6
    MissingOpening,     // a header without the opening command its upload needs
    WrongEndFrame,      // 0x02 or 0xF0 out of place, with the wrong byte 2, or 0xF0 missing
};

class FirmwareModel {
public:
    using Report = std::array<uint8_t, Protocol::kReportSize>;
    using Block = FirmwareBlock;
    // Time since the keyboard started.
    using Time = std::chrono::microseconds;

    // The firmware needs this much time between two reports.
    static constexpr Time kMinReportInterval = std::chrono::milliseconds(10);

    struct Fault {
        ProtocolError kind;
        QString message;
    };

    // One report set by the host. Shorter input is zero-padded, longer input
    // is cut at 64 bytes: the caller has already refused the wrong sizes.
    void set(std::span<const uint8_t> report, Time at);
    // What the host reads back: the reply to the last command frame, or zeros
    // before the first one.
    Report get(Time at);

    // Controls, as the user or a test would use them.
    void setActiveProfile(int profile);  // what the status poll reports, 0..255
    void requestRepeatOnce();            // the next command frame gets 0xFF
    void setRepeatForever(bool on);      // every command frame gets 0xFF (a stuck keyboard)
    // Faults of the upload sum, as a flaky cable or another firmware shows them:
    // the next data report arrives with its byte 0 changed (and is kept and
    // counted so); the next `count` uploads are answered with a sum one too
    // high; or every upload is answered with 0, as a firmware that does not count.
    void corruptNextDataReport();
    void answerWrongSums(int count);
    void setSumsCounted(bool counted);
    // The keyboard lost power: whatever upload was under way is forgotten.
    void unplugged();

    // Stored state. An empty block means nothing complete has arrived.
    const KeyboardState& state() const { return state_; }
    int activeProfile() const { return state_.activeProfile; }
    const Block& keyTable(int profile) const;       // 576 bytes
    const Block& lightMode(int profile) const;      // the whole 64-byte report
    std::optional<LightModeState> lightModeState(int profile) const;  // that report decoded
    const Block& systemSettings(int profile) const; // 64 bytes
    const Block& userLight(int slot) const;         // 576 bytes, target 128 + slot
    const Block& macroStore() const { return state_.macroStore; }  // n * 64 bytes

    // How often each command frame was acted on (a frame answered with 0xFF
    // is not), and how many sets and gets arrived.
    int commandCount(Protocol::Command command) const;
    int applyLightCount() const { return commandCount(Protocol::Command::ApplyLight); }
    int setCount() const { return setCount_; }
    int getCount() const { return getCount_; }

    const std::vector<Fault>& faults() const { return faults_; }
    QStringList protocolErrors() const;
    std::vector<ProtocolError> protocolErrorKinds() const;
    void clearProtocolErrors() { faults_.clear(); }

private:
    struct PendingBlock {
        Protocol::Command header;
        uint8_t target = 0;
        std::size_t expected = 0;  // data reports announced in byte 8
        Block bytes;
    };
    // The upload between its opening command and its 0x02.
    struct Upload {
        Protocol::Command opening;
        std::optional<Protocol::Command> header;
        uint8_t target = 0;
        bool blockDone = false;  // the announced data reports have all arrived
    };

    void checkInterval(Time at);
    void onCommandFrame(const Report& frame, Time at);
    void actOnCommand(const Report& frame, Time at);
    void checkEndFrames(Protocol::Command command, uint8_t target, Time at);
    void openUpload(Protocol::Command opening, Time at);
    void closeUpload(uint8_t target, Time at);
    void openBlock(const Report& frame, Time at);
    void onStrayReport(const Report& report, Time at);
    void onDataReport(const Report& report, Time at);
    void finishBlock(Time at);
    void flag(ProtocolError kind, Time at, const QString& what);

    std::optional<Upload> upload_;
    std::optional<PendingBlock> pending_;
    std::optional<uint8_t> applyDue_;  // byte 2 the 0xF0 after a light upload must carry
    uint16_t dataSum_ = 0;
    Report lastReply_{};
    bool repeatRequested_ = false;
    bool repeatForever_ = false;
    bool corruptNext_ = false;
    int wrongSums_ = 0;
    bool sumsCounted_ = true;
    std::optional<Time> lastReportAt_;

    KeyboardState state_;

    std::map<uint8_t, int> commandCounts_;
    int setCount_ = 0;
    int getCount_ = 0;
    std::vector<Fault> faults_;
};

// A time since start as seconds with 3 decimals ("12.345"), as the trace
// and the error messages print it. Times are never negative.
QString secondsSinceStart(FirmwareModel::Time t);

namespace FirmwareBlocks {
// Where a block of `size` bytes announced by `header` must carry 0xAA 0x55,
// or nothing for a command that announces no block.
std::optional<std::size_t> endMarkerOffset(Protocol::Command header, std::size_t size);
// The number of data reports a header must announce; 0 where any count of
// one or more is fine (the macro store), nothing for a non-header.
std::optional<std::size_t> requiredReportCount(Protocol::Command header);
// The opening command an upload with this header needs.
Protocol::Command requiredOpening(Protocol::Command header);
// Byte 2 of the 0x02 that closes an upload with this header: the key table
// and light mode keep their target, the others clear the frame.
uint8_t endFrameTarget(Protocol::Command header, uint8_t target);
// True for the uploads that 0xF0 follows.
bool isLightUpload(Protocol::Command header);
// True when `target` addresses something the header can write: a profile
// 1..5, or user light slots 1..6 as 129..134.
bool isValidTarget(Protocol::Command header, uint8_t target);
// The 16-bit sum the firmware reports for a run of data reports.
uint16_t addToSum(uint16_t sum, std::span<const uint8_t> bytes);
}  // namespace FirmwareBlocks
