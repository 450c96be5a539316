#include "HIDDevice/Platform/Doctor.h"

int runDoctor(std::ostream& out)
{
    out << "Orvane Keyboard Studio doctor: device access needs no set-up on this system.\n";
    return 0;
}
