#include "HIDDevice/Platform/Linux/SysfsHidInterface.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

std::optional<std::string> readSysfsLine(const fs::path& file)
{
    std::ifstream in(file);
    std::string line;
    if (!in || !std::getline(in, line))
        return std::nullopt;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' '))
        line.pop_back();
    return line;
}

// A string attribute exactly as the device reported it: sysfs adds one line
// feed, and that alone is taken off (a trailing blank is part of the name).
std::optional<std::string> readStringAttribute(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

std::optional<int> readSysfsNumber(const fs::path& file, int base)
{
    const std::optional<std::string> text = readSysfsLine(file);
    if (!text || text->empty())
        return std::nullopt;
    try {
        std::size_t used = 0;
        const long value = std::stol(*text, &used, base);
        if (used != text->size() || value < 0 || value > 0xFFFF'FFFFL)
            return std::nullopt;
        return int(value);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

namespace {

std::vector<uint8_t> readBytes(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

uint32_t locationIdFromUsbPath(int busNumber, std::string_view portPath)
{
    uint32_t id = uint32_t(busNumber & 0xFF) << 24;
    int shift = 20;
    std::size_t start = 0;
    while (start <= portPath.size() && shift >= 0) {
        const std::size_t dot = portPath.find('.', start);
        const std::string_view part = portPath.substr(start, dot == std::string_view::npos ? dot : dot - start);
        int port = 0;
        for (char c : part)
            port = (c >= '0' && c <= '9') ? port * 10 + (c - '0') : 0;
        id |= uint32_t(port & 0xF) << shift;
        shift -= 4;
        if (dot == std::string_view::npos)
            break;
        start = dot + 1;
    }
    return id;
}

std::string interfaceIdentityOfHidraw(const fs::path& hidrawSysPath)
{
    // hidrawN -> hidraw -> hid device -> usb interface
    return hidrawSysPath.parent_path().parent_path().parent_path().filename().string();
}

std::optional<std::string> findHidrawName(const fs::path& interfaceDir)
{
    std::error_code ec;
    for (const fs::directory_entry& hid : fs::directory_iterator(interfaceDir, ec)) {
        std::error_code inner;
        if (!hid.is_directory(inner) || hid.is_symlink(inner))
            continue;  // "driver" and "subsystem" are links; the hid device is a real directory
        for (const fs::directory_entry& node : fs::directory_iterator(hid.path() / "hidraw", inner)) {
            const std::string name = node.path().filename().string();
            if (name.rfind("hidraw", 0) == 0)
                return name;
        }
    }
    return std::nullopt;
}

std::optional<UsbHidInterface> readUsbHidInterface(const fs::path& hidrawSysPath)
{
    const fs::path hidDir = hidrawSysPath.parent_path().parent_path();
    UsbHidInterface info;
    info.interfaceDir = hidDir.parent_path();
    info.identity = info.interfaceDir.filename().string();
    const fs::path usbDir = info.interfaceDir.parent_path();

    const auto ifnum = readSysfsNumber(info.interfaceDir / "bInterfaceNumber", 16);
    const auto vid = readSysfsNumber(usbDir / "idVendor", 16);
    const auto pid = readSysfsNumber(usbDir / "idProduct", 16);
    const auto bus = readSysfsNumber(usbDir / "busnum", 10);
    const auto addr = readSysfsNumber(usbDir / "devnum", 10);
    const auto portPath = readSysfsLine(usbDir / "devpath");
    if (!ifnum || !vid || !pid || !bus || !addr || !portPath)
        return std::nullopt;

    info.interfaceNumber = *ifnum;
    info.vendorId = *vid;
    info.productId = *pid;
    info.busNumber = *bus;
    info.deviceAddress = *addr;
    info.locationId = locationIdFromUsbPath(*bus, *portPath);
    info.product = readStringAttribute(usbDir / "product");
    info.sizes = hidReportSizes(readBytes(hidDir / "report_descriptor"));
    return info;
}

fs::path usbfsNode(const fs::path& devRoot, int busNumber, int deviceAddress)
{
    char name[16];
    std::snprintf(name, sizeof name, "%03d/%03d", busNumber & 0xFFF, deviceAddress & 0xFFF);
    return devRoot / "bus" / "usb" / name;
}
