#pragma once
// One USB HID interface of a matched keyboard, for the life of its connection.
//
// The object is created when the interface first shows up and lives until the
// USB interface itself goes away, so the handle the rest of the application
// holds stays the same across our own driver detach and re-attach. Its
// properties are read once at arrival and stay readable after an unplug.
//
// Reports travel two ways. hidraw is used whenever it puts the right bytes on
// the wire: every GET, and every SET whose byte 0 is the report id. A sequence
// that carries data reports (byte 0 is payload) claims the interface over
// usbfs from beginSequence(true) to endSequence(), and all its reports go as
// raw control transfers; a data report outside such a sequence is refused,
// since hidraw would send it under another id. The kernel creates a new
// hidraw node when usbhid is bound again; the device finds it itself, and the
// manager also tells it.
//
// setFeatureReport, getFeatureReport and the sequence brackets run on one
// thread (the transport thread); the node updates come from the manager's.

#include "HIDDevice/Platform/HidDeviceHandle.h"
#include "HIDDevice/Platform/Linux/PermissionNotice.h"
#include "HIDDevice/Platform/Linux/SysfsHidInterface.h"
#include "HIDDevice/Platform/Linux/UsbfsTransport.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

class LinuxHidDevice final : public HidDeviceHandle {
public:
    // `devRoot` is /dev, or a test folder.
    LinuxHidDevice(UsbHidInterface info, std::filesystem::path devRoot, std::shared_ptr<PermissionNotice> notice);
    ~LinuxHidDevice() override;

    HidStatus setFeatureReport(uint8_t reportId, std::span<const uint8_t> data) override;
    HidStatus getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length) override;
    QVariant property(const QString& key) const override;
    void beginSequence(bool carriesDataReports) override;
    void endSequence() override;

    // ---- for the manager --------------------------------------------------
    const std::string& identity() const { return info_.identity; }
    const UsbHidInterface& info() const { return info_; }
    void setHidrawName(const std::string& name);
    // Forgets the node only if it is still the current one: a late removal
    // event of the old node must not hide the node found after a re-attach.
    void forgetHidrawName(const std::string& name);
    std::optional<std::string> hidrawName() const;
    void markUnplugged() { unplugged_ = true; }
    // Opens the hidraw node once to see whether we may; reports a permission
    // problem through the notice.
    HidStatus checkAccess();

private:
    HidStatus openHidraw(int& fd);
    void closeHidraw();
    HidStatus hidrawStatus(int err, const std::string& what);
    HidStatus usbfsSet(uint8_t reportId, std::span<const uint8_t> data, UsbfsInterfaceClaim& claim);
    // Waits briefly for usbhid's new node after a re-attach to become usable
    // (udev applies the user's access right after the kernel creates it).
    void reopenAfterReattach();

    const UsbHidInterface info_;
    const std::filesystem::path devRoot_;
    std::shared_ptr<PermissionNotice> notice_;

    mutable std::mutex nodeMutex_;
    std::optional<std::string> hidrawName_;
    std::atomic<bool> unplugged_ = false;

    // Transport thread only.
    int hidrawFd_ = -1;
    std::string hidrawFdName_;
    UsbfsInterfaceClaim claim_;
    bool dataSequence_ = false;
    HidStatus claimStatus_;  // why this sequence has no usbfs claim
};
