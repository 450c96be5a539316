#pragma once
// A system-wide key source that reads nothing of the machine: tests hand it
// values as another keyboard would send them, and the one key logger of the
// test run is made with it.

#include "AppDelegate.h"
#include "Keylogger/Keylogger.h"

class FakeKeySource : public SystemKeySource {
public:
    bool open(Callbacks callbacks) override
    {
        callbacks_ = std::move(callbacks);
        return true;
    }
    // One value from a keyboard of the machine: a HID usage and its value.
    static void send(int usage, int value) { current()->callbacks_.value(usage, value); }

    static AppDelegate::KeySourceFactory factory()
    {
        return [] {
            auto source = std::make_unique<FakeKeySource>();
            current() = source.get();
            return source;
        };
    }
    // The running key logger of the tests, made and scheduled on first use.
    static Keylogger* keylogger()
    {
        Keylogger* logger = AppDelegate::keylogger(factory());
        logger->scheduleWithRunLoop();
        return logger;
    }

private:
    static FakeKeySource*& current()
    {
        static FakeKeySource* source = nullptr;
        return source;
    }
    Callbacks callbacks_;
};
