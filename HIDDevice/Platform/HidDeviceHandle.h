#pragma once
// One HID interface as the platform presents it.
//
// Every byte that reaches a keyboard passes through `setFeatureReport` and
// `getFeatureReport`; only DeviceComm calls them. Each gives a HidStatus: the
// kind of failure and the reason in words. Properties are read by name
// ("LocationID", "VendorID", "ProductID", "MaxInputReportSize",
// "MaxFeatureReportSize", "Product") and are an invalid QVariant when the
// platform does not know them.

#include "HIDDevice/Platform/HidStatus.h"

#include <QVariant>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>

class HidDeviceHandle {
public:
    virtual ~HidDeviceHandle() = default;

    // Sends `data` (64 bytes) as feature report `reportId`. Byte 0 of `data` is
    // the first byte on the wire, whatever it holds.
    virtual HidStatus setFeatureReport(uint8_t reportId, std::span<const uint8_t> data) = 0;

    // Reads feature report `reportId` into `buffer`; `length` is the number of
    // bytes asked for on entry and received on return. A failed read leaves
    // both `buffer` and `length` as they were.
    virtual HidStatus getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length) = 0;

    virtual QVariant property(const QString& key) const = 0;

    // Brackets one report sequence. A backend that needs an exclusive path for
    // data reports (Linux usbfs) takes it here and gives it back in
    // endSequence(); the others do nothing.
    virtual void beginSequence(bool carriesDataReports) { (void)carriesDataReports; }
    virtual void endSequence() {}
};
