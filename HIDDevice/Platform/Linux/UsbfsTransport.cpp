#include "HIDDevice/Platform/Linux/UsbfsTransport.h"

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <QDebug>

#include <libusb.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr uint8_t kHostToDeviceClassInterface = 0x21;
constexpr uint8_t kDeviceToHostClassInterface = 0xA1;
constexpr uint8_t kGetReport = 0x01;
constexpr uint8_t kSetReport = 0x09;
constexpr uint16_t kFeatureReportType = 0x0300;
constexpr unsigned kTransferTimeoutMs = 1000;
}  // namespace

ControlSetup setFeatureReportSetup(uint8_t reportId, int interfaceNumber, std::size_t length)
{
    return {kHostToDeviceClassInterface, kSetReport, uint16_t(kFeatureReportType | reportId),
            uint16_t(interfaceNumber), uint16_t(length)};
}

ControlSetup getFeatureReportSetup(uint8_t reportId, int interfaceNumber, std::size_t length)
{
    return {kDeviceToHostClassInterface, kGetReport, uint16_t(kFeatureReportType | reportId),
            uint16_t(interfaceNumber), uint16_t(length)};
}

HidStatus hidStatusFromLibusb(int code, const std::string& what)
{
    if (code >= 0)
        return {};
    const std::string reason = what + ": " + libusb_strerror(code);
    switch (code) {
    case LIBUSB_ERROR_ACCESS: return {HidResult::NoPermission, reason};
    case LIBUSB_ERROR_INVALID_PARAM: return {HidResult::BadArgument, reason};
    default: return {HidResult::NotResponding, reason};  // NO_DEVICE, IO, PIPE, TIMEOUT, BUSY, ...
    }
}

HidStatus hidStatusFromErrno(int err, const std::string& what)
{
    if (err == 0)
        return {};
    const std::string reason = what + ": " + strerror(err);
    switch (err) {
    case EACCES:
    case EPERM: return {HidResult::NoPermission, reason};
    case EINVAL: return {HidResult::BadArgument, reason};
    default: return {HidResult::NotResponding, reason};
    }
}

void UsbfsInterfaceClaim::ContextDeleter::operator()(libusb_context* c) const { libusb_exit(c); }
void UsbfsInterfaceClaim::HandleDeleter::operator()(libusb_device_handle* h) const { libusb_close(h); }

void UsbfsInterfaceClaim::FdCloser::operator()(int* fd) const
{
    if (*fd >= 0 && ::close(*fd) != 0)
        qWarning("usbfs: close failed: %s", strerror(errno));
    delete fd;
}

UsbfsInterfaceClaim::~UsbfsInterfaceClaim()
{
    if (held())
        release();
}

HidStatus UsbfsInterfaceClaim::acquire(const std::filesystem::path& usbfsNode, int interfaceNumber)
{
    if (held())
        return {};

    // We hand libusb the one device we already know, so it need not scan the bus.
    int rc = libusb_set_option(nullptr, LIBUSB_OPTION_NO_DEVICE_DISCOVERY);
    if (rc != LIBUSB_SUCCESS)
        return hidStatusFromLibusb(rc, "setting up libusb");
    libusb_context* ctx = nullptr;
    rc = libusb_init(&ctx);
    if (rc != LIBUSB_SUCCESS)
        return hidStatusFromLibusb(rc, "starting libusb");
    context_.reset(ctx);

    const int fd = ::open(usbfsNode.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        const int err = errno;
        context_.reset();
        return hidStatusFromErrno(err, "opening " + usbfsNode.string());
    }
    fd_.reset(new int(fd));

    libusb_device_handle* handle = nullptr;
    rc = libusb_wrap_sys_device(context_.get(), intptr_t(fd), &handle);
    if (rc != LIBUSB_SUCCESS) {
        fd_.reset();
        context_.reset();
        return hidStatusFromLibusb(rc, "taking over " + usbfsNode.string());
    }
    handle_.reset(handle);
    interface_ = interfaceNumber;

    rc = libusb_detach_kernel_driver(handle_.get(), interfaceNumber);
    if (rc == LIBUSB_SUCCESS)
        detached_ = true;
    else if (rc != LIBUSB_ERROR_NOT_FOUND) {  // NOT_FOUND: no driver was bound
        const HidStatus result = hidStatusFromLibusb(rc, "detaching the driver of interface " + std::to_string(interfaceNumber));
        handle_.reset();
        fd_.reset();
        context_.reset();
        return result;
    }

    rc = libusb_claim_interface(handle_.get(), interfaceNumber);
    if (rc != LIBUSB_SUCCESS) {
        const HidStatus result = hidStatusFromLibusb(rc, "claiming interface " + std::to_string(interfaceNumber));
        release();  // gives the driver back
        return result;
    }
    return {};
}

HidStatus UsbfsInterfaceClaim::release()
{
    if (!held())
        return {};
    HidStatus result;
    int rc = libusb_release_interface(handle_.get(), interface_);
    // NOT_FOUND: it was not claimed (acquire failed half-way); NO_DEVICE: unplugged.
    if (rc != LIBUSB_SUCCESS && rc != LIBUSB_ERROR_NOT_FOUND) {
        if (rc != LIBUSB_ERROR_NO_DEVICE)
            qWarning("usbfs: releasing interface %d failed: %s", interface_, libusb_strerror(rc));
        result = hidStatusFromLibusb(rc, "releasing interface " + std::to_string(interface_));
    }
    if (detached_) {
        rc = libusb_attach_kernel_driver(handle_.get(), interface_);
        if (rc != LIBUSB_SUCCESS) {
            if (rc != LIBUSB_ERROR_NO_DEVICE)
                qWarning("usbfs: giving interface %d back to its driver failed: %s", interface_, libusb_strerror(rc));
            result = hidStatusFromLibusb(rc, "giving interface " + std::to_string(interface_) + " back to its driver");
        }
        detached_ = false;
    }
    handle_.reset();
    fd_.reset();
    context_.reset();
    interface_ = -1;
    return result;
}

HidStatus UsbfsInterfaceClaim::control(const ControlSetup& setup, uint8_t* data, std::size_t& transferred)
{
    transferred = 0;
    if (!held())
        return {HidResult::NotResponding, "the configuration interface is not claimed"};
    const int rc = libusb_control_transfer(handle_.get(), setup.requestType, setup.request, setup.value,
                                           setup.index, data, setup.length, kTransferTimeoutMs);
    if (rc < 0)
        return hidStatusFromLibusb(rc, setup.request == kSetReport ? "SET_REPORT" : "GET_REPORT");
    transferred = std::size_t(rc);
    return {};
}
