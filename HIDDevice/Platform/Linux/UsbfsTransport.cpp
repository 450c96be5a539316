#include "HIDDevice/Platform/Linux/UsbfsTransport.h"

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <QDebug>

#include <libusb.h>

#include <cerrno>
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

int hidResultFromLibusb(int code)
{
    if (code >= 0)
        return HidResult::Success;
    switch (code) {
    case LIBUSB_ERROR_ACCESS: return HidResult::NoPermission;
    case LIBUSB_ERROR_INVALID_PARAM: return HidResult::BadArgument;
    default: return HidResult::NotResponding;  // NO_DEVICE, IO, PIPE, TIMEOUT, BUSY, ...
    }
}

int hidResultFromErrno(int err)
{
    switch (err) {
    case 0: return HidResult::Success;
    case EACCES:
    case EPERM: return HidResult::NoPermission;
    case EINVAL: return HidResult::BadArgument;
    default: return HidResult::NotResponding;
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

int UsbfsInterfaceClaim::acquire(const std::filesystem::path& usbfsNode, int interfaceNumber)
{
    if (held())
        return HidResult::Success;

    // We hand libusb the one device we already know, so it need not scan the bus.
    int rc = libusb_set_option(nullptr, LIBUSB_OPTION_NO_DEVICE_DISCOVERY);
    if (rc != LIBUSB_SUCCESS)
        return hidResultFromLibusb(rc);
    libusb_context* ctx = nullptr;
    rc = libusb_init(&ctx);
    if (rc != LIBUSB_SUCCESS)
        return hidResultFromLibusb(rc);
    context_.reset(ctx);

    const int fd = ::open(usbfsNode.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        const int err = errno;
        context_.reset();
        return hidResultFromErrno(err);
    }
    fd_.reset(new int(fd));

    libusb_device_handle* handle = nullptr;
    rc = libusb_wrap_sys_device(context_.get(), intptr_t(fd), &handle);
    if (rc != LIBUSB_SUCCESS) {
        fd_.reset();
        context_.reset();
        return hidResultFromLibusb(rc);
    }
    handle_.reset(handle);
    interface_ = interfaceNumber;

    rc = libusb_detach_kernel_driver(handle_.get(), interfaceNumber);
    if (rc == LIBUSB_SUCCESS)
        detached_ = true;
    else if (rc != LIBUSB_ERROR_NOT_FOUND) {  // NOT_FOUND: no driver was bound
        const int result = hidResultFromLibusb(rc);
        handle_.reset();
        fd_.reset();
        context_.reset();
        return result;
    }

    rc = libusb_claim_interface(handle_.get(), interfaceNumber);
    if (rc != LIBUSB_SUCCESS) {
        const int result = hidResultFromLibusb(rc);
        release();  // gives the driver back
        return result;
    }
    return HidResult::Success;
}

int UsbfsInterfaceClaim::release()
{
    if (!held())
        return HidResult::Success;
    int result = HidResult::Success;
    int rc = libusb_release_interface(handle_.get(), interface_);
    // NOT_FOUND: it was not claimed (acquire failed half-way); NO_DEVICE: unplugged.
    if (rc != LIBUSB_SUCCESS && rc != LIBUSB_ERROR_NOT_FOUND) {
        if (rc != LIBUSB_ERROR_NO_DEVICE)
            qWarning("usbfs: releasing interface %d failed: %s", interface_, libusb_strerror(rc));
        result = hidResultFromLibusb(rc);
    }
    if (detached_) {
        rc = libusb_attach_kernel_driver(handle_.get(), interface_);
        if (rc != LIBUSB_SUCCESS) {
            if (rc != LIBUSB_ERROR_NO_DEVICE)
                qWarning("usbfs: giving interface %d back to its driver failed: %s", interface_, libusb_strerror(rc));
            result = hidResultFromLibusb(rc);
        }
        detached_ = false;
    }
    handle_.reset();
    fd_.reset();
    context_.reset();
    interface_ = -1;
    return result;
}

int UsbfsInterfaceClaim::control(const ControlSetup& setup, uint8_t* data, std::size_t& transferred)
{
    transferred = 0;
    if (!held())
        return HidResult::NotResponding;
    const int rc = libusb_control_transfer(handle_.get(), setup.requestType, setup.request, setup.value,
                                           setup.index, data, setup.length, kTransferTimeoutMs);
    if (rc < 0)
        return hidResultFromLibusb(rc);
    transferred = std::size_t(rc);
    return HidResult::Success;
}
