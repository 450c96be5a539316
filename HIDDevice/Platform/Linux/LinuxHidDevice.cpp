#include "HIDDevice/Platform/Linux/LinuxHidDevice.h"

#include <QDebug>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
// How long a node re-created by our own re-attach may take to become usable.
constexpr auto kReattachSettle = std::chrono::milliseconds(1500);
constexpr auto kReattachStep = std::chrono::milliseconds(10);
constexpr std::size_t kMaxHidrawReport = 4096;  // HID_MAX_BUFFER_SIZE in the kernel
const HidStatus kUnplugged{HidResult::NotResponding, "the keyboard was unplugged"};
}  // namespace

LinuxHidDevice::LinuxHidDevice(UsbHidInterface info, std::filesystem::path devRoot,
                               std::shared_ptr<PermissionNotice> notice)
    : info_(std::move(info)), devRoot_(std::move(devRoot)), notice_(std::move(notice))
{
}

LinuxHidDevice::~LinuxHidDevice()
{
    closeHidraw();
}

QVariant LinuxHidDevice::property(const QString& key) const
{
    if (key == QLatin1String("LocationID"))
        return QVariant(int(info_.locationId));
    if (key == QLatin1String("VendorID"))
        return QVariant(info_.vendorId);
    if (key == QLatin1String("ProductID"))
        return QVariant(info_.productId);
    if (key == QLatin1String("MaxInputReportSize"))
        return QVariant(info_.sizes.maxInput);
    if (key == QLatin1String("MaxFeatureReportSize"))
        return QVariant(info_.sizes.maxFeature);
    if (key == QLatin1String("Product") && info_.product)
        return QVariant(QString::fromStdString(*info_.product));
    return {};
}

void LinuxHidDevice::setHidrawName(const std::string& name)
{
    std::lock_guard lock(nodeMutex_);
    hidrawName_ = name;
}

void LinuxHidDevice::forgetHidrawName(const std::string& name)
{
    std::lock_guard lock(nodeMutex_);
    if (hidrawName_ == name)
        hidrawName_.reset();
}

std::optional<std::string> LinuxHidDevice::hidrawName() const
{
    std::lock_guard lock(nodeMutex_);
    return hidrawName_;
}

void LinuxHidDevice::closeHidraw()
{
    if (hidrawFd_ >= 0 && ::close(hidrawFd_) != 0)
        qWarning("hidraw: close of %s failed: %s", hidrawFdName_.c_str(), strerror(errno));
    hidrawFd_ = -1;
    hidrawFdName_.clear();
}

HidStatus LinuxHidDevice::hidrawStatus(int err, const std::string& what)
{
    const HidStatus result = hidStatusFromErrno(err, what + " " + (devRoot_ / hidrawFdName_).string());
    if (result == HidResult::NoPermission && notice_)
        notice_->report(QString::fromStdString(info_.product.value_or(std::string())),
                        (devRoot_ / hidrawFdName_).string());
    return result;
}

HidStatus LinuxHidDevice::openHidraw(int& fd)
{
    fd = -1;
    if (unplugged_)
        return kUnplugged;
    std::optional<std::string> name = hidrawName();
    if (!name) {
        // No event has told us of a node yet (a re-attach just happened): look.
        name = findHidrawName(info_.interfaceDir);
        if (!name)
            return {HidResult::NotResponding, "no hidraw node for interface " + info_.identity};
        setHidrawName(*name);
    }
    if (hidrawFd_ >= 0 && hidrawFdName_ == *name) {
        fd = hidrawFd_;
        return {};
    }
    closeHidraw();
    const std::filesystem::path node = devRoot_ / *name;
    const int opened = ::open(node.c_str(), O_RDWR | O_CLOEXEC);
    if (opened < 0) {
        const int err = errno;
        hidrawFdName_ = *name;
        const HidStatus result = hidrawStatus(err, "opening");
        hidrawFdName_.clear();
        return result;
    }
    hidrawFd_ = opened;
    hidrawFdName_ = *name;
    fd = opened;
    return {};
}

HidStatus LinuxHidDevice::checkAccess()
{
    // Runs on the manager's thread, so it leaves the transport's cached fd alone.
    const std::optional<std::string> name = hidrawName();
    if (!name)
        return {HidResult::NotResponding, "no hidraw node for interface " + info_.identity};
    const std::filesystem::path node = devRoot_ / *name;
    const int fd = ::open(node.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        const HidStatus result = hidStatusFromErrno(errno, "opening " + node.string());
        if (result == HidResult::NoPermission && notice_)
            notice_->report(QString::fromStdString(info_.product.value_or(std::string())), node.string());
        return result;
    }
    if (::close(fd) != 0)
        qWarning("hidraw: close of %s failed: %s", node.c_str(), strerror(errno));
    return {};
}

HidStatus LinuxHidDevice::usbfsSet(uint8_t reportId, std::span<const uint8_t> data, UsbfsInterfaceClaim& claim)
{
    // libusb wants a mutable buffer even for host-to-device transfers.
    std::vector<uint8_t> copy(data.begin(), data.end());
    std::size_t sent = 0;
    const HidStatus result = claim.control(setFeatureReportSetup(reportId, info_.interfaceNumber, copy.size()),
                                           copy.data(), sent);
    if (!result)
        return result;
    if (sent != copy.size())
        return {HidResult::NotResponding, "SET_REPORT took " + std::to_string(sent) + " of "
                                              + std::to_string(copy.size()) + " bytes"};
    return {};
}

HidStatus LinuxHidDevice::setFeatureReport(uint8_t reportId, std::span<const uint8_t> data)
{
    if (data.empty() || data.size() > kMaxHidrawReport)
        return {HidResult::BadArgument, "a report of " + std::to_string(data.size()) + " bytes"};
    if (unplugged_)
        return kUnplugged;

    if (dataSequence_)
        return claim_.held() ? usbfsSet(reportId, data, claim_) : claimStatus_;

    if (data[0] != reportId) {
        // hidraw would send it under the id in byte 0. Every sequence with a
        // data report is bracketed, so one arriving here is a fault upstream.
        return {HidResult::BadArgument, "a data report outside a data sequence"};
    }

    int fd = -1;
    const HidStatus opened = openHidraw(fd);
    if (!opened)
        return opened;
    // HIDIOCSFEATURE sends byte 0 as the report id and the whole buffer,
    // byte 0 included, as the data stage: exactly the caller's bytes.
    const int rc = ::ioctl(fd, HIDIOCSFEATURE(data.size()), data.data());
    if (rc < 0) {
        const int err = errno;
        const HidStatus failed = hidrawStatus(err, "HIDIOCSFEATURE on");
        closeHidraw();
        return failed;
    }
    if (std::size_t(rc) != data.size())
        return {HidResult::NotResponding, "HIDIOCSFEATURE took " + std::to_string(rc) + " bytes"};
    return {};
}

HidStatus LinuxHidDevice::getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length)
{
    // Until the read succeeds, `buffer` and `length` stay as the caller left them.
    const std::size_t wanted = std::min(length, buffer.size());
    if (wanted == 0 || wanted > kMaxHidrawReport)
        return {HidResult::BadArgument, "a read of " + std::to_string(wanted) + " bytes"};
    if (unplugged_)
        return kUnplugged;

    std::vector<uint8_t> reply(wanted, 0);
    std::size_t received = 0;
    if (dataSequence_) {
        if (!claim_.held())
            return claimStatus_;
        const HidStatus result = claim_.control(getFeatureReportSetup(reportId, info_.interfaceNumber, wanted),
                                                reply.data(), received);
        if (!result)
            return result;
    } else {
        int fd = -1;
        const HidStatus opened = openHidraw(fd);
        if (!opened)
            return opened;
        // The kernel reads the report id from byte 0, asks for `wanted` bytes
        // with wValue = feature | id, and lets the device's data stage land
        // from byte 0 on: what we hand back is the data stage unchanged (a
        // device that numbers its reports puts the id there itself).
        reply[0] = reportId;
        const int rc = ::ioctl(fd, HIDIOCGFEATURE(wanted), reply.data());
        if (rc < 0) {
            const int err = errno;
            const HidStatus failed = hidrawStatus(err, "HIDIOCGFEATURE on");
            closeHidraw();
            return failed;
        }
        received = std::min(std::size_t(rc), wanted);
    }
    std::copy_n(reply.begin(), received, buffer.begin());
    length = received;
    return {};
}

void LinuxHidDevice::beginSequence(bool carriesDataReports)
{
    if (!carriesDataReports || dataSequence_ || unplugged_)
        return;
    closeHidraw();  // the node goes away with the driver
    const HidStatus result = claim_.acquire(usbfsNode(devRoot_, info_.busNumber, info_.deviceAddress),
                                            info_.interfaceNumber);
    claimStatus_ = result;
    if (result == HidResult::NoPermission && notice_) {
        notice_->report(QString::fromStdString(info_.product.value_or(std::string())),
                        usbfsNode(devRoot_, info_.busNumber, info_.deviceAddress).string());
    } else if (!result) {
        qWarning("usbfs: could not claim interface %d of %s: %s", info_.interfaceNumber, info_.identity.c_str(),
                 result.reason().c_str());
    }
    // On failure the reports of this sequence fail on the unclaimed handle
    // rather than going out over hidraw with the wrong ids.
    dataSequence_ = true;
}

void LinuxHidDevice::endSequence()
{
    if (!dataSequence_)
        return;
    dataSequence_ = false;
    const HidStatus result = claim_.release();
    if (!result && !unplugged_)
        qWarning("usbfs: giving back interface %d of %s failed: %s", info_.interfaceNumber, info_.identity.c_str(),
                 result.reason().c_str());
    reopenAfterReattach();
}

void LinuxHidDevice::reopenAfterReattach()
{
    // The old node is gone; whatever name we held is stale.
    {
        std::lock_guard lock(nodeMutex_);
        hidrawName_.reset();
    }
    closeHidraw();
    const auto deadline = std::chrono::steady_clock::now() + kReattachSettle;
    while (!unplugged_) {
        if (const std::optional<std::string> name = findHidrawName(info_.interfaceDir)) {
            setHidrawName(*name);
            const int fd = ::open((devRoot_ / *name).c_str(), O_RDWR | O_CLOEXEC);
            if (fd >= 0) {
                hidrawFd_ = fd;
                hidrawFdName_ = *name;
                return;
            }
        }
        if (std::chrono::steady_clock::now() >= deadline)
            return;  // the next report reports what is wrong
        std::this_thread::sleep_for(kReattachStep);
    }
}
