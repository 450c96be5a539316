// The keyboard's USB side for the USB rig: a FunctionFS function with a boot
// typing interface and a configuration interface, as an Orvane M61 presents
// them. It logs every control request that reaches it, with its data stage,
// and answers feature report GETs with known bytes. Like the firmware it
// answers the 0x02 that closes an upload with the sum of the upload's data
// reports, and, once each, asks for a frame again (byte 3 = 0xFF) and
// answers an upload with a wrong sum, so that both repeats cross the kernel.
//
//   orvane_hil_gadget --ffs DIR --variant id|noid
//
// "id": the configuration report is report id 4 with 63 data bytes;
// "noid": the descriptor has no report ids and 64 data bytes. Both come to a
// 64-byte feature report as the host counts it.
//
// Log lines on stdout:
//   SETUP <type> <request> <value> <index> <length> [DATA <hex> | REPLY <hex>]
// where DATA is a host-to-device data stage and REPLY what we sent back, and
//   NOTE repeat-asked | sum-right <hex> | sum-wrong <hex>
// for the replies that ask for a frame again or carry an upload's sum.

#include <linux/usb/ch9.h>
#include <linux/usb/functionfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <endian.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint8_t kTypingInterface = 0;
constexpr uint8_t kConfigInterface = 1;
constexpr uint16_t kFeatureReport4 = 0x0304;
constexpr uint8_t kActiveProfile = 3;  // what the reply to a status poll says
// The first frame with this command is asked for again, and the first upload
// with this header is answered with a wrong sum; the host's --expected knows.
constexpr uint8_t kRepeatOnceCommand = 0x13;
constexpr uint8_t kWrongSumOnceHeader = 0x11;

const Bytes kBootKeyboardReport = {
    0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0x05, 0x07, 0x19, 0xE0, 0x29, 0xE7, 0x15, 0x00, 0x25, 0x01,
    0x75, 0x01, 0x95, 0x08, 0x81, 0x02, 0x95, 0x01, 0x75, 0x08, 0x81, 0x01, 0x95, 0x05, 0x75, 0x01,
    0x05, 0x08, 0x19, 0x01, 0x29, 0x05, 0x91, 0x02, 0x95, 0x01, 0x75, 0x03, 0x91, 0x01, 0x95, 0x06,
    0x75, 0x08, 0x15, 0x00, 0x25, 0x65, 0x05, 0x07, 0x19, 0x00, 0x29, 0x65, 0x81, 0x00, 0xC0};

Bytes configReport(bool reportIds)
{
    const uint8_t count = reportIds ? 63 : 64;
    Bytes d = {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01};
    if (reportIds)
        d.insert(d.end(), {0x85, 0x04});
    d.insert(d.end(), {0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08,
                       0x09, 0x02, 0x95, count, 0xB1, 0x02,    // feature
                       0x09, 0x03, 0x95, count, 0x81, 0x02,    // input
                       0xC0});
    return d;
}

void put16(Bytes& b, uint16_t v) { b.push_back(v & 0xFF); b.push_back(v >> 8); }
void put32(Bytes& b, uint32_t v) { for (int i = 0; i < 4; ++i) b.push_back((v >> (8 * i)) & 0xFF); }

void appendInterface(Bytes& b, uint8_t number, uint8_t subclass, uint8_t protocol, const Bytes& report,
                     uint8_t endpoint, uint16_t packet, uint8_t interval)
{
    b.insert(b.end(), {USB_DT_INTERFACE_SIZE, USB_DT_INTERFACE, number, 0, 1, USB_CLASS_HID, subclass, protocol, 0});
    b.insert(b.end(), {9, 0x21, 0x11, 0x01, 0, 1, 0x22});  // HID 1.11, one report descriptor
    put16(b, uint16_t(report.size()));
    b.insert(b.end(), {USB_DT_ENDPOINT_SIZE, USB_DT_ENDPOINT, uint8_t(USB_DIR_IN | endpoint), USB_ENDPOINT_XFER_INT});
    put16(b, packet);
    b.push_back(interval);
}

Bytes functionDescriptors(const Bytes& configDescriptor)
{
    Bytes fs, hs;
    appendInterface(fs, kTypingInterface, 1, 1, kBootKeyboardReport, 1, 8, 10);
    appendInterface(fs, kConfigInterface, 0, 0, configDescriptor, 2, 64, 10);
    appendInterface(hs, kTypingInterface, 1, 1, kBootKeyboardReport, 1, 8, 4);
    appendInterface(hs, kConfigInterface, 0, 0, configDescriptor, 2, 64, 4);
    Bytes b;
    put32(b, FUNCTIONFS_DESCRIPTORS_MAGIC_V2);
    put32(b, uint32_t(4 * 5 + fs.size() + hs.size()));
    put32(b, FUNCTIONFS_HAS_FS_DESC | FUNCTIONFS_HAS_HS_DESC);
    put32(b, 6);  // descriptors per speed
    put32(b, 6);
    b.insert(b.end(), fs.begin(), fs.end());
    b.insert(b.end(), hs.begin(), hs.end());
    return b;
}

Bytes noStrings()
{
    Bytes b;
    put32(b, FUNCTIONFS_STRINGS_MAGIC);
    put32(b, 16);
    put32(b, 0);
    put32(b, 0);
    return b;
}

std::string hex(const uint8_t* p, std::size_t n)
{
    static const char* digits = "0123456789abcdef";
    std::string s;
    for (std::size_t i = 0; i < n; ++i) {
        s += digits[p[i] >> 4];
        s += digits[p[i] & 0xF];
    }
    return s;
}

bool writeAll(int fd, const Bytes& b)
{
    const ssize_t n = ::write(fd, b.data(), b.size());
    return n == ssize_t(b.size());
}

// The status stage of a request without data, or a stall, as FunctionFS
// reads them: a read acknowledges an OUT request and stalls an IN one.
void acknowledge(int ep0) { (void)!::read(ep0, nullptr, 0); }
void stall(int ep0, const usb_ctrlrequest& r)
{
    if (r.bRequestType & USB_DIR_IN)
        (void)!::read(ep0, nullptr, 0);
    else
        (void)!::write(ep0, nullptr, 0);
}

class Keyboard {
public:
    Keyboard(int ep0, Bytes configDescriptor) : ep0_(ep0), configDescriptor_(std::move(configDescriptor)) {}

    void handle(const usb_ctrlrequest& r)
    {
        const uint16_t value = le16toh(r.wValue), index = le16toh(r.wIndex), length = le16toh(r.wLength);
        std::printf("SETUP %02x %02x %04x %04x %04x", r.bRequestType, r.bRequest, value, index, length);
        const uint8_t type = r.bRequestType;
        if (type == (USB_DIR_IN | USB_RECIP_INTERFACE) && r.bRequest == USB_REQ_GET_DESCRIPTOR && (value >> 8) == 0x22) {
            // The report descriptor is ours to serve: the composite layer
            // passes interface-directed GET_DESCRIPTOR to the function.
            const Bytes& d = index == kConfigInterface ? configDescriptor_ : kBootKeyboardReport;
            reply(Bytes(d.begin(), d.begin() + std::min<std::size_t>(d.size(), length)));
        } else if (type == (USB_DIR_OUT | USB_TYPE_CLASS | USB_RECIP_INTERFACE) && r.bRequest == 0x09) {
            Bytes data(length);
            const ssize_t n = length ? ::read(ep0_, data.data(), data.size()) : (acknowledge(ep0_), 0);
            data.resize(n > 0 ? std::size_t(n) : 0);
            std::printf(" DATA %s", hex(data.data(), data.size()).c_str());
            if (index == kConfigInterface)
                took(data);
        } else if (type == (USB_DIR_IN | USB_TYPE_CLASS | USB_RECIP_INTERFACE) && r.bRequest == 0x01) {
            reply(index == kConfigInterface && value == kFeatureReport4 ? statusReply(length) : Bytes(length, 0));
        } else if (type == (USB_DIR_OUT | USB_TYPE_CLASS | USB_RECIP_INTERFACE) && (r.bRequest == 0x0A || r.bRequest == 0x0B)) {
            acknowledge(ep0_);  // SET_IDLE, SET_PROTOCOL
        } else {
            std::printf(" STALL");
            stall(ep0_, r);
        }
        std::printf("\n");
        if (!note_.empty())
            std::printf("NOTE %s\n", note_.c_str());
        note_.clear();
        std::fflush(stdout);
    }

private:
    // Follows the uploads as the firmware does: a header announces its data
    // reports in byte 8, and the sum restarts at each opening and poll.
    void took(const Bytes& data)
    {
        lastSet_ = data;
        if (dataDue_ > 0) {
            --dataDue_;
            for (uint8_t b : data)
                sum_ = uint16_t(sum_ + b);
            return;
        }
        if (data.size() < 9)
            return;
        const uint8_t command = data[1];
        if (command == 0x18 || command == 0x19 || command == 0x30)
            sum_ = 0;
        if (command == 0x11 || command == 0x13 || command == 0x15 || command == 0x17 || command == 0x23) {
            dataDue_ = data[8];
            header_ = command;
        }
    }

    // The last SET echoed with status 1 and the active profile, and a
    // counting pattern in the unused tail so that any shift shows.
    Bytes statusReply(std::size_t length)
    {
        Bytes b(64, 0);
        std::copy_n(lastSet_.begin(), std::min<std::size_t>(lastSet_.size(), 16), b.begin());
        b[3] = 0x01;
        b[9] = kActiveProfile;
        for (std::size_t i = 16; i < b.size(); ++i)
            b[i] = uint8_t(i * 5 + 7);
        const uint8_t command = lastSet_.size() > 1 ? lastSet_[1] : 0;
        if (command == kRepeatOnceCommand && !repeatAsked_) {
            repeatAsked_ = true;
            b[3] = 0xFF;
            dataDue_ = 0;  // a frame asked for again is not taken: its repeat announces the data
            note_ = "repeat-asked";
        } else if (command == 0x02) {
            uint16_t sum = header_ ? sum_ : 0;
            const bool wrong = header_ == kWrongSumOnceHeader && !wrongSumGiven_;
            if (wrong) {
                wrongSumGiven_ = true;
                sum = uint16_t(sum + 1);
            }
            b[4] = sum & 0xFF;
            b[5] = sum >> 8;
            if (header_)
                note_ = (wrong ? "sum-wrong " : "sum-right ") + hex(&b[4], 2);
            header_ = 0;
        }
        b.resize(std::min<std::size_t>(length, b.size()));
        return b;
    }

    void reply(const Bytes& data)
    {
        const ssize_t n = ::write(ep0_, data.data(), data.size());
        std::printf(" REPLY %s", n == ssize_t(data.size()) ? hex(data.data(), data.size()).c_str() : "failed");
    }

    int ep0_;
    Bytes configDescriptor_;
    Bytes lastSet_;
    int dataDue_ = 0;
    uint16_t sum_ = 0;
    uint8_t header_ = 0;  // of the upload under way, 0 outside one
    bool repeatAsked_ = false;
    bool wrongSumGiven_ = false;
    std::string note_;  // printed after the request's line
};

}  // namespace

int main(int argc, char** argv)
{
    std::string dir, variant = "id";
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--ffs") == 0)
            dir = argv[i + 1];
        else if (std::strcmp(argv[i], "--variant") == 0)
            variant = argv[i + 1];
    }
    if (dir.empty() || (variant != "id" && variant != "noid")) {
        std::fprintf(stderr, "usage: %s --ffs DIR --variant id|noid\n", argv[0]);
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);
    const int ep0 = ::open((dir + "/ep0").c_str(), O_RDWR);
    if (ep0 < 0) {
        std::perror("open ep0");
        return 1;
    }
    const Bytes config = configReport(variant == "id");
    if (!writeAll(ep0, functionDescriptors(config)) || !writeAll(ep0, noStrings())) {
        std::perror("write descriptors");
        return 1;
    }
    std::fprintf(stderr, "gadget ready (%s)\n", variant.c_str());
    Keyboard keyboard(ep0, config);
    while (true) {
        std::array<usb_functionfs_event, 4> events{};
        const ssize_t n = ::read(ep0, events.data(), sizeof events);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            std::perror("read ep0");
            return 1;
        }
        for (std::size_t i = 0; i < std::size_t(n) / sizeof(usb_functionfs_event); ++i)
            if (events[i].type == FUNCTIONFS_SETUP)
                keyboard.handle(events[i].u.setup);
    }
}
