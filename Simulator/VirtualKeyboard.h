#pragma once
// VirtualKeyboard: an Orvane keyboard that lives in the process.
//
// It is what the demo mode plugs in and what every end-to-end test talks to.
// Like the real keyboard it shows three HID interfaces with the same location,
// ids and product string: the boot typing interface, the consumer-control
// interface and the configuration interface. Only the last answers feature
// reports; behind it sits a FirmwareModel that keeps what the host uploads and
// notes what the host gets wrong on the wire.
//
// Reports arrive on the application's transport thread while tests and the
// demo use the controls from another, so all state sits behind one mutex.
// The interfaces share that state, so a handle that outlives the keyboard
// object still works (and fails its transfers once unplugged).

#include "HIDDevice/Platform/Virtual/VirtualBus.h"
#include "Simulator/FirmwareModel.h"
#include "Simulator/TraceWriter.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

struct VirtualKeyboardOptions {
    // Time since the keyboard was created.
    using Clock = std::function<FirmwareModel::Time()>;

    QString tracePath;  // empty: the trace stays in memory
    std::size_t traceMemory = TraceWriter::kDefaultMemory;
    Clock clock;        // empty: a steady clock started at creation
};

class VirtualKeyboard final : public VirtualUsbDevice {
public:
    enum class Model { M61, W61, K68 };
    enum class Interface { Typing, ConsumerControl, Configuration };
    using Clock = VirtualKeyboardOptions::Clock;

    using Options = VirtualKeyboardOptions;

    explicit VirtualKeyboard(Model model, Options options = {});
    ~VirtualKeyboard() override;

    // "m61", "w61" or "k68", as given to --demo; nullptr for any other name.
    static std::shared_ptr<VirtualKeyboard> fromDemoName(const QString& name, Options options = {});
    static QString productName(Model model);  // "ORVANE M61" ...

    Model model() const { return model_; }
    int locationId() const { return locationId_; }

    // VirtualUsbDevice: typing, consumer control, configuration, in this order.
    std::vector<std::shared_ptr<HidDeviceHandle>> interfaces() const override;
    void setPlugged(bool plugged) override;

    std::shared_ptr<HidDeviceHandle> interfaceHandle(Interface which) const;
    bool isPlugged() const;

    // Controls: what the user does on the keyboard, or a test wants to provoke.
    void setActiveProfile(int profile);
    void requestRepeatOnce();
    void setRepeatForever(bool on);
    // Pulls the keyboard out, as a cable pulled mid-upload, once it has
    // taken `reports` more set reports after the header of the next key
    // table, user light slot or macro store: later transfers fail. The bus
    // still has to be told (VirtualBus::unplug) for the host to see it go.
    void unplugDuringUpload(int reports);
    // Upload sum faults (FirmwareModel): a garbled data report, wrong sums
    // for the next `count` uploads, or no sums at all.
    void corruptNextDataReport();
    void answerWrongSums(int count);
    void setSumsCounted(bool counted);
    // The same, named as the demo takes them: "corrupt", "wrong", "wrong-twice"
    // or "uncounted". False for any other name.
    bool applySumFault(const QString& name);

    // Read-back. firmware() is a copy taken under the lock, so its accessors
    // (key tables, light modes, user lights, counters ...) are consistent.
    FirmwareModel firmware() const;
    QStringList protocolErrors() const;
    std::vector<ProtocolError> protocolErrorKinds() const;
    void clearProtocolErrors();
    int setCount() const;
    int getCount() const;
    std::vector<TraceRecord> recentTrace() const;

    struct State;  // shared by the keyboard and its interfaces

private:
    Model model_;
    int locationId_;
    std::shared_ptr<State> state_;
    std::vector<std::shared_ptr<HidDeviceHandle>> interfaces_;
};
