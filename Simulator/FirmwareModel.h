#pragma once
// FirmwareModel: what the keyboard's firmware does with the reports it gets.
//
// The model sees the stream of 64-byte feature reports that the host sets and
// answers the host's reads. It follows the framing of an upload (opening
// command, header with target and report count, that many data reports,
// end command), keeps every complete block exactly as its bytes arrived, and
// answers the way the firmware family does: an echo of the frame with 0x01 in
// byte 3 (0xFF when it wants the frame again), the data sum in the reply to
// the end command and the active profile in the reply to the status poll.
// Anything the host gets wrong on the wire is recorded as a protocol error.
//
// A block is stored the moment its last data report arrives with its end
// marker in place; the end command only closes the sequence and reports the
// sum. A block that is cut short or lacks its marker is dropped.
//
// The model is a plain value: no I/O, no clock and no lock. The caller passes
// the time of every report and serialises the calls (VirtualKeyboard does).

#include "Protocol/Command.h"
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
    BadTarget,          // a header addressing no profile or user light slot
};

class FirmwareModel {
public:
    using Report = std::array<uint8_t, Protocol::kReportSize>;
    using Block = std::vector<uint8_t>;
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

    // Stored state. An empty block means nothing complete has arrived.
    int activeProfile() const { return activeProfile_; }
    const Block& keyTable(int profile) const;       // 576 bytes
    const Block& lightMode(int profile) const;      // the whole 64-byte report
    std::optional<LightModeState> lightModeState(int profile) const;  // that report decoded
    const Block& systemSettings(int profile) const; // 64 bytes
    const Block& userLight(int slot) const;         // 576 bytes, target 128 + slot
    const Block& macroStore() const { return macroStore_; }  // n * 64 bytes

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
    // Where the stream stands between two reports.
    enum class Phase {
        Idle,          // nothing open, or a sequence closed by the end command
        Open,          // after an opening command or a status poll
        Receiving,     // a header announced data reports that are still due
        BlockDone,     // the last announced data report has arrived
    };

    struct PendingBlock {
        Protocol::Command header;
        uint8_t target = 0;
        std::size_t expected = 0;  // data reports announced in byte 8
        Block bytes;
    };

    void checkInterval(Time at);
    void onCommandFrame(const Report& frame, Time at);
    void actOnCommand(const Report& frame, Time at);
    void openBlock(const Report& frame, Time at);
    void onDataReport(const Report& report, Time at);
    void finishBlock(Time at);
    void abandonBlock(uint8_t interruptingCommand, Time at);
    Block* storeFor(Protocol::Command header, uint8_t target);
    void flag(ProtocolError kind, Time at, const QString& what);

    Phase phase_ = Phase::Idle;
    std::optional<PendingBlock> pending_;
    std::optional<Protocol::Command> lastHeader_;  // for messages about overruns
    uint16_t dataSum_ = 0;
    Report lastReply_{};
    bool repeatRequested_ = false;
    std::optional<Time> lastReportAt_;

    int activeProfile_ = Protocol::kFirstProfile;
    std::array<Block, Protocol::kLastProfile> keyTables_;
    std::array<Block, Protocol::kLastProfile> lightModes_;
    std::array<Block, Protocol::kLastProfile> systemSettings_;
    std::map<int, Block> userLights_;
    Block macroStore_;

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
// True when `target` addresses something the header can write.
bool isValidTarget(Protocol::Command header, uint8_t target);
// The 16-bit sum the firmware reports for a run of data reports.
uint16_t addToSum(uint16_t sum, std::span<const uint8_t> bytes);
}  // namespace FirmwareBlocks
