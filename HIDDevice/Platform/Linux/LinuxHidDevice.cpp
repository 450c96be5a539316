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

int LinuxHidDevice::hidrawResult(int err)
{
    const int result = hidResultFromErrno(err);
    if (result == HidResult::NoPermission && notice_)
        notice_->report(QString::fromStdString(info_.product.value_or(std::string())),
                        (devRoot_ / hidrawFdName_).string());
    return result;
}

int LinuxHidDevice::openHidraw(int& fd)
{
    fd = -1;
    if (unplugged_)
        return HidResult::NotResponding;
    std::optional<std::string> name = hidrawName();
    if (!name) {
        // No event has told us of a node yet (a re-attach just happened): look.
        name = findHidrawName(info_.interfaceDir);
        if (!name)
            return HidResult::NotResponding;
        setHidrawName(*name);
    }
    if (hidrawFd_ >= 0 && hidrawFdName_ == *name) {
        fd = hidrawFd_;
        return HidResult::Success;
    }
    closeHidraw();
    const std::filesystem::path node = devRoot_ / *name;
    const int opened = ::open(node.c_str(), O_RDWR | O_CLOEXEC);
    if (opened < 0) {
        const int err = errno;
        hidrawFdName_ = *name;
        const int result = hidrawResult(err);
        hidrawFdName_.clear();
        return result;
    }
    hidrawFd_ = opened;
    hidrawFdName_ = *name;
    fd = opened;
    return HidResult::Success;
}

int LinuxHidDevice::checkAccess()
{
    // Runs on the manager's thread, so it leaves the transport's cached fd alone.
    const std::optional<std::string> name = hidrawName();
    if (!name)
        return HidResult::NotResponding;
    const std::filesystem::path node = devRoot_ / *name;
    const int fd = ::open(node.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        const int result = hidResultFromErrno(errno);
        if (result == HidResult::NoPermission && notice_)
            notice_->report(QString::fromStdString(info_.product.value_or(std::string())), node.string());
        return result;
    }
    if (::close(fd) != 0)
        qWarning("hidraw: close of %s failed: %s", node.c_str(), strerror(errno));
    return HidResult::Success;
}

int LinuxHidDevice::usbfsSet(uint8_t reportId, std::span<const uint8_t> data, UsbfsInterfaceClaim& claim)
{
    // libusb wants a mutable buffer even for host-to-device transfers.
    std::vector<uint8_t> copy(data.begin(), data.end());
    std::size_t sent = 0;
    const int result = claim.control(setFeatureReportSetup(reportId, info_.interfaceNumber, copy.size()),
                                     copy.data(), sent);
    if (result != HidResult::Success)
        return result;
    return sent == copy.size() ? HidResult::Success : HidResult::NotResponding;
}

int LinuxHidDevice::setFeatureReport(uint8_t reportId, std::span<const uint8_t> data)
{
    if (data.empty() || data.size() > kMaxHidrawReport)
        return HidResult::BadArgument;
    if (unplugged_)
        return HidResult::NotResponding;

    if (dataSequence_)
        return claim_.held() ? usbfsSet(reportId, data, claim_) : claimResult_;

    if (data[0] != reportId) {
        // A data report outside a bracketed sequence: hidraw would send it
        // under the wrong id, so claim the interface just for this report.
        UsbfsInterfaceClaim once;
        closeHidraw();
        int result = once.acquire(usbfsNode(devRoot_, info_.busNumber, info_.deviceAddress), info_.interfaceNumber);
        if (result == HidResult::Success)
            result = usbfsSet(reportId, data, once);
        const int released = once.release();
        reopenAfterReattach();
        return result != HidResult::Success ? result : released;
    }

    int fd = -1;
    int result = openHidraw(fd);
    if (result != HidResult::Success)
        return result;
    // HIDIOCSFEATURE sends byte 0 as the report id and the whole buffer,
    // byte 0 included, as the data stage: exactly the caller's bytes.
    const int rc = ::ioctl(fd, HIDIOCSFEATURE(data.size()), data.data());
    if (rc < 0) {
        const int err = errno;
        closeHidraw();
        return hidrawResult(err);
    }
    return std::size_t(rc) == data.size() ? HidResult::Success : HidResult::NotResponding;
}

int LinuxHidDevice::getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length)
{
    const std::size_t wanted = std::min(length, buffer.size());
    length = 0;
    if (wanted == 0 || wanted > kMaxHidrawReport)
        return HidResult::BadArgument;
    if (unplugged_)
        return HidResult::NotResponding;

    std::vector<uint8_t> reply(wanted, 0);
    std::size_t received = 0;
    if (dataSequence_) {
        if (!claim_.held())
            return claimResult_;
        const int result = claim_.control(getFeatureReportSetup(reportId, info_.interfaceNumber, wanted),
                                          reply.data(), received);
        if (result != HidResult::Success)
            return result;
    } else {
        int fd = -1;
        const int result = openHidraw(fd);
        if (result != HidResult::Success)
            return result;
        // The kernel reads the report id from byte 0, asks for `wanted` bytes
        // with wValue = feature | id, and lets the device's data stage land
        // from byte 0 on: what we hand back is the data stage unchanged (a
        // device that numbers its reports puts the id there itself).
        reply[0] = reportId;
        const int rc = ::ioctl(fd, HIDIOCGFEATURE(wanted), reply.data());
        if (rc < 0) {
            const int err = errno;
            closeHidraw();
            return hidrawResult(err);
        }
        received = std::min(std::size_t(rc), wanted);
    }
    std::copy_n(reply.begin(), received, buffer.begin());
    length = received;
    return HidResult::Success;
}

void LinuxHidDevice::beginSequence(bool carriesDataReports)
{
    if (!carriesDataReports || dataSequence_ || unplugged_)
        return;
    closeHidraw();  // the node goes away with the driver
    const int result = claim_.acquire(usbfsNode(devRoot_, info_.busNumber, info_.deviceAddress),
                                      info_.interfaceNumber);
    claimResult_ = result;
    if (result == HidResult::NoPermission && notice_) {
        notice_->report(QString::fromStdString(info_.product.value_or(std::string())),
                        usbfsNode(devRoot_, info_.busNumber, info_.deviceAddress).string());
    } else if (result != HidResult::Success) {
        qWarning("usbfs: could not claim interface %d of %s (result %d)", info_.interfaceNumber,
                 info_.identity.c_str(), result);
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
    const int result = claim_.release();
    if (result != HidResult::Success && !unplugged_)
        qWarning("usbfs: giving back interface %d of %s failed (result %d)", info_.interfaceNumber,
                 info_.identity.c_str(), result);
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
